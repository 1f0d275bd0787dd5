#include "editors/colorpicker/InfColorSquarePicker.h"

#include "editors/colorpicker/ColorTrack.h"
#include "editors/colorpicker/HSBColor.h"
#include "editors/colorpicker/InfColorIndicatorView.h"
#include "platform/base/Localization.h"
#include "platform/view/UITouch.h"

#include <QCoreApplication>

#include <algorithm>

namespace lamina {

namespace {

constexpr double kAccessibilityStep = 0.05;

} // namespace

InfColorSquarePicker::InfColorSquarePicker(const CGRect& frame)
    : ColorTrackControl(frame)
{
    setAccessibilityLabel(localizedString(QT_TRANSLATE_NOOP("Lamina", "Saturation and brightness")));
}

void InfColorSquarePicker::setHue(float hue)
{
    if (hue == m_hue)
        return;
    m_hue = hue;
    if (indicator())
        indicator()->setColor(indicatorColor());
}

void InfColorSquarePicker::setValue(CGPoint value)
{
    if (value == m_value)
        return;
    m_value = value;
    valueChanged();
}

void InfColorSquarePicker::stepBy(double saturation, double brightness)
{
    setValue({std::clamp(m_value.x + saturation, 0.0, 1.0), std::clamp(m_value.y + brightness, 0.0, 1.0)});
}

// ---- the indicator ----

void InfColorSquarePicker::placeIndicator(InfColorIndicatorView& indicator)
{
    const CGSize size = bounds().size;
    indicator.setColor(indicatorColor());
    indicator.setCenter({colortrack::placeOf(m_value.x, size.width), colortrack::placeOf(1 - m_value.y, size.height)});
}

UIColor InfColorSquarePicker::indicatorColor() const
{
    return colorFromHSB({m_hue, static_cast<float>(m_value.x), static_cast<float>(m_value.y)});
}

void InfColorSquarePicker::trackIndicator(const UITouch& touch)
{
    const CGPoint at = touch.locationInView(this);
    const CGSize size = bounds().size;
    setValue({colortrack::shareAt(at.x, size.width), 1 - colortrack::shareAt(at.y, size.height)});
}

// ---- without seeing it ----

std::string InfColorSquarePicker::spokenValue() const
{
    return localizedText(QT_TRANSLATE_NOOP("Lamina", "%1% saturation, %2% brightness"),
                         {std::to_string(wholePercent(m_value.x)), std::to_string(wholePercent(m_value.y))});
}

std::optional<UIAccessibilityRange> InfColorSquarePicker::accessibilityRange() const
{
    return UIAccessibilityRange{static_cast<double>(wholePercent(m_value.y)), 0, 100};
}

void InfColorSquarePicker::accessibilityIncrement()
{
    stepBy(0, kAccessibilityStep);
}

void InfColorSquarePicker::accessibilityDecrement()
{
    stepBy(0, -kAccessibilityStep);
}

CGRect InfColorSquarePicker::accessibilityBounds() const
{
    return bounds().insetBy(colortrack::kMargin, colortrack::kMargin);
}

} // namespace lamina
