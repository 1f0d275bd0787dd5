#include "platform/view/AnimatedProperty.h"

#include <QPointF>

#include <algorithm>
#include <cmath>

namespace lamina {

namespace {

int milliseconds(double seconds)
{
    return static_cast<int>(std::lround(seconds * 1000));
}

QEasingCurve bezier(QPointF first, QPointF second)
{
    QEasingCurve curve(QEasingCurve::BezierSpline);
    curve.addCubicBezierSegment(first, second, {1, 1});
    return curve;
}

/// How far a spring has come at `time` of its duration, which is 1: x'' = ω² (1 - x) - 2ζω x', x(0) = 0, x'(0) = v,
/// with ω such that less than a thousandth of the way is left at the end.
double springAt(double time, double damping, double velocity)
{
    constexpr double kCritical = 9.23; // (1 + ω) e^-ω = 0.001
    constexpr double kSwinging = 6.91; // e^-ζω = 0.001
    if (damping >= 1)
        return 1 - std::exp(-kCritical * time) * (1 + (kCritical - velocity) * time);
    const double decay = kSwinging;
    const double swing = decay / damping * std::sqrt(1 - damping * damping);
    return 1 - std::exp(-decay * time) * (std::cos(swing * time) + (decay - velocity) / swing * std::sin(swing * time));
}

/// The spring as a chain of cubic segments through points of its way, with its slope in each.
QEasingCurve springCurve(const UIViewSpring& spring, double duration)
{
    constexpr int kSegments = 10; // Qt 6.4 writes beyond its memory for more
    constexpr double kStep = 1.0 / kSegments;
    constexpr double kReach = 0.3 * kStep; // exact thirds would be straight in time, which Qt can't solve
    constexpr double kNear = 1e-4;
    const double damping = std::clamp(spring.damping, 0.05, 1.0);
    const auto at = [&](double time) { return springAt(time, damping, spring.initialVelocity * duration); };
    const auto rise = [&](double time) { return (at(time + kNear) - at(time - kNear)) / (2 * kNear) * kReach; };
    QEasingCurve curve(QEasingCurve::BezierSpline);
    for (int i = 0; i < kSegments; ++i) {
        const double from = i * kStep;
        const double to = from + kStep;
        const QPointF end = i + 1 == kSegments ? QPointF(1, 1) : QPointF(to, at(to));
        curve.addCubicBezierSegment({from + kReach, at(from) + rise(from)}, {to - kReach, end.y() - rise(to)}, end);
    }
    return curve;
}

} // namespace

int AnimatedProperty::duration() const
{
    return milliseconds(motion().duration);
}

int AnimatedProperty::delay() const
{
    return milliseconds(motion().delay);
}

QEasingCurve easingOf(const UIViewMotion& motion)
{
    if (motion.spring)
        return springCurve(*motion.spring, motion.duration);
    switch (motion.curve) {
    case UIViewAnimationCurve::EaseInOut:
        return bezier({0.42, 0}, {0.58, 1});
    case UIViewAnimationCurve::EaseIn:
        return bezier({0.42, 0}, {1, 1});
    case UIViewAnimationCurve::EaseOut:
        return bezier({0, 0}, {0.58, 1});
    case UIViewAnimationCurve::Linear:
        break;
    }
    return QEasingCurve(QEasingCurve::Linear);
}

void AnimatedProperty::prepareChange(bool differs)
{
    const UIViewMotion former = motion();
    m_animatable.set(differs);
    if (motion() != former)
        emit motionChanged();
}

} // namespace lamina
