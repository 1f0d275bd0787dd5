#pragma once

#include <functional>
#include <memory>
#include <optional>

namespace lamina {

class UIViewAnimationRun;

/// How the speed changes on the way. The values are the platform's.
enum class UIViewAnimationCurve { EaseInOut = 0, EaseIn = 1, EaseOut = 2, Linear = 3 };

/// A movement that swings into its end instead of following a curve.
struct UIViewSpring {
    double damping = 1;         ///< (0, 1]; 1 does not go beyond the end
    double initialVelocity = 0; ///< whole ways a second

    friend bool operator==(const UIViewSpring&, const UIViewSpring&) = default;
};

/// What else there is to say of an animation. Others that platforms know would say nothing here: what is seen always
/// goes on from where it stands, and takes touches on its way.
struct UIViewAnimationOptions {
    UIViewAnimationCurve curve = UIViewAnimationCurve::EaseInOut;
    std::optional<UIViewSpring> spring = {}; ///< in the place of the curve
};

/// How something gets to its new value, for whoever draws it. By default it is there at once.
struct UIViewMotion {
    double duration = 0; ///< seconds
    double delay = 0;    ///< seconds that pass before it begins
    UIViewAnimationCurve curve = UIViewAnimationCurve::EaseInOut;
    std::optional<UIViewSpring> spring = {}; ///< in the place of the curve

    friend bool operator==(const UIViewMotion&, const UIViewMotion&) = default;
};

/// Runs `animations` at once: what it changes has its end state when this returns, and whoever draws it takes the time
/// to get there. A canvas does so for the alpha and the transform of views; the rest it shows at once. What counts as
/// changed are the properties of views (bounds, centre, transform, alpha, background) and the values of
/// `AnimatedProperty`, also where they are set to what they were.
///
/// The completion comes on a later turn of the main queue: `finished` after delay and duration on the shared clock; not
/// finished, at once and before that of the newer one, when one of the changed things is animated anew, set to another
/// value without animation, or destroyed. While nobody shows motion (see `PresentationHost::showsMotion`) delay and
/// duration are 0, so that the completion comes on the next turn. Completions that are due together come in the order
/// of these calls. What a completion uses it holds itself: with a shared pointer the screen lives until then.
///
/// Seconds that are negative or not finite count as 0. Empty functions are allowed. Within another animation's
/// `animations` it stands for itself. Main thread.
///
///   animate(0.5, 0.1, {.curve = UIViewAnimationCurve::EaseIn}, [&] { m_panel->setAlpha(0); },
///           [panel = m_panel](bool finished) { if (finished) panel->removeFromSuperview(); });
void animate(double duration, double delay, const UIViewAnimationOptions& options,
             const std::function<void()>& animations, std::function<void(bool finished)> completion = {});

/// One thing that can be animated: who it is for `animate`, as long as it lives. A view has one for each of its
/// animated properties, an `AnimatedProperty` is one. Main thread.
class UIViewAnimatable {
public:
    UIViewAnimatable();
    /// An animation under way has not finished.
    ~UIViewAnimatable();
    UIViewAnimatable(const UIViewAnimatable&) = delete;
    UIViewAnimatable& operator=(const UIViewAnimatable&) = delete;

    /// To be called when the thing is set, before it changes; `differs` says whether it will. Within an animation it
    /// becomes part of that one, and in any case leaves the one it was in, unless it just stays what it is.
    void set(bool differs);
    /// How the last change was to go.
    const UIViewMotion& motion() const { return m_motion; }

    /// Whether the caller runs within `animations` of an `animate`.
    static bool isRecording();

private:
    std::weak_ptr<UIViewAnimationRun> m_run;
    UIViewMotion m_motion;
};

} // namespace lamina
