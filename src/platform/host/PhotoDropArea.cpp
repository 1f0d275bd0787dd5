#include "platform/host/PhotoDropArea.h"

#include "platform/host/Application.h"

#include <QDropEvent>

namespace lamina {

PhotoDropArea::PhotoDropArea(QQuickItem* parent)
    : QQuickItem(parent)
{
    setFlag(ItemAcceptsDrops);
}

void PhotoDropArea::dragEnterEvent(QDragEnterEvent* event)
{
    const Application* const application = Application::current();
    const bool wanted = application && application->wantsPhotos(*event->mimeData());
    setHovered(wanted);
    event->setAccepted(wanted);
}

void PhotoDropArea::dragMoveEvent(QDragMoveEvent* event)
{
    event->setAccepted(m_hovered);
}

void PhotoDropArea::dragLeaveEvent(QDragLeaveEvent*)
{
    setHovered(false);
}

void PhotoDropArea::dropEvent(QDropEvent* event)
{
    setHovered(false);
    Application* const application = Application::current();
    if (application && application->receivePhotos(*event->mimeData()))
        event->acceptProposedAction();
    else
        event->ignore();
}

void PhotoDropArea::setHovered(bool hovered)
{
    if (m_hovered == hovered)
        return;
    m_hovered = hovered;
    emit hoveredChanged();
}

} // namespace lamina
