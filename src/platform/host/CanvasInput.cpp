#include "platform/host/CanvasInput.h"

#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QTouchEvent>
#include <QWheelEvent>

#include <cmath>
#include <numbers>
#include <vector>

namespace lamina {

namespace {

constexpr std::int64_t kMouse = -1; // no finger has it
constexpr double kWheelUnitsPerStep = 120;
constexpr double kTapSeconds = 0.3;
constexpr double kTapDistance = 20; // points

double seconds(const QInputEvent& event)
{
    return static_cast<double>(event.timestamp()) / 1000.0;
}

bool near(CGPoint a, CGPoint b)
{
    return std::hypot(a.x - b.x, a.y - b.y) <= kTapDistance;
}

} // namespace

CanvasInput::CanvasInput(const std::shared_ptr<UIView>& root)
    : m_dispatcher(root)
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
    std::vector<TouchDispatcher::Position> moved;
    for (const QEventPoint& point : event.points())
        if (point.state() == QEventPoint::Updated)
            moved.push_back({point.id(), treePoint(point.position())});
    if (!moved.empty())
        m_dispatcher.touchesMoved(moved, m_lastTime);
    for (const QEventPoint& point : event.points()) {
        if (point.state() == QEventPoint::Pressed)
            m_dispatcher.touchBegan(point.id(), treePoint(point.position()), m_lastTime);
        else if (point.state() == QEventPoint::Released)
            m_dispatcher.touchEnded(point.id(), treePoint(point.position()), m_lastTime);
    }
    return followTaps(event);
}

std::optional<CGPoint> CanvasInput::followTaps(const QTouchEvent& event)
{
    const auto& points = event.points();
    if (points.size() != 1) {
        m_down.reset();
        m_lastTap.reset();
        return std::nullopt;
    }
    const CGPoint point = treePoint(points.first().position());
    if (event.type() == QEvent::TouchBegin)
        m_down = Tap{point, m_lastTime};
    if (event.type() != QEvent::TouchEnd || !m_down)
        return std::nullopt;
    const Tap down = *m_down;
    m_down.reset();
    if (m_lastTime - down.time > kTapSeconds || !near(point, down.point)) {
        m_lastTap.reset();
        return std::nullopt;
    }
    const bool second = m_lastTap && down.time - m_lastTap->time <= kTapSeconds && near(point, m_lastTap->point);
    m_lastTap = second ? std::nullopt : std::optional(Tap{point, m_lastTime});
    return second ? std::optional(point) : std::nullopt;
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
    m_down.reset();
    m_dispatcher.cancelAllTouches(m_lastTime);
}

} // namespace lamina
