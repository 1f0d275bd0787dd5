#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/view/UIViewAnimation.h"

#include <QEasingCurve>
#include <QObject>
#include <QRectF>
#include <QVariant>

#include <utility>

namespace lamina {

/// The way from 0 to 1 over the duration: the platform's own curves, by their control points, or the spring.
QEasingCurve easingOf(const UIViewMotion& motion);

/// A value of a controller that a screen draws and that `animate` can move: where a panel stands, how far something has
/// faded. The screen takes it there over `delay` and `duration` on the curve `easing`; `MotionBehavior.qml` does so:
///
///   y: controller.strip.value
///   MotionBehavior on y { motion: controller.strip }
///
/// The motion is told before the value, so that it is known when the value changes. Main thread.
class AnimatedProperty : public QObject {
    Q_OBJECT
    /// A rectangle as a `QRectF`.
    Q_PROPERTY(QVariant value READ variant NOTIFY valueChanged FINAL)
    /// Milliseconds.
    Q_PROPERTY(int duration READ duration NOTIFY motionChanged FINAL)
    /// Milliseconds before it begins.
    Q_PROPERTY(int delay READ delay NOTIFY motionChanged FINAL)
    Q_PROPERTY(QEasingCurve easing READ easing NOTIFY motionChanged FINAL)

public:
    /// The value for QML.
    virtual QVariant variant() const = 0;
    /// How the last change was to go.
    const UIViewMotion& motion() const { return m_animatable.motion(); }
    /// The same for QML: milliseconds.
    int duration() const;
    /// Milliseconds before it begins.
    int delay() const;
    /// The platform's curve.
    QEasingCurve easing() const { return easingOf(motion()); }

signals:
    void valueChanged();
    void motionChanged();

protected:
    /// To be called before each change; see UIViewAnimatable::set.
    void prepareChange(bool differs);

private:
    UIViewAnimatable m_animatable;
};

/// An `AnimatedProperty` that holds a `Value`: a number, a flag, a rectangle. Assigned like a plain one.
template <class Value>
class Animated : public AnimatedProperty {
public:
    explicit Animated(Value value = {})
        : m_value(std::move(value))
    {
    }
    Animated& operator=(const Value& value)
    {
        set(value);
        return *this;
    }

    const Value& value() const { return m_value; }
    /// Within an animation it is part of that one; without, the value is there at once, and an animation that was on
    /// its way to another has not finished.
    void set(const Value& value)
    {
        const bool differs = value != m_value;
        prepareChange(differs);
        if (!differs)
            return;
        m_value = value;
        emit valueChanged();
    }

    QVariant variant() const override { return asVariant(m_value); }

private:
    template <class Plain>
    static QVariant asVariant(const Plain& value)
    {
        return QVariant::fromValue(value);
    }
    static QVariant asVariant(const CGRect& rect)
    {
        return QRectF(rect.origin.x, rect.origin.y, rect.size.width, rect.size.height);
    }

    Value m_value;
};

} // namespace lamina
