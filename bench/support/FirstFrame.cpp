// Opens the window as lamina-app does, writes one byte to standard output when its first frame stands, and leaves.
#include "platform/host/Application.h"
#include "platform/host/services/ApplicationService.h"
#include "platform/host/services/SessionName.h"

#include <QGuiApplication>

#include <chrono>
#include <unistd.h>

int main(int argc, char** argv)
{
    lamina::ApplicationService service;
    lamina::SessionName name;
    name.addExport([&service](QDBusConnection& bus) { service.exportOn(bus); });
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    name.begin();
    QGuiApplication qt(argc, argv);
    (void)name.waitFor(std::chrono::milliseconds(300));
    lamina::LaunchOptions options;
    options.size = {360, 720};
    lamina::Application application(options);
    QObject::connect(&application.view(), &QQuickWindow::frameSwapped, &qt, [] {
        const bool told = ::write(STDOUT_FILENO, "1", 1) == 1;
        ::_exit(told ? 0 : 1);
    });
    application.show();
    return QGuiApplication::exec();
}
