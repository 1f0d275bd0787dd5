#include "platform/host/ApplicationLife.h"

#include "app/AppDelegate.h"
#include "platform/application/UIApplication.h"
#include "platform/application/UNUserNotificationCenter.h"
#include "platform/host/services/SessionName.h"

#include <utility>

namespace lamina {

ApplicationLife::ApplicationLife(const BusConnector& connector, NotificationWay way)
    : m_delegate(AppDelegate::make())
    , m_badge(connector)
    , m_notifications(connector, way)
{
    UIApplication& application = UIApplication::shared();
    application.setDelegate(m_delegate);
    application.setBadgeSetter([this](int number) { m_badge.setNumber(number); });
    UNUserNotificationCenter::currentNotificationCenter().setService(&m_notifications);
}

ApplicationLife::~ApplicationLife()
{
    end();
    UNUserNotificationCenter::currentNotificationCenter().setService(nullptr);
    UIApplication::shared().setBadgeSetter({});
}

void ApplicationLife::exportTo(SessionName& name)
{
    name.addExport(m_push.exporter());
}

void ApplicationLife::launch()
{
    if (!std::exchange(m_hasLaunched, true))
        UIApplication::shared().didFinishLaunching();
}

void ApplicationLife::begin()
{
    m_push.begin();
}

void ApplicationLife::beginWithoutWindow()
{
    m_push.beginForMessages();
}

bool ApplicationLife::hasSomethingShown() const
{
    return m_notifications.needsProcess() || UIApplication::shared().applicationIconBadgeNumber() > 0;
}

void ApplicationLife::end()
{
    if (!std::exchange(m_hasEnded, true))
        UIApplication::shared().willTerminate();
}

} // namespace lamina
