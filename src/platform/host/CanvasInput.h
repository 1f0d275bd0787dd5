#pragma once

#include "platform/view/TouchDispatcher.h"

#include "platform/base/CGGeometry.h"
#include "platform/view/UIPointerShape.h"
#include "platform/view/UIView.h"

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
    /// Of the tree below `root`, which is not owned.
    explicit CanvasInput(const std::shared_ptr<UIView>& root);
    CanvasInput(const CanvasInput&) = delete;
    CanvasInput& operator=(const CanvasInput&) = delete;

    /// Points of the tree in one unit of the item.
    void setPointsPerUnit(double points) { m_pointsPerUnit = points; }
    /// A place of the item in the tree's points.
    CGPoint treePoint(QPointF position) const
    {
        return {position.x() * m_pointsPerUnit, position.y() * m_pointsPerUnit};
    }

    /// The mouse is a finger of its own from now on,
    void mousePressed(const QMouseEvent& event);
    /// moves as one,
    void mouseMoved(const QMouseEvent& event);
    /// and is none any more.
    void mouseReleased(const QMouseEvent& event);
    /// All fingers of the event; gives the point of a double tap when this event completes one. That is the canvas's
    /// own gesture: the recognisers of the tree neither wait for it nor are held up by it.
    std::optional<CGPoint> touched(const QTouchEvent& event);
    /// False when nothing under the pointer cares.
    bool wheelTurned(const QWheelEvent& event);
    /// A touchpad's pinch or rotation; false when nothing under the pointer cares.
    bool nativeGesture(const QNativeGestureEvent& event);
    /// See TouchDispatcher::pointerShape.
    UIPointerShape pointerShape(QPointF position) const { return m_dispatcher.pointerShape(treePoint(position)); }
    /// Takes all fingers away.
    void cancel();

private:
    void dispatch(const QTouchEvent& event, TouchDispatcher& dispatcher) const;

    TouchDispatcher m_dispatcher;
    double m_pointsPerUnit = 1;
    double m_lastTime = 0; ///< seconds, of the last event
    std::optional<CGPoint> m_doubleTap;
    std::shared_ptr<UIView> m_tapView; ///< stands in no tree
    TouchDispatcher m_tapDispatcher;
};

} // namespace lamina
