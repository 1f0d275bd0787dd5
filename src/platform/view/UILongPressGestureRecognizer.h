#pragma once

#include "platform/base/DispatchTimer.h"
#include "platform/view/UIGestureRecognizer.h"

namespace lamina {

/// A finger that stays down. Once begun it is a drag: Changed at every move, Ended when the finger is lifted.
class UILongPressGestureRecognizer : public UIGestureRecognizer {
public:
    /// Seconds, by the main queue's clock; default 0.5. With 0 it begins at the first touch. Negative or not a number:
    /// 0.
    double minimumPressDuration() const { return m_minimumPressDuration; }
    void setMinimumPressDuration(double seconds);
    /// Root points that the finger may stray before it begins.
    static constexpr double kSlop = 10;

protected:
    void touchesBegan(const std::vector<UITouch*>& touches) override;
    void touchesMoved(const std::vector<UITouch*>& touches) override;
    void touchesEnded(const std::vector<UITouch*>& touches) override;
    void reset() override;
    bool acceptsTouch() const override { return !isActive(); }

private:
    double m_minimumPressDuration = 0.5;
    DispatchTimer m_timer;
};

} // namespace lamina
