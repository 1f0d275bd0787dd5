#pragma once

#include "platform/view/UIGestureRecognizer.h"

#include <deque>
#include <limits>

namespace lamina {

/// Fingers that drag. Begins once their middle has moved by 10 points; the translation counts from there. It adds up
/// the fingers' own steps, so that nothing jumps when a finger is added or lifted. Ends with too few fingers left.
class UIPanGestureRecognizer : public UIGestureRecognizer {
public:
    /// Root points that the middle has to move before it is a pan.
    static constexpr double kHysteresis = 10;

    /// The way made since the start, or since the last setTranslation, in points of `view` (null: of the root).
    CGPoint translationInView(const UIView* view) const;
    /// Sets the way made so far; zero consumes it.
    void setTranslation(CGPoint translation, const UIView* inView);
    /// Points of `view` a second, over the last tenth of a second.
    CGPoint velocityInView(const UIView* view) const;

    /// Default 1; at least 1.
    std::size_t minimumNumberOfTouches() const { return m_minimumTouches; }
    void setMinimumNumberOfTouches(std::size_t count);
    /// Default: no limit. More fingers before the start make it fail, later ones are ignored.
    std::size_t maximumNumberOfTouches() const { return m_maximumTouches; }
    void setMaximumNumberOfTouches(std::size_t count);

    /// A whole pan without fingers: Began with no translation, Changed with `translation` (points of `inView`; null: of
    /// the root), Ended. False when it did not take place (disabled, no view, busy, refused by the delegate).
    bool perform(CGPoint translation, const UIView* inView);

protected:
    void touchesBegan(const std::vector<UITouch*>& touches) override;
    void touchesMoved(const std::vector<UITouch*>& touches) override;
    void touchesEnded(const std::vector<UITouch*>& touches) override;
    void reset() override;
    bool acceptsTouch() const override;

private:
    struct Sample {
        double time = 0;
        CGPoint way;
    };
    void recordSample(double time);

    std::size_t m_minimumTouches = 1;
    std::size_t m_maximumTouches = std::numeric_limits<std::size_t>::max();
    CGPoint m_approach;    ///< root points since the fingers came down, before the start
    CGPoint m_translation; ///< root points
    CGPoint m_way;         ///< root points since the start, never consumed; for the velocity
    std::deque<Sample> m_samples;
};

} // namespace lamina
