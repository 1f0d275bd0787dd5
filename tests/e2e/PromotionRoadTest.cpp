// From a saved blend to what is recommended afterwards, by a server of the test's own.
#include "WindowTest.h"

#include "PromotionOffer.h"
#include "platform/application/UIApplication.h"
#include "promotion/InterstitialPresentController.h"
#include "promotion/PromotionRecords.h"

#include <QGuiApplication>
#include <algorithm>
#include <cstddef>

namespace lamina::test {
namespace {

class PromotionRoad : public WindowTest {
protected:
    void setFeeds(bool held) { offerOne(server, QGuiApplication::applicationDisplayName().toStdString(), held); }
    void saveAndCloseSheet()
    {
        goToPNG();
        ASSERT_TRUE(driver->tap(QStringLiteral("Save PNG")));
        ASSERT_TRUE(driver->waitFor<UIActivityViewController>());
        EXPECT_EQ(server.requests().size(), asked);
        driver->press(Qt::Key_Escape);
    }

    PromotionServer server;
    std::size_t asked = 0; ///< requests before the export
};

TEST_F(PromotionRoad, StandsOverTheShareScreenAndNeverOverWork)
{
    setFeeds(false);
    open();
    std::string opened;
    UIApplication::shared().setURLOpener([&](const std::string& url) {
        opened = url;
        return true;
    });
    goToBlend();
    saveAndCloseSheet();
    ASSERT_TRUE(driver->waitFor<InterstitialPresentController>());
    const auto screen = driver->top<InterstitialPresentController>();
    EXPECT_NE(std::dynamic_pointer_cast<ShareController>(screen->presentingViewController()), nullptr);
    EXPECT_EQ(driver->focusedName(), QStringLiteral("Close"));
    const QQuickItem* const close = driver->item(QStringLiteral("Close"));
    EXPECT_GE(std::min(close->width(), close->height()), 44);
    ASSERT_TRUE(driver->tap(QStringLiteral("Recommended: opens shop.example in the browser")));
    EXPECT_EQ(opened, kOfferedLink);
    EXPECT_EQ(driver->top<InterstitialPresentController>(), screen);
    driver->press(Qt::Key_Escape);
    ASSERT_TRUE(driver->waitFor<ShareController>());
    ASSERT_TRUE(driver->tap(QStringLiteral("Back")));
    ASSERT_TRUE(driver->waitFor<BlendPhotoViewController>());

    asked = server.requests().size();
    setFeeds(true);
    saveAndCloseSheet();
    ASSERT_TRUE(WindowDriver::waitUntil([&] { return server.requests().size() == asked + 2; }));
    ASSERT_TRUE(driver->tap(QStringLiteral("Back")));
    ASSERT_TRUE(driver->waitFor<BlendPhotoViewController>());
    server.release();
    fetched<CustomInterstrial>(EndPointItems::promotions);
    driver->settle();
    EXPECT_NE(driver->top<BlendPhotoViewController>(), nullptr) << "it came too late";
}

} // namespace
} // namespace lamina::test
