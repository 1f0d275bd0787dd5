#pragma once

#include "platform/view/TouchDispatcher.h"

#include "platform/base/CGGeometry.h"
#include "platform/view/UIPointerShape.h"
#include "platform/view/UIView.h"

#include <QPointF>

#include <memory>
#include <optional>
#include <utility>

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

    /// What the user has just done to the canvas itself, in the tree's points: none of the tree's recognisers waits for
    /// it, nor is one held up by it.
    struct Taps {
        std::optional<CGPoint> tap;       ///< a quick touch of one finger or the mouse, wherever it was
        std::optional<CGPoint> doubleTap; ///< two of one finger
    };

    /// The mouse is a finger of its own from now on,
    void mousePressed(const QMouseEvent& event);
    /// moves as one,
    void mouseMoved(const QMouseEvent& event);
    /// and is none any more. Double clicks are the window's to tell.
    Taps mouseReleased(const QMouseEvent& event);
    /// All fingers of the event.
    Taps touched(const QTouchEvent& event);
    /// False when nothing under the pointer cares.
    bool wheelTurned(const QWheelEvent& event);
    /// A touchpad's pinch or rotation; false when nothing under the pointer cares.
    bool nativeGesture(const QNativeGestureEvent& event);
    /// See TouchDispatcher::pointerShape.
    UIPointerShape pointerShape(QPointF position) const { return m_dispatcher.pointerShape(treePoint(position)); }
    /// Takes all fingers away.
    void cancel();

private:
    /// A view without an end, in no tree, that hears of taps.
    class TapField {
    public:
        explicit TapField(int taps);
        TapField(const TapField&) = delete;
        TapField& operator=(const TapField&) = delete;

        TouchDispatcher& dispatcher() { return m_dispatcher; }
        /// Where taps were completed since the last call.
        std::optional<CGPoint> take() { return std::exchange(m_tapped, std::nullopt); }

    private:
        std::optional<CGPoint> m_tapped;
        std::shared_ptr<UIView> m_view;
        TouchDispatcher m_dispatcher;
    };

    void dispatch(const QTouchEvent& event, TouchDispatcher& dispatcher) const;

    TouchDispatcher m_dispatcher;
    double m_pointsPerUnit = 1;
    double m_lastTime = 0; ///< seconds, of the last event
    TapField m_taps{1};
    TapField m_doubleTaps{2};
};

} // namespace lamina
