#pragma once

#include "editors/colorpicker/ColorTrackControl.h"

#include "platform/base/CGGeometry.h"
#include "platform/view/UIAccessibility.h"
#include "platform/view/UITouch.h"

#include <optional>
#include <string>

namespace lamina {

/// Chooses a hue along its width. The track, over which a range of hues belongs, ends 20 points from the control's
/// edges; a finger beyond holds the value at that end. Tells of values by ValueChanged. Main thread.
class InfColorBarPicker : public ColorTrackControl {
public:
    explicit InfColorBarPicker(const CGRect& frame = {});

    /// A hue in [0, 1]; default 0.
    float value() const { return m_value; }
    /// Tells of it, whoever sets it, where it is another than before.
    void setValue(float value);
    /// By so much, and round from one end to the other.
    void stepBy(float step);

    /// The hue in whole degrees, in words.
    std::string accessibilityValue() const override;
    /// In degrees.
    std::optional<UIAccessibilityRange> accessibilityRange() const override;
    /// Steps of 0.05.
    void accessibilityIncrement() override;
    void accessibilityDecrement() override;
    /// The range from one end of the track to the other.
    CGRect accessibilityBounds() const override;

private:
    void placeIndicator(InfColorIndicatorView& indicator) override;
    void trackIndicator(const UITouch& touch) override;

    float m_value = 0;
};

} // namespace lamina
