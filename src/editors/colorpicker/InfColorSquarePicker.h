#pragma once

#include "editors/colorpicker/ColorTrackControl.h"

#include "platform/base/CGGeometry.h"
#include "platform/base/UIColor.h"
#include "platform/view/UIAccessibility.h"
#include "platform/view/UITouch.h"

#include <optional>
#include <string>

namespace lamina {

/// Chooses saturation (to the right) and brightness (upwards) on a field, which ends 20 points from the control's
/// edges; a finger beyond holds the value at the field's edge. Tells of values by ValueChanged. Main thread.
class InfColorSquarePicker : public ColorTrackControl {
public:
    explicit InfColorSquarePicker(const CGRect& frame = {});

    /// That the indicator shows, in [0, 1]; default 0.
    float hue() const { return m_hue; }
    /// Nobody is told.
    void setHue(float hue);
    /// x is the saturation and y the brightness, both in [0, 1]; default (0, 0).
    CGPoint value() const { return m_value; }
    /// Tells of it, whoever sets it, where it is another than before.
    void setValue(CGPoint value);
    /// By so much, as far as the field goes.
    void stepBy(double saturation, double brightness);
    /// Saturation and brightness in whole percent, in words.
    std::string spokenValue() const;

    /// The spoken value.
    std::string accessibilityValue() const override { return spokenValue(); }
    /// The brightness, in percent: of the two it is the one that steps go along.
    std::optional<UIAccessibilityRange> accessibilityRange() const override;
    /// Steps of the brightness by 0.05, which stop at its ends.
    void accessibilityIncrement() override;
    void accessibilityDecrement() override;
    /// The field alone.
    CGRect accessibilityBounds() const override;

private:
    void placeIndicator(InfColorIndicatorView& indicator) override;
    UIColor indicatorColor() const;
    void trackIndicator(const UITouch& touch) override;

    float m_hue = 0;
    CGPoint m_value;
};

} // namespace lamina
