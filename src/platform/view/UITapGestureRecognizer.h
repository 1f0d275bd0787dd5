#pragma once

#include "platform/base/DispatchTimer.h"
#include "platform/view/UIGestureRecognizer.h"

namespace lamina {

/// One finger that comes down and leaves again nearly where it was, once or several times: the one place that knows how
/// near and how soon taps belong together. Discrete: the action is called once, at Ended.
class UITapGestureRecognizer : public UIGestureRecognizer {
public:
    /// Root points that a finger may stray.
    static constexpr double kSlop = 10;
    /// Root points between two taps that count together; a finger is less sure of where it was than of holding still.
    static constexpr double kTapDistance = 40;
    /// Seconds within which the next tap has to come down, when several are needed.
    static constexpr double kTapInterval = 0.35;

    /// Default 1; at least 1.
    int numberOfTapsRequired() const { return m_tapsRequired; }
    void setNumberOfTapsRequired(int taps);

    /// One tap without fingers. `rootLocation`: where, in root coordinates; by default the middle of the view. False
    /// when it did not take place.
    bool perform(std::optional<CGPoint> rootLocation = std::nullopt);

protected:
    void touchesBegan(const std::vector<UITouch*>& touches) override;
    void touchesMoved(const std::vector<UITouch*>& touches) override;
    void touchesEnded(const std::vector<UITouch*>& touches) override;
    void reset() override;
    bool awaitsMoreTouches() const override { return m_taps > 0 && m_taps < m_tapsRequired; }

private:
    int m_tapsRequired = 1;
    int m_taps = 0;           ///< complete ones
    CGPoint m_firstTap;       ///< root coordinates
    DispatchTimer m_interval; ///< until the next tap has to come down
};

} // namespace lamina
