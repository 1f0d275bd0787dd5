#pragma once

#include <QObject>
#include <QRect>
#include <QSize>

#include <optional>

class QWindow;

namespace lamina {

/// How large a window was when it was left.
struct WindowSize {
    QSize size; ///< points, while it was not maximized
    bool maximized = false;

    friend bool operator==(const WindowSize&, const WindowSize&) = default;
};

/// The size at which a window opens on a display of which `available` points are free of panels: that of the last time,
/// brought in where it no longer fits; without one, wide where there is room for that, else shaped like a phone. The
/// frame that desktops put round a window has its room. A phone's window is maximized, whatever it was.
WindowSize openingSize(QSize available, const std::optional<WindowSize>& last);

/// Sizes a window for its display and remembers what the user makes of it: `window.ini` in the `stateFolder`. The
/// window has to outlive this. Main thread.
class WindowPlacement : public QObject {
public:
    /// One of a `given` size is not remembered, nor is it opened as the last one was.
    WindowPlacement(QWindow& window, QSize given);
    ~WindowPlacement() override;

    /// Shows the window, maximized where it should be.
    void show();

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    QWindow& m_window;
    bool m_given;
    WindowSize m_now;
    QSize m_former;    ///< before the last change
    WindowSize m_kept; ///< as the file has it
};

} // namespace lamina
