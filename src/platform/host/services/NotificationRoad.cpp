#include "platform/host/services/NotificationRoad.h"

#include "platform/base/Log.h"
#include "platform/base/ShownText.h"

#include <utility>

namespace lamina {

void NotificationRoad::complain(const QDBusMessage& reply)
{
    if (std::exchange(m_hasComplained, true))
        return;
    const bool isError = reply.type() == QDBusMessage::ErrorMessage;
    logWarning("notifications can't be shown: " +
               (isError ? shownText(reply.errorMessage().toStdString()) : "the desktop’s answer makes no sense"));
}

} // namespace lamina
