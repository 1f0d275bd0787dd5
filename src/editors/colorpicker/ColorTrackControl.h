#pragma once

#include "platform/view/UIControl.h"

#include "platform/base/CGGeometry.h"
#include "platform/view/UIAccessibility.h"
#include "platform/view/UITouch.h"

#include <memory>

namespace lamina {

class InfColorIndicatorView;

/// What the controls of a colour picker have in common: an indicator that follows one finger over a range of colours,
/// and a value that steps up and down. The indicator is made by the first layout. Main thread.
class ColorTrackControl : public UIControl {
public:
    explicit ColorTrackControl(const CGRect& frame);

    /// Null until the first layout.
    const std::shared_ptr<InfColorIndicatorView>& indicator() const { return m_indicator; }

    void setFrame(const CGRect& frame) override;
    void setBounds(const CGRect& bounds) override;
    bool beginTracking(const UITouch& touch) override;
    bool continueTracking(const UITouch& touch) override;

    /// Adjustable, besides those that were set.
    UIAccessibilityTraits::Set accessibilityTraits() const override;

protected:
    /// A new value is in place: tells of it, then moves the indicator.
    void valueChanged();
    /// Puts the indicator where the value is, in its colour.
    void layoutIndicator();

private:
    virtual void placeIndicator(InfColorIndicatorView& indicator) = 0;
    /// Takes the value under the finger.
    virtual void trackIndicator(const UITouch& touch) = 0;

    std::shared_ptr<InfColorIndicatorView> m_indicator;
};

} // namespace lamina
