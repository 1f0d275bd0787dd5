#pragma once

#include <QObject>
#include <QPointer>
#include <QQuickItem>

class QQuickWindow;

namespace lamina {

/// Keeps Tab within the screen that is on top: what lies under an alert is seen, but not reached by the keyboard.
class FocusKeeper : public QObject {
public:
    explicit FocusKeeper(QQuickWindow& window);
    void setFrame(QQuickItem* frame) { m_frame = frame; }

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    bool moveFocus(bool forward);

    QQuickWindow& m_window;
    QPointer<QQuickItem> m_frame;
};

} // namespace lamina
