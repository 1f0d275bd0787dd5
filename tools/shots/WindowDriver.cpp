#include "WindowDriver.h"

#include "editors/blend/PickedImages.h"
#include "platform/base/DispatchQueue.h"

#include <QAccessible>
#include <QDropEvent>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QMimeData>
#include <QNativeGestureEvent>
#include <QPointingDevice>
#include <QTest>
#include <QWheelEvent>

#include <cmath>
#include <cstdlib>
#include <stdexcept>
#include <vector>

namespace lamina::test {

namespace {

/// Every visible item below `root`, those in front last.
void collect(QQuickItem& root, std::vector<QQuickItem*>& items)
{
    if (!root.isVisible())
        return;
    items.push_back(&root);
    for (QQuickItem* child : root.childItems())
        collect(*child, items);
}

QString accessibleName(QQuickItem& item)
{
    QAccessibleInterface* const interface = QAccessible::queryAccessibleInterface(&item);
    return interface ? interface->text(QAccessible::Name) : QString();
}

constexpr int kDragSteps = 12;

/// The way a finger makes before its move counts as a drag; the drag itself is counted from there.
QPointF runUp(QPointF by)
{
    constexpr double kMoreThanHesitation = 16;
    return by / std::hypot(by.x(), by.y()) * kMoreThanHesitation;
}

} // namespace

WindowDriver::WindowDriver(const LaunchOptions& options)
    : m_application(std::make_unique<Application>(options))
    , m_fingers(QTest::createTouchDevice())
{
    QAccessible::setActive(true);
    m_application->show();
    waitUntil([this] { return view().isExposed(); });
    view().requestActivate();
    settle();
}

WindowDriver::~WindowDriver()
{
    m_application.reset();
    clearPickedImages(); // they outlive a window
}

bool WindowDriver::waitUntil(const std::function<bool()>& done, double seconds)
{
    QElapsedTimer waited;
    waited.start();
    while (!done()) {
        if (static_cast<double>(waited.elapsed()) > seconds * 1000)
            return false;
        QGuiApplication::processEvents(QEventLoop::AllEvents, 20);
        QTest::qSleep(1);
    }
    return true;
}

void WindowDriver::settle()
{
    // A few turns without work: transitions come one after another, each on a turn of its own.
    int quiet = 0;
    waitUntil([this, &quiet] {
        const bool idle = DispatchQueue::main().runUntilIdle(0) && !m_application->screens().inTransition();
        quiet = idle ? quiet + 1 : 0;
        return quiet > 20;
    });
}

QQuickItem* WindowDriver::item(const QString& name)
{
    std::vector<QQuickItem*> items;
    collect(*view().contentItem(), items);
    for (auto item = items.rbegin(); item != items.rend(); ++item)
        if (accessibleName(**item) == name)
            return *item;
    return nullptr;
}

QQuickItem* WindowDriver::called(const QString& objectName)
{
    std::vector<QQuickItem*> items;
    collect(*view().contentItem(), items);
    for (auto item = items.rbegin(); item != items.rend(); ++item)
        if ((*item)->objectName() == objectName)
            return *item;
    return nullptr;
}

QPointF WindowDriver::middleOf(const QQuickItem& item)
{
    return item.mapToScene(QPointF(item.width() / 2, item.height() / 2));
}

bool WindowDriver::tap(const QString& name)
{
    QQuickItem* const target = item(name);
    if (!target || !target->isEnabled())
        return false;
    tapOnly(*target);
    settle();
    return true;
}

void WindowDriver::tapOnly(QQuickItem& item)
{
    tapAt(middleOf(item));
}

void WindowDriver::tapAt(QPointF place)
{
    const QPoint point = place.toPoint();
    QTest::touchEvent(&view(), m_fingers.get()).press(0, point, &view());
    QTest::touchEvent(&view(), m_fingers.get()).release(0, point, &view());
}

void WindowDriver::doubleTapAt(QPointF place)
{
    const QPoint point = place.toPoint();
    for (int i = 0; i < 2; ++i) {
        auto tap = QTest::touchEvent(&view(), m_fingers.get(), false);
        tap.press(0, point, &view());
        tap.commit(false);
        tap.release(0, point, &view());
        tap.commit(false);
    }
    settle();
}

Qt::DropAction WindowDriver::drop(const QMimeData& dropped, Qt::DropActions offered)
{
    const QPoint middle(view().width() / 2, view().height() / 2);
    QDragEnterEvent enter(middle, offered, &dropped, Qt::LeftButton, Qt::NoModifier);
    QGuiApplication::sendEvent(&view(), &enter);
    if (!enter.isAccepted())
        return Qt::IgnoreAction;
    QDragMoveEvent move(middle, offered, &dropped, Qt::LeftButton, Qt::NoModifier);
    QGuiApplication::sendEvent(&view(), &move);
    if (!move.isAccepted())
        return Qt::IgnoreAction;
    QDropEvent let(middle, offered, &dropped, Qt::LeftButton, Qt::NoModifier);
    QGuiApplication::sendEvent(&view(), &let);
    settle();
    return let.isAccepted() ? let.dropAction() : Qt::IgnoreAction;
}

void WindowDriver::turnWheel(int steps)
{
    const QPointF middle = middleOf(shownCanvas());
    for (int i = 0; i < std::abs(steps); ++i) {
        QWheelEvent turn(middle, view().mapToGlobal(middle), {}, {0, steps > 0 ? 120 : -120}, Qt::NoButton,
                         Qt::NoModifier, Qt::NoScrollPhase, false);
        QGuiApplication::sendEvent(&view(), &turn);
    }
    settle();
}

void WindowDriver::pinchTouchpad(double factor)
{
    const QPointF middle = middleOf(shownCanvas());
    QNativeGestureEvent pinch(Qt::ZoomNativeGesture, QPointingDevice::primaryPointingDevice(), 2, middle, middle,
                              view().mapToGlobal(middle), factor - 1, {});
    QGuiApplication::sendEvent(&view(), &pinch);
    settle();
}

QString WindowDriver::focusedName()
{
    QQuickItem* const focused = view().activeFocusItem();
    return focused ? accessibleName(*focused) : QString();
}

QString WindowDriver::ringedName()
{
    const QRectF window(QPointF(), QSizeF(view().size()));
    std::vector<QQuickItem*> items;
    collect(*view().contentItem(), items);
    for (QQuickItem* const item : items) {
        auto* const control = item->property("control").value<QQuickItem*>();
        if (control && item->property("inside").isValid() && window.contains(middleOf(*control)))
            return accessibleName(*control);
    }
    return {};
}

bool WindowDriver::click(const QString& name)
{
    QQuickItem* const target = item(name);
    if (!target || !target->isEnabled())
        return false;
    QTest::mouseClick(&view(), Qt::LeftButton, Qt::NoModifier, middleOf(*target).toPoint());
    settle();
    return true;
}

void WindowDriver::press(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    pressOnly(key, modifiers);
    settle();
}

void WindowDriver::pressOnly(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    QTest::keyClick(&view(), key, modifiers);
}

CanvasItem* WindowDriver::canvas()
{
    std::vector<QQuickItem*> items;
    collect(*view().contentItem(), items);
    for (auto item = items.rbegin(); item != items.rend(); ++item)
        if (auto* const found = qobject_cast<CanvasItem*>(*item))
            return found;
    return nullptr;
}

CanvasItem& WindowDriver::shownCanvas()
{
    CanvasItem* const shown = canvas();
    if (!shown)
        throw std::runtime_error("no canvas is on the screen");
    return *shown;
}

void WindowDriver::beginDrag(QPointF by)
{
    const QPointF start = middleOf(shownCanvas());
    QTest::touchEvent(&view(), m_fingers.get()).press(0, (start - runUp(by)).toPoint(), &view());
    QTest::touchEvent(&view(), m_fingers.get()).move(0, start.toPoint(), &view());
    settle(); // the window joins moves until it draws
    for (int step = 1; step <= kDragSteps; ++step)
        QTest::touchEvent(&view(), m_fingers.get()).move(0, (start + by * step / kDragSteps).toPoint(), &view());
}

void WindowDriver::dragCanvas(QPointF by)
{
    const QPoint end = (middleOf(shownCanvas()) + by).toPoint();
    beginDrag(by);
    QTest::touchEvent(&view(), m_fingers.get()).release(0, end, &view());
    settle();
}

void WindowDriver::drag(QPointF start, QPointF by)
{
    QTest::touchEvent(&view(), m_fingers.get()).press(0, start.toPoint(), &view());
    for (int step = 1; step <= kDragSteps; ++step) {
        QTest::touchEvent(&view(), m_fingers.get()).move(0, (start + by * step / kDragSteps).toPoint(), &view());
        QGuiApplication::processEvents(); // the window joins moves until it draws
    }
    QTest::touchEvent(&view(), m_fingers.get()).release(0, (start + by).toPoint(), &view());
    settle();
}

void WindowDriver::dragCanvasWithMouse(QPointF by)
{
    const QPointF start = middleOf(shownCanvas());
    QTest::mousePress(&view(), Qt::LeftButton, Qt::NoModifier, (start - runUp(by)).toPoint());
    QTest::mouseMove(&view(), start.toPoint());
    for (int step = 1; step <= kDragSteps; ++step)
        QTest::mouseMove(&view(), (start + by * step / kDragSteps).toPoint());
    QTest::mouseRelease(&view(), Qt::LeftButton, Qt::NoModifier, (start + by).toPoint());
    settle();
}

Qt::CursorShape WindowDriver::pointerAt(QPointF place)
{
    QTest::mouseMove(&view(), place.toPoint());
    settle();
    return pointer();
}

Qt::CursorShape WindowDriver::pointer()
{
    const QCursor* const over = QGuiApplication::overrideCursor();
    return over ? over->shape() : view().cursor().shape();
}

void WindowDriver::pinchCanvas(double before, double after)
{
    moveTwoFingers([&](double done) { return QPointF((before + (after - before) * done) / 2, 0); });
}

void WindowDriver::turnCanvas(double angle)
{
    constexpr double kReach = 60;
    moveTwoFingers([&](double done) { return kReach * QPointF(std::cos(angle * done), std::sin(angle * done)); });
}

void WindowDriver::moveTwoFingers(const std::function<QPointF(double done)>& reach)
{
    const QPointF middle = middleOf(shownCanvas());
    const auto one = [&](double done) { return (middle - reach(done)).toPoint(); };
    const auto other = [&](double done) { return (middle + reach(done)).toPoint(); };
    QTest::touchEvent(&view(), m_fingers.get()).press(0, one(0), &view()).press(1, other(0), &view());
    for (int step = 1; step <= kDragSteps; ++step) {
        const double done = static_cast<double>(step) / kDragSteps;
        QTest::touchEvent(&view(), m_fingers.get()).move(0, one(done), &view()).move(1, other(done), &view());
    }
    QTest::touchEvent(&view(), m_fingers.get()).release(0, one(1), &view()).release(1, other(1), &view());
    settle();
}

} // namespace lamina::test
