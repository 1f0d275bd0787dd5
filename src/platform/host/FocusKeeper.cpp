#include "platform/host/FocusKeeper.h"

#include <QKeyEvent>
#include <QQuickWindow>

namespace lamina {

FocusKeeper::FocusKeeper(QQuickWindow& window)
    : m_window(window)
{
    window.installEventFilter(this);
}

bool FocusKeeper::eventFilter(QObject* object, QEvent* event)
{
    if (event->type() == QEvent::KeyPress) {
        const auto& key = static_cast<const QKeyEvent&>(*event);
        const bool back = key.key() == Qt::Key_Backtab;
        if ((key.key() == Qt::Key_Tab || back) && !key.modifiers().testFlag(Qt::ControlModifier) && moveFocus(!back))
            return true;
    }
    return QObject::eventFilter(object, event);
}

bool FocusKeeper::moveFocus(bool forward)
{
    if (!m_frame)
        return false;
    QQuickItem* const start = m_window.activeFocusItem() ? m_window.activeFocusItem() : m_frame.data();
    const Qt::FocusReason reason = forward ? Qt::TabFocusReason : Qt::BacktabFocusReason;
    // The chain goes round the whole window, so that it comes back to where it started.
    for (QQuickItem* item = start->nextItemInFocusChain(forward); item && item != start;
         item = item->nextItemInFocusChain(forward)) {
        if (!m_frame->isAncestorOf(item))
            continue;
        item->forceActiveFocus(reason);
        return true;
    }
    // The only control there is: it has the focus already, and is now to show it.
    start->setFocus(false);
    start->forceActiveFocus(reason);
    return true;
}

} // namespace lamina
