#pragma once

#include "app/ImagePIckingViewController.h"
#include "app/PinchZoomViewController.h"
#include "editors/blend/BlendPhotoViewController.h"
#include "platform/host/Application.h"
#include "platform/host/CanvasItem.h"

#include <QImage>
#include <QQuickItem>

#include <functional>
#include <memory>
#include <string>

class QAccessibleInterface;
class QMimeData;
class QPointingDevice;

namespace lamina::test {

/// The real window, worked as a user works it: what is seen is found by its accessible name, and touched by fingers,
/// mouse or keys.
class WindowDriver {
public:
    explicit WindowDriver(const LaunchOptions& options);
    ~WindowDriver();

    Application& application() { return *m_application; }
    QQuickView& view() { return m_application->view(); }

    /// Runs the event loop until `done` says so; false after `seconds`.
    static bool waitUntil(const std::function<bool()>& done, double seconds = 20);
    /// Until no transition is under way and the main queue is empty.
    void settle();

    /// The screen on top as the class it is expected to be; null when it is another.
    template <class Screen>
    std::shared_ptr<Screen> top()
    {
        return std::dynamic_pointer_cast<Screen>(m_application->screens().window().topViewController());
    }
    template <class Screen>
    bool waitFor()
    {
        const bool came = waitUntil([this] { return top<Screen>() != nullptr; });
        settle();
        return came;
    }

    /// The visible item with this accessible name; null when there is none.
    QQuickItem* item(const QString& name);
    /// The visible item with this object name; null when there is none.
    QQuickItem* called(const QString& objectName);
    /// Its middle, in the window.
    static QPointF middleOf(const QQuickItem& item);
    /// False when there is no such item, or it is disabled.
    bool tap(const QString& name);
    bool click(const QString& name);
    /// A tap without waiting for what follows.
    void tapOnly(QQuickItem& item);
    /// The same at a place of the window.
    void tapAt(QPointF place);
    /// Two in quick succession, with nothing drawn in between.
    void doubleTapAt(QPointF place);
    /// What is held over the middle of the window, then let go; its source lets do `offered` and would like the first
    /// of `Qt::DropAction` in it. Gives what was done with it: nothing when it was not taken.
    Qt::DropAction drop(const QMimeData& dropped, Qt::DropActions offered = Qt::CopyAction);
    void turnWheel(int steps);
    /// Two fingers on a touchpad, by a factor.
    void pinchTouchpad(double factor);
    /// Accessible name of what has the keyboard; empty: nothing.
    QString focusedName();
    /// The same of what the ring of the focus is seen around; empty: around nothing in the window.
    QString ringedName();
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    /// A key without waiting for what follows.
    void pressOnly(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);

    /// In front; null when there is none.
    CanvasItem* canvas();
    /// One finger, or the mouse, from the canvas's middle by points of the window, in small steps.
    void dragCanvas(QPointF by);
    /// The finger's drag without its end.
    void beginDrag(QPointF by);
    void dragCanvasWithMouse(QPointF by);
    /// One finger from a place of the window, by all of the way that it goes.
    void drag(QPointF start, QPointF by);
    /// What the mouse's pointer looks like, once it has moved to a place of the window.
    Qt::CursorShape pointerAt(QPointF place);
    Qt::CursorShape pointer();
    /// Two fingers about the canvas's middle, from `before` to `after` apart.
    void pinchCanvas(double before, double after);
    /// Two fingers about the canvas's middle, turned by so many radians, clockwise.
    void turnCanvas(double angle);

    QImage grab() { return view().grabWindow(); }

private:
    CanvasItem& shownCanvas();
    /// From the canvas's middle to one finger, and the other way to the other, when so much of the way is done.
    void moveTwoFingers(const std::function<QPointF(double done)>& reach);

    std::unique_ptr<Application> m_application;
    std::unique_ptr<QPointingDevice> m_fingers;
};

} // namespace lamina::test
