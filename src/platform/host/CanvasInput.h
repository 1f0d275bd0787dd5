#pragma once

#include "platform/view/TouchDispatcher.h"

#include <QPointF>

#include <memory>
#include <optional>

class QMouseEvent;
class QNativeGestureEvent;
class QTouchEvent;
class QWheelEvent;

namespace lamina {

/// Turns the window's events over one canvas into touches of its tree. Positions come in the item's units and are
/// handed on in the tree's points. Main thread.
class CanvasInput {
public:
    explicit CanvasInput(const std::shared_ptr<UIView>& root);

    /// Points of the tree in one unit of the item.
    void setPointsPerUnit(double points) { m_pointsPerUnit = points; }
    CGPoint treePoint(QPointF position) const
    {
        return {position.x() * m_pointsPerUnit, position.y() * m_pointsPerUnit};
    }

    void mousePressed(const QMouseEvent& event);
    void mouseMoved(const QMouseEvent& event);
    void mouseReleased(const QMouseEvent& event);
    /// All fingers of the event; gives the point of a double tap when this event completes one.
    std::optional<CGPoint> touched(const QTouchEvent& event);
    /// False when nothing under the pointer cares.
    bool wheelTurned(const QWheelEvent& event);
    bool nativeGesture(const QNativeGestureEvent& event);
    void cancel();

private:
    /// A finger that came down alone and was lifted soon, near where it came.
    struct Tap {
        CGPoint point;
        double time = 0;
    };
    std::optional<CGPoint> followTaps(const QTouchEvent& event);

    TouchDispatcher m_dispatcher;
    double m_pointsPerUnit = 1;
    double m_lastTime = 0;
    std::optional<Tap> m_down;
    std::optional<Tap> m_lastTap;
};

} // namespace lamina
