// How large the window opens: whole on its display, and as it was left.
#include "WindowTest.h"

#include "platform/host/WindowPlacement.h"

namespace lamina::test {
namespace {

TEST(WindowPlacement, OpensWholeOnEveryDisplay)
{
    const struct {
        QSize available;
        std::optional<WindowSize> last;
        WindowSize opens;
    } table[] = {
        {{1366, 736}, {}, {{1120, 680}}}, // with a panel, and a title bar over the window
        {{1920, 1080}, {}, {{1120, 760}}},
        {{768, 1024}, {}, {{400, 780}}},
        {{800, 600}, {}, {{400, 544}}},
        {{360, 720}, {}, {{360, 720}, true}},
        {{720, 360}, WindowSize{{400, 300}}, {{400, 320}, true}},
        {{1920, 1080}, WindowSize{{640, 500}}, {{640, 500}}},
        {{1366, 736}, WindowSize{{1800, 1000}, true}, {{1350, 680}, true}},
        {{1920, 1080}, WindowSize{{10, 10}}, {{320, 320}}},
    };
    for (const auto& c : table) {
        SCOPED_TRACE(&c - table);
        const WindowSize opens = openingSize(c.available, c.last);
        EXPECT_EQ(opens.size, c.opens.size) << opens.size.width() << "x" << opens.size.height();
        EXPECT_EQ(opens.maximized, c.opens.maximized);
    }
}

TEST_F(WindowTest, IsAsItWasLeftUnlessItsSizeWasGiven)
{
    const auto shown = [this](const LaunchOptions& options = {}) {
        driver.reset();
        driver = std::make_unique<WindowDriver>(options);
        return driver->view().size();
    };
    shown();
    driver->view().resize(520, 430);
    driver->settle();
    LaunchOptions given;
    given.size = {360, 500};
    EXPECT_EQ(shown(given), QSize(360, 500));
    EXPECT_EQ(shown(), QSize(520, 430));
    driver->view().showMaximized();
    driver->settle();
    shown();
    EXPECT_TRUE(driver->view().windowStates().testFlag(Qt::WindowMaximized));
    driver->view().showNormal();
    driver->settle();
    shown();
    EXPECT_FALSE(driver->view().windowStates().testFlag(Qt::WindowMaximized));
}

} // namespace
} // namespace lamina::test
