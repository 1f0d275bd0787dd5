#pragma once

#include <QObject>

class QWindow;

namespace lamina {

/// Knows whether the user of a window has a mouse (or a touchpad) at hand or a finger: what was used last, and before
/// that what the machine has. Main thread.
class PointerKind : public QObject {
    Q_OBJECT

public:
    /// Watches the window's input, which is not changed.
    explicit PointerKind(QWindow& window);

    /// False: fingers.
    bool isMouse() const { return m_mouse; }

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

signals:
    void changed();

private:
    void setMouse(bool mouse);

    bool m_mouse;
};

} // namespace lamina
