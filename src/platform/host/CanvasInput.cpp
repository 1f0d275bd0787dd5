#include "platform/host/CanvasInput.h"

#include "platform/view/UIGestureRecognizer.h"
#include "platform/view/UITapGestureRecognizer.h"
#include "platform/view/UIView.h"

#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QTouchEvent>
#include <QWheelEvent>

#include <cstdint>
#include <numbers>
#include <utility>
#include <vector>

namespace lamina {

namespace {

constexpr std::int64_t kMouse = -1; // no finger has it
constexpr double kWheelUnitsPerStep = 120;

double seconds(const QInputEvent& event)
{
    return static_cast<double>(event.timestamp()) / 1000.0;
}

/// A view without an end that hears of two quick taps of one finger.
std::shared_ptr<UIView> tapView(std::optional<CGPoint>& doubleTap)
{
    constexpr double kFar = 1e6;
    auto view = std::make_shared<UIView>();
    view->setBounds({-kFar, -kFar, 2 * kFar, 2 * kFar});
    auto recognizer = std::make_shared<UITapGestureRecognizer>();
    recognizer->setNumberOfTapsRequired(2);
    recognizer->addAction([&](UIGestureRecognizer& tapped) { doubleTap = tapped.locationInView(nullptr); });
    view->addGestureRecognizer(std::move(recognizer));
    return view;
}

} // namespace

CanvasInput::CanvasInput(const std::shared_ptr<UIView>& root)
    : m_dispatcher(root)
    , m_tapView(tapView(m_doubleTap))
    , m_tapDispatcher(m_tapView)
{
}

void CanvasInput::mousePressed(const QMouseEvent& event)
{
    m_lastTime = seconds(event);
    m_dispatcher.touchBegan(kMouse, treePoint(event.position()), m_lastTime);
}

void CanvasInput::mouseMoved(const QMouseEvent& event)
{
    m_lastTime = seconds(event);
    m_dispatcher.touchMoved(kMouse, treePoint(event.position()), m_lastTime);
}

void CanvasInput::mouseReleased(const QMouseEvent& event)
{
    m_lastTime = seconds(event);
    m_dispatcher.touchEnded(kMouse, treePoint(event.position()), m_lastTime);
}

std::optional<CGPoint> CanvasInput::touched(const QTouchEvent& event)
{
    m_lastTime = seconds(event);
    if (event.type() == QEvent::TouchCancel) {
        cancel();
        return std::nullopt;
    }
    dispatch(event, m_dispatcher);
    dispatch(event, m_tapDispatcher);
    return std::exchange(m_doubleTap, std::nullopt);
}

void CanvasInput::dispatch(const QTouchEvent& event, TouchDispatcher& dispatcher) const
{
    std::vector<TouchDispatcher::Position> moved;
    for (const QEventPoint& point : event.points())
        if (point.state() == QEventPoint::Updated)
            moved.push_back({point.id(), treePoint(point.position())});
    if (!moved.empty())
        dispatcher.touchesMoved(moved, m_lastTime);
    for (const QEventPoint& point : event.points()) {
        if (point.state() == QEventPoint::Pressed)
            dispatcher.touchBegan(point.id(), treePoint(point.position()), m_lastTime);
        else if (point.state() == QEventPoint::Released)
            dispatcher.touchEnded(point.id(), treePoint(point.position()), m_lastTime);
    }
}

bool CanvasInput::wheelTurned(const QWheelEvent& event)
{
    // Some platforms turn the wheel sideways while a modifier is held.
    const QPoint turned = event.angleDelta();
    const double steps = (turned.y() != 0 ? turned.y() : turned.x()) / kWheelUnitsPerStep;
    if (steps == 0)
        return false;
    const bool shift = event.modifiers().testFlag(Qt::ShiftModifier);
    return m_dispatcher.wheel(treePoint(event.position()), steps,
                              shift ? TouchDispatcher::Shift : TouchDispatcher::NoModifier);
}

bool CanvasInput::nativeGesture(const QNativeGestureEvent& event)
{
    const CGPoint point = treePoint(event.position());
    switch (event.gestureType()) {
    case Qt::ZoomNativeGesture:
        return m_dispatcher.magnify(point, 1 + event.value());
    case Qt::RotateNativeGesture:
        return m_dispatcher.rotate(point, event.value() * std::numbers::pi / 180);
    default:
        return false;
    }
}

void CanvasInput::cancel()
{
    m_tapDispatcher.cancelAllTouches(m_lastTime);
    m_dispatcher.cancelAllTouches(m_lastTime);
}

} // namespace lamina
