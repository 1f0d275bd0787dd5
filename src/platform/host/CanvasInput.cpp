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
#include <vector>

namespace lamina {

namespace {

constexpr std::int64_t kMouse = -1; // no finger has it
constexpr double kWheelUnitsPerStep = 120;

double seconds(const QInputEvent& event)
{
    return static_cast<double>(event.timestamp()) / 1000.0;
}

} // namespace

CanvasInput::TapField::TapField(int taps)
    : m_view(std::make_shared<UIView>())
    , m_dispatcher(m_view)
{
    constexpr double kFar = 1e6;
    m_view->setBounds({-kFar, -kFar, 2 * kFar, 2 * kFar});
    auto recognizer = std::make_shared<UITapGestureRecognizer>();
    recognizer->setNumberOfTapsRequired(taps);
    recognizer->addAction([this](UIGestureRecognizer& tapped) { m_tapped = tapped.locationInView(nullptr); });
    m_view->addGestureRecognizer(std::move(recognizer));
}

CanvasInput::CanvasInput(const std::shared_ptr<UIView>& root)
    : m_dispatcher(root)
{
}

void CanvasInput::mousePressed(const QMouseEvent& event)
{
    m_lastTime = seconds(event);
    for (TouchDispatcher* const dispatcher : {&m_dispatcher, &m_taps.dispatcher()})
        dispatcher->touchBegan(kMouse, treePoint(event.position()), m_lastTime);
}

void CanvasInput::mouseMoved(const QMouseEvent& event)
{
    m_lastTime = seconds(event);
    for (TouchDispatcher* const dispatcher : {&m_dispatcher, &m_taps.dispatcher()})
        dispatcher->touchMoved(kMouse, treePoint(event.position()), m_lastTime);
}

CanvasInput::Taps CanvasInput::mouseReleased(const QMouseEvent& event)
{
    m_lastTime = seconds(event);
    for (TouchDispatcher* const dispatcher : {&m_dispatcher, &m_taps.dispatcher()})
        dispatcher->touchEnded(kMouse, treePoint(event.position()), m_lastTime);
    return {m_taps.take(), {}};
}

CanvasInput::Taps CanvasInput::touched(const QTouchEvent& event)
{
    m_lastTime = seconds(event);
    if (event.type() == QEvent::TouchCancel) {
        cancel();
        return {};
    }
    for (TouchDispatcher* const dispatcher : {&m_dispatcher, &m_taps.dispatcher(), &m_doubleTaps.dispatcher()})
        dispatch(event, *dispatcher);
    return {m_taps.take(), m_doubleTaps.take()};
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
    m_taps.dispatcher().cancelAllTouches(m_lastTime);
    m_doubleTaps.dispatcher().cancelAllTouches(m_lastTime);
    m_dispatcher.cancelAllTouches(m_lastTime);
}

} // namespace lamina
