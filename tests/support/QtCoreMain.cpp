#include <QCoreApplication>
#include <gtest/gtest.h>

// For tests of what needs Qt's events and no window.
int main(int argc, char** argv)
{
    for (const char* const proxy : {"http_proxy", "https_proxy", "all_proxy", "HTTP_PROXY", "HTTPS_PROXY", "ALL_PROXY"})
        qunsetenv(proxy);
    const QCoreApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
