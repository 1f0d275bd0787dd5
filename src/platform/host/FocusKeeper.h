#pragma once

#include <QObject>
#include <QPointer>
#include <QQuickItem>

class QQuickWindow;

namespace lamina {

/// The keyboard's focus in a window of screens. Tab stays within the screen that is on top: what lies under an alert is
/// seen, but not reached. The focus is never on nothing: where what had it is gone, hidden or disabled, the next
/// control takes it. It also knows whether the focus is to be shown: only to those who use keys.
class FocusKeeper : public QObject {
    Q_OBJECT

public:
    explicit FocusKeeper(QQuickWindow& window);

    /// The item of the screen on top; null: Tab goes as Qt has it. What had the focus in it gets it again.
    void setFrame(QQuickItem* frame);

    /// Whether the user works by keys: from a key that moves or presses something until a finger or a mouse does. A
    /// shortcut alone shows the focus only where it leads elsewhere.
    bool isFocusVisible() const { return m_visible; }

signals:
    /// See isFocusVisible.
    void focusVisibleChanged();

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void keyPressed(const QKeyEvent& event);
    void setVisible(bool visible);
    void focusMoved();
    void settle();
    bool moveFocus(bool forward);
    QQuickItem* neighbour(QQuickItem& start, bool forward) const;

    QQuickWindow& m_window;
    QPointer<QQuickItem> m_frame;
    QPointer<QQuickItem> m_last; ///< what had the focus before it was on nothing
    bool m_visible = false;
    bool m_lastInputWasKey = false;
};

} // namespace lamina
