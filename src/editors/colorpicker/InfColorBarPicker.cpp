#include "editors/colorpicker/InfColorBarPicker.h"

#include "editors/colorpicker/ColorTrack.h"
#include "editors/colorpicker/HSBColor.h"
#include "platform/base/Localization.h"
#include "platform/view/UITouch.h"

#include <QCoreApplication>

namespace lamina {

namespace {

constexpr float kDegrees = 360;
constexpr float kAccessibilityStep = 0.05F;

int wholeDegrees(float hue)
{
    return static_cast<int>(hue * kDegrees);
}

} // namespace

InfColorBarPicker::InfColorBarPicker(const CGRect& frame)
    : UIControl(frame)
{
    setOpaque(false);
    setAccessibilityLabel(localizedString(QT_TRANSLATE_NOOP("Lamina", "Hue")));
}

void InfColorBarPicker::setValue(float value)
{
    if (value == m_value)
        return;
    m_value = value;
    const auto self = weak_from_this().lock();
    sendActions(UIControlEvents::ValueChanged);
    layoutIndicator();
}

void InfColorBarPicker::stepBy(float step)
{
    const float value = m_value + step;
    setValue(value > 1 ? value - 1 : value < 0 ? value + 1 : value);
}

// ---- the indicator ----

void InfColorBarPicker::setFrame(const CGRect& frame)
{
    UIControl::setFrame(frame);
    layoutIndicator();
}

void InfColorBarPicker::setBounds(const CGRect& bounds)
{
    UIControl::setBounds(bounds);
    layoutIndicator();
}

void InfColorBarPicker::layoutIndicator()
{
    if (!m_indicator)
        m_indicator = colortrack::addIndicator(*this);
    m_indicator->setColor(colorFromHSB({m_value, 1, 1}));
    m_indicator->setCenter({colortrack::placeOf(m_value, bounds().size.width), bounds().midY()});
}

bool InfColorBarPicker::beginTracking(const UITouch& touch)
{
    trackIndicator(touch);
    return true;
}

bool InfColorBarPicker::continueTracking(const UITouch& touch)
{
    trackIndicator(touch);
    return true;
}

void InfColorBarPicker::trackIndicator(const UITouch& touch)
{
    setValue(static_cast<float>(colortrack::shareAt(touch.locationInView(this).x, bounds().size.width)));
}

// ---- without seeing it ----

UIAccessibilityTraits::Set InfColorBarPicker::accessibilityTraits() const
{
    return UIControl::accessibilityTraits() | UIAccessibilityTraits::Adjustable;
}

std::string InfColorBarPicker::accessibilityValue() const
{
    return localizedText(QT_TRANSLATE_NOOP("Lamina", "%1 degrees hue"), {std::to_string(wholeDegrees(m_value))});
}

std::optional<UIAccessibilityRange> InfColorBarPicker::accessibilityRange() const
{
    return UIAccessibilityRange{static_cast<double>(wholeDegrees(m_value)), 0, kDegrees};
}

void InfColorBarPicker::accessibilityIncrement()
{
    stepBy(kAccessibilityStep);
}

void InfColorBarPicker::accessibilityDecrement()
{
    stepBy(-kAccessibilityStep);
}

CGRect InfColorBarPicker::accessibilityBounds() const
{
    return bounds().insetBy(colortrack::kMargin, 0);
}

} // namespace lamina
