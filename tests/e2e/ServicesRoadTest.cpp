// From the first start to a shared file: where nobody serves the application, and where everybody does.
#include "PromotionOffer.h"
#include "TestDesktop.h"
#include "TestDistributor.h"
#include "TestHTTPServer.h"
#include "WindowTest.h"

#include "LogCapture.h"
#include "editors/blend/BlendComposition.h"
#include "platform/application/UIApplication.h"
#include "platform/host/ApplicationLife.h"
#include "platform/host/services/SessionName.h"
#include "promotion/InterstitialPresentController.h"

#include <QGuiApplication>

#include <chrono>

namespace lamina::test {
namespace {

using namespace std::chrono_literals;

/// Whatever the application asks of the network, and be it of another host, arrives there.
class Eavesdropper : public TestHTTPServer {
public:
    Eavesdropper()
    {
        for (const char* const variable : kVariables)
            qputenv(variable, QByteArray::fromStdString(url()));
    }
    ~Eavesdropper()
    {
        for (const char* const variable : kVariables)
            qunsetenv(variable);
    }

private:
    static constexpr const char* kVariables[] = {"http_proxy", "https_proxy"};
};

class ServicesRoad : public WindowTest {
protected:
    void TearDown() override
    {
        driver.reset();
        name.reset();
        life.reset();
    }

    /// As the program starts: on the bus, with a window, and with what begins behind its first frame.
    void start()
    {
        life = std::make_shared<ApplicationLife>();
        name = std::make_unique<SessionName>();
        life->exportTo(*name);
        name->begin();
        ASSERT_EQ(name->waitFor(10s), SessionName::State::Owned);
        LaunchOptions options;
        options.life = life;
        open(options);
        ASSERT_TRUE(WindowDriver::waitUntil([] { return UIApplication::shared().isActive(); }));
    }
    void moveUpperPhoto()
    {
        driver->dragCanvas({30, -24});
        EXPECT_TRUE(driver->top<BlendPhotoViewController>()->canUndo());
    }
    /// To the share screen, with the file that is shared.
    void share()
    {
        documents().removeRecursively();
        driver->grab(); // with all that waits to be painted
        QImage shown = driver->canvas()->shownImage().convertToFormat(QImage::Format_RGB32);
        goToPNG();
        ASSERT_TRUE(driver->tap(QStringLiteral("Save PNG")));
        ASSERT_TRUE(driver->waitFor<UIActivityViewController>());
        QImage saved(documents().filePath(QStringLiteral("default.png")));
        saved.setColorSpace({}); // QImage would compare it too
        EXPECT_EQ(saved.convertToFormat(QImage::Format_RGB32), shown);
        driver->press(Qt::Key_Escape);
    }
    void backToBlend(const BlendComposition& before)
    {
        ASSERT_TRUE(driver->tap(QStringLiteral("Back")));
        ASSERT_TRUE(driver->waitFor<BlendPhotoViewController>());
        EXPECT_TRUE(looksAlike(driver->top<BlendPhotoViewController>()->composition(), before));
    }

    std::shared_ptr<ApplicationLife> life;
    std::unique_ptr<SessionName> name;
};

TEST_F(ServicesRoad, WhereNobodyServesNothingIsMissedAndNothingIsAsked)
{
    const Eavesdropper network;
    const LogCapture log;
    start();
    goToBlend();
    moveUpperPhoto();
    const BlendComposition before = driver->top<BlendPhotoViewController>()->composition();
    share();
    ASSERT_TRUE(driver->waitFor<ShareController>());
    constexpr double kAfterItsTime = ShareController::kPromotionAfter + 1;
    EXPECT_FALSE(WindowDriver::waitUntil([&] { return driver->top<ShareController>() == nullptr; }, kAfterItsTime));
    backToBlend(before);
    driver.reset(); // nobody logs any more
    EXPECT_TRUE(network.requests().empty());
    for (const auto& [level, message] : log.messages)
        EXPECT_LT(level, LogLevel::Warning) << message;
}

TEST_F(ServicesRoad, WhereEverybodyServesTheWorkIsNotDisturbed)
{
    TestDesktop desktop;
    const TestDistributor distributor;
    PromotionServer server;
    offerOne(server, QGuiApplication::applicationDisplayName().toStdString());
    start();
    ASSERT_TRUE(WindowDriver::waitUntil([&] { return !distributor.registrations().empty(); }));
    goToBlend();
    EXPECT_TRUE(desktop.shown().empty() && server.requests().empty()) << "nobody has sent anything";

    // A message comes under the user's hands, and the icon's number goes when the window is in front again.
    (void)distributor.send(R"({"title":"New frames","badge":3})");
    moveUpperPhoto();
    ASSERT_TRUE(WindowDriver::waitUntil([&] { return desktop.shown().size() == 1 && !desktop.badges().empty(); }));
    EXPECT_EQ(desktop.shown()[0].title, "New frames");
    ASSERT_NE(driver->top<BlendPhotoViewController>(), nullptr);
    const BlendComposition before = driver->top<BlendPhotoViewController>()->composition();
    emit qGuiApp->applicationStateChanged(Qt::ApplicationInactive);
    emit qGuiApp->applicationStateChanged(Qt::ApplicationActive);
    ASSERT_TRUE(WindowDriver::waitUntil([&] { return desktop.badges().size() == 2; }));
    EXPECT_EQ(desktop.badges(), QList<qlonglong>({3, 0}));

    share();
    ASSERT_TRUE(driver->waitFor<InterstitialPresentController>());
    driver->press(Qt::Key_Escape);
    ASSERT_TRUE(driver->waitFor<ShareController>());
    backToBlend(before);
}

} // namespace
} // namespace lamina::test
