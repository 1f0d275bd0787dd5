// What a screen can stand on: a panel that its controller animates, a list of rows, the window's size.
#include "WindowTest.h"

#include "editors/common/PanelAnimation.h"
#include "platform/view/AnimatedProperty.h"
#include "platform/view/ListModel.h"
#include "platform/view/UIStoryboard.h"

namespace lamina::test {

class TrialScreen : public UIViewController {
    Q_OBJECT
    Q_PROPERTY(QObject* panel READ panelObject CONSTANT FINAL)
    Q_PROPERTY(QObject* formats READ formatsObject CONSTANT FINAL)

public:
    QObject* panelObject() { return &panel; }
    QObject* formatsObject() { return &formats; }
    bool viewFollowsWindow() const override { return true; }
    void viewDidLayoutSubviews() override { panel = CGRect{0, 0, view().bounds().size.width, 100}; }

    ListModel<std::string> formats{{"label", [](const std::string& row) { return row; }}};
    Animated<CGRect> panel;
};

namespace {

TEST_F(WindowTest, AScreenMovesItsPanelShowsItsListAndFollowsTheWindow)
{
    qputenv("LAMINA_REDUCED_MOTION", "0");
    open();
    qputenv("LAMINA_REDUCED_MOTION", "1");
    const auto storyboard = UIStoryboard::named("Trial");
    storyboard->addScene("trial", {[] { return std::make_shared<TrialScreen>(); }, "TrialScreen.qml"});
    const auto screen = storyboard->instantiate<TrialScreen>("trial");
    screen->formats.append("JPG");
    driver->application().screens().window().topViewController()->present(screen, true);
    ASSERT_TRUE(driver->waitFor<TrialScreen>());
    screen->formats.append("PNG");
    screen->formats.change(0, "PDF");
    EXPECT_TRUE(driver->item(QStringLiteral("PDF")) && driver->item(QStringLiteral("PNG")));

    const QQuickItem* const panel = driver->item(QStringLiteral("Panel"));
    ASSERT_NE(panel, nullptr);
    bool moved = false;
    animatePanels([&] { screen->panel = CGRect{0, 300, kWidth, 100}; });
    EXPECT_EQ(panel->y(), 0);
    EXPECT_TRUE(WindowDriver::waitUntil([&] {
        moved = moved || (panel->y() > 0 && panel->y() < 250);
        return panel->y() == 300;
    }));
    EXPECT_TRUE(moved) << "it jumped";

    driver->view().resize(kHeight, kWidth);
    EXPECT_TRUE(WindowDriver::waitUntil([&] { return panel->width() == kHeight && panel->y() == 0; }));
}

} // namespace
} // namespace lamina::test

#include "TrialScreenTest.moc"
