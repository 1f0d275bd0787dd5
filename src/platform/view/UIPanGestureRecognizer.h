#pragma once

#include "platform/view/UIGestureRecognizer.h"

namespace lamina {

/// Fingers that drag. Begins once their middle has moved by 10 points; the translation counts from there. It adds up
/// the fingers' own steps, so that nothing jumps when a finger is added or lifted. Ends with the last finger.
class UIPanGestureRecognizer : public UIGestureRecognizer {
public:
    /// Root points that the middle has to move before it is a pan.
    static constexpr double kHysteresis = 10;

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
    CGPoint m_approach;    ///< root points since the fingers came down, before the start
    CGPoint m_translation; ///< root points
};

} // namespace lamina
