// Every test drives the real window on the offscreen platform, on a session bus and in a home of its own.
#include "OwnHome.h"
#include "PrivateBus.h"
#include "platform/host/GuardedApplication.h"

#include <QQuickWindow>

#include <gtest/gtest.h>

#ifndef LAMINA_DISPLAY_SCALE
#define LAMINA_DISPLAY_SCALE "3" // a phone's display: the canvas has the pixels that are saved
#endif

int main(int argc, char** argv)
{
    lamina::test::enterPrivateBus(argv);
    testing::InitGoogleTest(&argc, argv);
    const lamina::test::OwnHome home;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_SCALE_FACTOR", LAMINA_DISPLAY_SCALE);
    qputenv("LAMINA_REDUCED_MOTION", "1");
    qputenv("LC_ALL", "C.UTF-8");
    for (const char* const proxy : {"http_proxy", "https_proxy", "all_proxy", "HTTP_PROXY", "HTTPS_PROXY", "ALL_PROXY"})
        qunsetenv(proxy); // the tests' server is on this machine
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const lamina::GuardedApplication qt(argc, argv);
    return RUN_ALL_TESTS();
}
