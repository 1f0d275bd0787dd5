#include "editors/colorpicker/InfColorBarPicker.h"

#include "editors/colorpicker/ColorTrack.h"
#include "editors/colorpicker/HSBColor.h"
#include "editors/colorpicker/InfColorIndicatorView.h"
#include "platform/base/Localization.h"
#include "platform/view/UITouch.h"

#include <QCoreApplication>

namespace lamina {

namespace {

constexpr float kAccessibilityStep = 0.05F;

} // namespace

InfColorBarPicker::InfColorBarPicker(const CGRect& frame)
    : ColorTrackControl(frame)
{
    setAccessibilityLabel(localizedString(QT_TRANSLATE_NOOP("Lamina", "Hue")));
}

void InfColorBarPicker::setValue(float value)
{
    if (value == m_value)
        return;
    m_value = value;
    valueChanged();
}

void InfColorBarPicker::stepBy(float step)
{
    const float value = m_value + step;
    setValue(value > 1 ? value - 1 : value < 0 ? value + 1 : value);
}

// ---- the indicator ----

void InfColorBarPicker::placeIndicator(InfColorIndicatorView& indicator)
{
    indicator.setColor(colorFromHSB({m_value, 1, 1}));
    indicator.setCenter({colortrack::placeOf(m_value, bounds().size.width), bounds().midY()});
}

void InfColorBarPicker::trackIndicator(const UITouch& touch)
{
    setValue(static_cast<float>(colortrack::shareAt(touch.locationInView(this).x, bounds().size.width)));
}

// ---- without seeing it ----

std::string InfColorBarPicker::accessibilityValue() const
{
    return localizedText(QT_TRANSLATE_NOOP("Lamina", "%1 degrees hue"), {std::to_string(wholeDegrees(m_value))});
}

std::optional<UIAccessibilityRange> InfColorBarPicker::accessibilityRange() const
{
    return UIAccessibilityRange{static_cast<double>(wholeDegrees(m_value)), 0, kHueDegrees};
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
