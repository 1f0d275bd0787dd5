#pragma once

#include <QObject>

class QWindow;

namespace lamina {

/// What the user points with, so that hints can speak of it: fingers, or a mouse, touchpad or pen. That is what last
/// pressed, tapped, or turned a wheel in the window; before that, fingers where there is a touch screen and nothing
/// else. Main thread.
class LastPointer : public QObject {
    Q_OBJECT

public:
    /// Watches the window, which must outlive it.
    explicit LastPointer(QWindow& window);

    bool isTouch() const { return m_touch; }

signals:
    void changed();

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void set(bool touch);

    bool m_touch = false;
};

} // namespace lamina
