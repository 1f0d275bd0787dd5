#include "platform/host/PhotoDropArea.h"

#include "platform/host/Application.h"

#include <QDropEvent>

namespace lamina {

namespace {

bool offersCopy(const QDropEvent& event)
{
    return event.possibleActions().testFlag(Qt::CopyAction);
}

/// What is taken is copied, whatever was proposed: a move has the source delete what was dragged.
void answer(QDropEvent& event, bool taken)
{
    event.setDropAction(taken ? Qt::CopyAction : Qt::IgnoreAction);
    event.setAccepted(taken);
}

} // namespace

PhotoDropArea::PhotoDropArea(QQuickItem* parent)
    : QQuickItem(parent)
{
    setFlag(ItemAcceptsDrops);
}

void PhotoDropArea::dragEnterEvent(QDragEnterEvent* event)
{
    const Application* const application = Application::current();
    setHovered(application && offersCopy(*event) && application->wantsPhotos(*event->mimeData()));
    answer(*event, m_hovered);
}

void PhotoDropArea::dragMoveEvent(QDragMoveEvent* event)
{
    answer(*event, m_hovered && offersCopy(*event));
}

void PhotoDropArea::dragLeaveEvent(QDragLeaveEvent*)
{
    setHovered(false);
}

void PhotoDropArea::dropEvent(QDropEvent* event)
{
    setHovered(false);
    Application* const application = Application::current();
    answer(*event, application && offersCopy(*event) && application->receivePhotos(*event->mimeData()));
}

void PhotoDropArea::setHovered(bool hovered)
{
    if (m_hovered == hovered)
        return;
    m_hovered = hovered;
    emit hoveredChanged();
}

} // namespace lamina
