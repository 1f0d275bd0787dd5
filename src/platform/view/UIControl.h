#pragma once

#include "platform/view/UIView.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace lamina {

/// Events of a control; sets of them are sums.
struct UIControlEvents {
    using Set = std::uint32_t;
    static constexpr Set TouchDown = 1u << 0;
    static constexpr Set TouchDragInside = 1u << 1;
    static constexpr Set TouchDragOutside = 1u << 2;
    static constexpr Set TouchDragEnter = 1u << 3;
    static constexpr Set TouchDragExit = 1u << 4;
    static constexpr Set TouchUpInside = 1u << 5;
    static constexpr Set TouchUpOutside = 1u << 6;
    static constexpr Set TouchCancel = 1u << 7;
    static constexpr Set ValueChanged = 1u << 12;
    static constexpr Set All = 0xFFFFFFFF;
};

/// A view that the user operates: it follows one finger and tells handlers what happens. While a finger is on a
/// control, tap recognisers of the views above it do not see that finger. Main thread.
///
/// A finger that comes down is tracked if `beginTracking` says so, until it is lifted or lost, or `continueTracking`
/// says no. At each event the tracking operation is called first, then the handlers. A tracked finger counts as inside
/// until it is more than `kTrackingSlack` points away, since fingers are not steady.
class UIControl : public UIView {
public:
    using Handler = std::function<void(UIControl&)>;
    using HandlerId = std::uint64_t;

    explicit UIControl(const CGRect& frame = {});

    /// Default true. A disabled control takes no touches (they do not fall through to what lies below); one that is
    /// disabled under a finger cancels it.
    bool isEnabled() const { return m_enabled; }
    virtual void setEnabled(bool enabled);
    /// Default false; a lasting state that only the owner changes.
    bool isSelected() const { return m_selected; }
    virtual void setSelected(bool selected);
    /// True while the tracked finger counts as inside.
    bool isHighlighted() const { return m_highlighted; }
    virtual void setHighlighted(bool highlighted);
    /// Follows a finger that came down on it, wherever that is now.
    bool isTracking() const { return m_tracking; }
    /// Whether the tracked finger counts as inside; false while none is tracked.
    bool isTouchInside() const { return m_touchInside; }
    /// Own points that a tracked finger may leave the bounds by.
    static constexpr double kTrackingSlack = 70;

    /// For subclasses that follow the finger themselves. False: this finger is of no interest, no handler hears of it.
    virtual bool beginTracking(const UITouch& touch);
    /// The finger has moved, inside or not. False: it is of no interest any longer, and nothing more is heard of it.
    virtual bool continueTracking(const UITouch& touch);
    /// The finger was lifted, inside or not.
    virtual void endTracking(const UITouch&) {}
    /// The finger was lost, a gesture has claimed it, or the control was disabled.
    virtual void cancelTracking() {}

    /// Calls the handler at each of `events`, in the order of these calls. A handler may remove handlers, itself too,
    /// or destroy the control.
    HandlerId addTarget(Handler handler, UIControlEvents::Set events);
    /// Nothing when the handler is gone already.
    void removeTarget(HandlerId id);
    /// Calls the handlers of the events, whether the control is enabled or not.
    void sendActions(UIControlEvents::Set events);

    void touchesBegan(const std::vector<UITouch*>& touches) override;
    void touchesMoved(const std::vector<UITouch*>& touches) override;
    void touchesEnded(const std::vector<UITouch*>& touches) override;
    void touchesCancelled(const std::vector<UITouch*>& touches) override;

    /// An arrow, whatever moves when it is dragged beside the control.
    std::optional<UIPointerShape> pointerShape() const override;
    /// Those that were set, and the control's state.
    UIAccessibilityTraits::Set accessibilityTraits() const override;
    /// What a tap does. False while the control is disabled.
    bool accessibilityActivate() override;

protected:
    /// One that draws itself, on a layer of its own.
    UIControl(const CGRect& frame, std::shared_ptr<CALayer> layer);

private:
    const UITouch* trackedOf(const std::vector<UITouch*>& touches) const;
    bool countsAsInside(const UITouch& touch) const;
    void stopTracking();
    void cancel();

    struct Target {
        HandlerId id = 0;
        UIControlEvents::Set events = 0;
        Handler handler;
    };
    std::vector<Target> m_targets;
    HandlerId m_lastId = 0;
    bool m_enabled = true;
    bool m_selected = false;
    bool m_highlighted = false;
    bool m_tracking = false;
    bool m_touchInside = false;
    std::int64_t m_trackedTouch = 0; ///< id of the finger that is tracked
};

} // namespace lamina
