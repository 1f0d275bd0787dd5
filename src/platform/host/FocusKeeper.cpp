#include "platform/host/FocusKeeper.h"

#include <QKeyEvent>
#include <QQuickWindow>

namespace lamina {

namespace {

bool isModifier(int key)
{
    return key == Qt::Key_Shift || key == Qt::Key_Control || key == Qt::Key_Alt || key == Qt::Key_Meta ||
           key == Qt::Key_AltGr || key == Qt::Key_Super_L || key == Qt::Key_Super_R;
}

} // namespace

FocusKeeper::FocusKeeper(QQuickWindow& window)
    : m_window(window)
{
    window.installEventFilter(this);
    connect(&window, &QQuickWindow::activeFocusItemChanged, this, &FocusKeeper::focusMoved);
}

void FocusKeeper::setFrame(QQuickItem* frame)
{
    m_frame = frame;
    m_last.clear();
    if (!frame)
        return;
    frame->forceActiveFocus(m_visible ? Qt::TabFocusReason : Qt::OtherFocusReason);
    QMetaObject::invokeMethod(this, &FocusKeeper::settle, Qt::QueuedConnection);
}

bool FocusKeeper::eventFilter(QObject* object, QEvent* event)
{
    switch (event->type()) {
    case QEvent::ShortcutOverride: // a key that is a shortcut comes as nothing else
        keyPressed(static_cast<const QKeyEvent&>(*event));
        break;
    case QEvent::KeyPress: {
        const auto& key = static_cast<const QKeyEvent&>(*event);
        keyPressed(key);
        const bool back = key.key() == Qt::Key_Backtab;
        if ((key.key() == Qt::Key_Tab || back) && !key.modifiers().testFlag(Qt::ControlModifier) && moveFocus(!back))
            return true;
        break;
    }
    case QEvent::MouseButtonPress:
    case QEvent::TouchBegin:
        m_lastInputWasKey = false;
        setVisible(false);
        break;
    default:
        break;
    }
    return QObject::eventFilter(object, event);
}

void FocusKeeper::keyPressed(const QKeyEvent& event)
{
    if (isModifier(event.key()))
        return;
    m_lastInputWasKey = true;
    if (!(event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)))
        setVisible(true);
}

void FocusKeeper::setVisible(bool visible)
{
    if (m_visible == visible)
        return;
    m_visible = visible;
    emit focusVisibleChanged();
}

void FocusKeeper::focusMoved()
{
    if (m_lastInputWasKey)
        setVisible(true);
    QQuickItem* const item = m_window.activeFocusItem();
    if (item && item->activeFocusOnTab())
        m_last = item;
    else // a screen may be about to give it to another of its controls
        QMetaObject::invokeMethod(this, &FocusKeeper::settle, Qt::QueuedConnection);
}

/// Gives the focus to a control where a mere frame of controls has it.
void FocusKeeper::settle()
{
    QQuickItem* const item = m_window.activeFocusItem();
    // Nothing has it in a window that is not the active one.
    if (!m_frame || !item || item->activeFocusOnTab() || !item->isFocusScope())
        return;
    if (item != m_frame && !m_frame->isAncestorOf(item) && !item->isAncestorOf(m_frame))
        return;
    QQuickItem* const start = m_last && m_frame->isAncestorOf(m_last) ? m_last.data() : m_frame.data();
    if (QQuickItem* const next = neighbour(*start, true))
        next->forceActiveFocus(m_visible ? Qt::TabFocusReason : Qt::OtherFocusReason);
}

/// The next control on the screen; null: there is none but the start.
QQuickItem* FocusKeeper::neighbour(QQuickItem& start, bool forward) const
{
    // The chain goes round the whole window, but not by way of a start that is hidden or disabled.
    QQuickItem* const first = start.nextItemInFocusChain(forward);
    QQuickItem* item = first;
    while (item && item != &start && !m_frame->isAncestorOf(item)) {
        item = item->nextItemInFocusChain(forward);
        if (item == first)
            return nullptr;
    }
    return item == &start ? nullptr : item;
}

bool FocusKeeper::moveFocus(bool forward)
{
    if (!m_frame)
        return false;
    QQuickItem* const start = m_window.activeFocusItem() ? m_window.activeFocusItem() : m_frame.data();
    if (QQuickItem* const next = neighbour(*start, forward))
        next->forceActiveFocus(forward ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return true;
}

} // namespace lamina
