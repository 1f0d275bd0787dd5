// The least that Qt Quick does to show a window: the limit of the start's figure.
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>

#include <unistd.h>

int main(int argc, char** argv)
{
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QGuiApplication qt(argc, argv);
    QQuickView view;
    QQmlComponent component(view.engine());
    component.setData("import QtQuick\nRectangle { width: 360; height: 720 }", QUrl());
    view.setContent(QUrl(), &component, component.create());
    QObject::connect(&view, &QQuickWindow::frameSwapped, &qt, [] {
        const bool told = ::write(STDOUT_FILENO, "1", 1) == 1;
        ::_exit(told ? 0 : 1);
    });
    view.show();
    return QGuiApplication::exec();
}
