// Every screen has its layout, and one that has none is told.
#include "WindowTest.h"

#include "app/MainStoryboard.h"
#include "platform/base/Log.h"
#include "platform/view/UIStoryboard.h"

#include <QFile>
#include <vector>

namespace lamina::test {
namespace {

class Scenes : public WindowTest {};

TEST_F(Scenes, EachNamesAFileOfTheModule)
{
    open();
    const auto storyboard = UIStoryboard::named(kMainStoryboard);
    ASSERT_FALSE(storyboard->scenes().empty());
    for (const auto& [identifier, scene] : storyboard->scenes()) {
        SCOPED_TRACE(identifier);
        const auto screen = storyboard->instantiateViewController(identifier);
        ASSERT_NE(screen, nullptr);
        const bool hasLayout = QFile::exists(":/qt/qml/Lamina/" + QString::fromStdString(scene->qmlFile));
        const bool shownBySystem = screen->systemPresentation() != UISystemPresentation::None;
        EXPECT_NE(hasLayout && !scene->qmlFile.empty(), shownBySystem);
    }
}

TEST_F(Scenes, AScreenWithoutALayoutIsToldAndShowsItsName)
{
    open();
    std::vector<std::string> errors;
    const LogSink former = setLogSink([&](LogLevel level, std::string_view text) {
        if (level == LogLevel::Error)
            errors.emplace_back(text);
    });
    driver->application().screens().window().topViewController()->present(std::make_shared<UIViewController>(), false);
    EXPECT_TRUE(WindowDriver::waitUntil([&] { return driver->item(QStringLiteral("UIViewController")) != nullptr; }));
    setLogSink(former);
    ASSERT_FALSE(errors.empty());
    EXPECT_NE(errors.front().find("UIViewController has no layout called ''"), std::string::npos) << errors.front();
}

} // namespace
} // namespace lamina::test
