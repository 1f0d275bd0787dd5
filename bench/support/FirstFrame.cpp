// Opens the window as lamina-app does, writes one byte to standard output when its first frame stands, and leaves.
#include "platform/host/Application.h"

#include <QGuiApplication>

#include <unistd.h>

int main(int argc, char** argv)
{
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QGuiApplication qt(argc, argv);
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
