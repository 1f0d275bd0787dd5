#pragma once

#include "platform/view/UIGestureRecognizer.h"

namespace lamina {

/// Fingers that drag. Begins once their middle has moved by 10 points; the translation counts from there. It adds up
/// the fingers' own steps, so that nothing jumps when a finger is added or lifted. Ends with the last finger.
class UIPanGestureRecognizer : public UIGestureRecognizer {
public:
    /// Root points that the middle has to move before it is a pan.
    static constexpr double kHysteresis = 10;

    /// Whether a finger that joins ends a pan under way, so that a pinch may follow the drag without lifting the first.
    /// Fingers that have moved apart or together further than along then are no pan, however coarse the events. Default
    /// false: the pan goes on, with the middle of all fingers.
    void setRestartsWithAnotherTouch(bool restarts) { m_restarts = restarts; }
    bool restartsWithAnotherTouch() const override { return m_restarts; }

    /// The way made since the start, or since the last setTranslation, in points of `view` (null: of the root).
    CGPoint translationInView(const UIView* view) const;
    /// Sets the way made so far; zero consumes it.
    void setTranslation(CGPoint translation, const UIView* inView);

    /// A whole pan without fingers: Began with no translation, Changed with `translation` (points of `inView`; null: of
    /// the root), Ended. False when it did not take place (disabled, no view, busy, refused by the delegate).
    bool perform(CGPoint translation, const UIView* inView);

protected:
    void touchesBegan(const std::vector<UITouch*>& touches) override;
    void touchesMoved(const std::vector<UITouch*>& touches) override;
    void touchesEnded(const std::vector<UITouch*>& touches) override;
    void reset() override;

private:
    CGPoint stepOf(const std::vector<UITouch*>& touches);
    bool isUnderWay() const;

    CGPoint m_approach;    ///< root points since the fingers came down, before the start
    CGPoint m_apart;       ///< those that the second has moved away from the first by
    CGPoint m_translation; ///< root points
    bool m_restarts = false;
};

} // namespace lamina
