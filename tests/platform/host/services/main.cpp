#include "PrivateBus.h"

#include <QGuiApplication>
#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    lamina::test::enterPrivateBus(argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
