#pragma once

#include "platform/view/UIView.h"

#include <cstdint>
#include <functional>
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
    /// True while a finger is on it.
    bool isHighlighted() const { return m_highlighted; }
    virtual void setHighlighted(bool highlighted);
    /// Under a finger that came down on it, wherever the finger is now.
    bool isTracking() const { return m_tracking; }

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

private:
    void stopTracking(UIControlEvents::Set event);

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
};

} // namespace lamina
