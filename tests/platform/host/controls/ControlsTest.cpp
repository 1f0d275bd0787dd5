// The shared controls, put into the window one by one.
#include "TestPaths.h"
#include "WindowDriver.h"
#include "app/MainStoryboard.h"
#include "app/PinchZoomViewController.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/UIColor.h"
#include "platform/host/Application.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/drawing/CGContext.h"
#include "platform/view/UIAccessibility.h"
#include "platform/view/UIButton.h"
#include "platform/view/UIImageMetaType.h"
#include "platform/view/UIStoryboard.h"
#include "platform/view/UIViewController.h"

#include <QAccessible>
#include <QElapsedTimer>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickView>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <set>
#include <vector>

namespace lamina::test {
namespace {

class Controls : public testing::Test {
protected:
    void SetUp() override
    {
        LaunchOptions options;
        options.size = {360, 720};
        driver = std::make_unique<WindowDriver>(options);
    }

    /// Over all that the window shows.
    QQuickItem* show(const char* text)
    {
        QQmlComponent component(driver->view().engine());
        component.setData(QByteArray("import QtQuick\nimport Lamina\n") + text, QUrl());
        auto* const item = qobject_cast<QQuickItem*>(component.create());
        EXPECT_NE(item, nullptr) << component.errorString().toStdString();
        item->setParent(driver->view().contentItem());
        item->setParentItem(driver->view().contentItem());
        driver->settle();
        return item;
    }

    static void collect(QQuickItem& root, const char* property, std::vector<QQuickItem*>& found)
    {
        if (root.property(property).isValid())
            found.push_back(&root);
        for (QQuickItem* const child : root.childItems())
            collect(*child, property, found);
    }
    static std::vector<QQuickItem*> itemsWith(QQuickItem* root, const char* property)
    {
        std::vector<QQuickItem*> found;
        collect(*root, property, found);
        return found;
    }

    std::shared_ptr<PinchZoomViewController> openCrop(const std::string& path)
    {
        const auto crop = UIStoryboard::named(kMainStoryboard)->instantiate<PinchZoomViewController>(scene::kCrop);
        const Result<UIImage> photo = loadPicture(path);
        EXPECT_TRUE(photo);
        crop->pickedImage = photo ? *photo : UIImage();
        driver->application().screens().window().topViewController()->present(crop, true);
        driver->waitFor<PinchZoomViewController>();
        return driver->top<PinchZoomViewController>();
    }

    std::unique_ptr<WindowDriver> driver;
};

constexpr const char* kRow = R"(ToolRow {
    room: 344
    tools: ["Reset", "Move", "Tools", "Effects", "Sticker"].map(name => ({ identifier: "the " + name, name: name, icon: "Reset", active: name === "Move", gray: false, current: false, enabled: name !== "Tools" }))
})";

TEST_F(Controls, ToolsHaveWholeNamesOfOneSizeHoweverLargeTheTextIsAndAreChosen)
{
    for (const char* const scale : {"1", "2"}) {
        SCOPED_TRACE(scale);
        driver.reset();
        qputenv("LAMINA_TEXT_SCALE", scale);
        SetUp();
        QQuickItem* const row = show(kRow);
        EXPECT_LE(row->width(), 344);
        std::set<int> sizes;
        for (QQuickItem* const name : itemsWith(row, "truncated")) {
            EXPECT_FALSE(name->property("truncated").toBool()) << name->property("text").toString().toStdString();
            sizes.insert(name->property("font").value<QFont>().pixelSize());
        }
        EXPECT_EQ(sizes.size(), 1u);
        EXPECT_GE(*sizes.begin(), 11);

        QSignalSpy chosen(row, SIGNAL(chosen(QString)));
        EXPECT_TRUE(driver->tap(QStringLiteral("Sticker")));
        EXPECT_FALSE(driver->tap(QStringLiteral("Tools")));
        ASSERT_EQ(chosen.size(), 1);
        EXPECT_EQ(chosen.at(0).at(0).toString(), "the Sticker");
    }
    qunsetenv("LAMINA_TEXT_SCALE");
}

TEST_F(Controls, ASliderMarksZeroWhereItsRangeHasBothSigns)
{
    const auto ticks = [this](const char* text) {
        std::vector<double> places;
        for (QQuickItem* const item : itemsWith(show(text)->property("background").value<QQuickItem*>(), "radius"))
            if (item->isVisible() && item->width() == 1)
                places.push_back(item->x());
        return places;
    };
    // The line is 200 - 22 long and begins 11 from the left; zero stands a quarter along it.
    EXPECT_EQ(ticks(R"(ValueSlider { name: "Contrast"; from: -50; to: 150; width: 200 })"),
              std::vector{std::round(11 + 178 * 0.25)});
    EXPECT_TRUE(ticks(R"(ValueSlider { name: "Opacity"; from: 0.1; to: 1; width: 200 })").empty());
}

/// Steps by ten degrees.
struct Dial : UIControl {
    using UIControl::UIControl;
    std::string accessibilityValue() const override { return std::to_string(degrees) + " degrees"; }
    std::optional<UIAccessibilityRange> accessibilityRange() const override { return {{1.0 * degrees, 0, 360}}; }
    void accessibilityIncrement() override { turn(10); }
    void accessibilityDecrement() override { turn(-10); }
    void turn(int by)
    {
        degrees += by;
        setBackgroundColor(UIColor{degrees / 360.0, 0, 0, 1});
    }
    int degrees = 120;
};

struct DialScreen : UIViewController {
    std::shared_ptr<UIView> canvasView() override { return canvas; }
    std::shared_ptr<UIView> canvas = std::make_shared<UIView>(CGRect{0, 0, 200, 200});
};

TEST_F(Controls, ACanvasTellsOfItsElementsAndIsWorkedByKeys)
{
    DialScreen screen;
    const auto dial = std::make_shared<Dial>(CGRect{20, 40, 160, 40});
    dial->setAccessibilityLabel("Hue");
    dial->setAccessibilityTraits(UIAccessibilityTraits::Adjustable);
    const auto button = std::make_shared<UIButton>(CGRect{20, 100, 160, 40});
    button->setTitle("Reset");
    button->addTarget([&](UIControl&) { dial->turn(120 - dial->degrees); }, UIControlEvents::TouchUpInside);
    button->addSubview(std::make_shared<UIButton>(CGRect{0, 0, 20, 20})); // told of as one with it
    const auto outside = std::make_shared<UIButton>(CGRect{300, 0, 50, 50});
    for (const std::shared_ptr<UIView>& view :
         {std::shared_ptr<UIView>(dial), std::shared_ptr<UIView>(button), std::shared_ptr<UIView>(outside)})
        screen.canvas->addSubview(view);
    QQuickItem* const canvas = show("WorkCanvas { width: 300; height: 300 }");
    driver->application().bridge().giveFocusTo(canvas->parentItem()); // Tab goes round in there
    canvas->setProperty("controller", QVariant::fromValue<QObject*>(&screen));
    driver->grab();

    QAccessibleInterface* const node = QAccessible::queryAccessibleInterface(canvas);
    ASSERT_EQ(node->childCount(), 2);
    QAccessibleInterface* const told = node->child(0);
    EXPECT_EQ(told->role(), QAccessible::Slider);
    EXPECT_EQ(told->rect().size(), QSize(240, 60)); // the canvas is half as large again as its tree
    told->actionInterface()->doAction(QAccessibleActionInterface::increaseAction());
    driver->grab();
    EXPECT_EQ(node->child(0), told);
    EXPECT_EQ(told->text(QAccessible::Description), QStringLiteral("130 degrees"));
    EXPECT_EQ(told->valueInterface()->currentValue(), 130);
    EXPECT_EQ(told->valueInterface()->maximumValue(), 360);
    node->child(1)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(dial->degrees, 120);

    canvas->forceActiveFocus(Qt::TabFocusReason);
    for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Right, Qt::Key_Up, Qt::Key_Minus})
        driver->press(key);
    EXPECT_EQ(dial->degrees, 130);
    EXPECT_TRUE(driver->click(QStringLiteral("Reset"))); // through to the tree
    EXPECT_EQ(dial->degrees, 120);
    button->setEnabled(false);
    outside->setFrame({0, 0, 10, 10});
    driver->grab();
    EXPECT_FALSE(driver->click(QStringLiteral("Reset")));
    EXPECT_EQ(node->childCount(), 3);
    delete canvas;
}

TEST_F(Controls, TheMiddleOfTheZoomLineIsTheMiddleRatio)
{
    const QString hints[] = {QStringLiteral("Drag to move, turn the wheel to zoom"),
                             QStringLiteral("Drag to move, pinch to zoom")};
    const auto crop = openCrop(samples("sea-sunset.jpg"));
    ASSERT_NE(crop, nullptr);
    ASSERT_TRUE(driver->click(QStringLiteral("Zoom")));
    EXPECT_NE(driver->item(hints[0]), nullptr) << "a mouse is at hand";
    EXPECT_NEAR(crop->zoomScale(), std::sqrt(6.0), 0.05);
    ASSERT_TRUE(driver->tap(QStringLiteral("Zoom in")));
    EXPECT_NE(driver->item(hints[1]), nullptr) << "a finger is at hand";
    EXPECT_NEAR(driver->item(QStringLiteral("Zoom"))->property("value").toDouble(), std::log(1.1 * std::sqrt(6.0)),
                0.02)
        << "the line has to follow, moved by hand or not";
    driver->dragCanvas({-20, -20});
    EXPECT_EQ(driver->item(hints[1]), nullptr) << "it has been done by now";
    driver->tapOnly(*driver->canvas());
    EXPECT_GT(crop->zoomScale(), 1);
    driver->tapOnly(*driver->canvas());
    EXPECT_EQ(crop->zoomScale(), 1) << "two quick taps go out again";
}

TEST_F(Controls, ThirdsOfACropLeaveASecondAfterTheLastTouchAndAreSeenOnWhite)
{
    QImage clear(8, 8, QImage::Format_ARGB32);
    clear.fill(Qt::transparent);
    const QTemporaryDir folder;
    ASSERT_TRUE(clear.save(folder.filePath(QStringLiteral("clear.png"))));
    ASSERT_NE(openCrop(folder.filePath(QStringLiteral("clear.png")).toStdString()), nullptr);
    const auto thirds = [this] { return driver->called(QStringLiteral("thirds")) != nullptr; };
    const auto darkest = [this] { // of a row through the square, which the upright lines cross
        const QImage shown = driver->grab();
        const QRectF square = driver->canvas()->mapRectToScene(driver->canvas()->boundingRect());
        const double scale = static_cast<double>(shown.width()) / driver->view().width();
        int least = 255;
        for (double x = square.left() + 9; x < square.right() - 9; x += 1 / scale)
            least = std::min(least, qGray(shown.pixel((QPointF(x, square.center().y()) * scale).toPoint())));
        return least;
    };
    EXPECT_LT(darkest(), 145) << "3.4 : 1 on white";
    const QPoint middle = WindowDriver::middleOf(*driver->canvas()).toPoint();
    QTest::mousePress(&driver->view(), Qt::LeftButton, Qt::NoModifier, middle);
    EXPECT_FALSE(WindowDriver::waitUntil([&] { return !thirds(); }, 1.4)) << "they stay under a finger";
    QElapsedTimer waited;
    waited.start();
    QTest::mouseRelease(&driver->view(), Qt::LeftButton, Qt::NoModifier, middle);
    EXPECT_TRUE(WindowDriver::waitUntil([&] { return !thirds(); }));
    EXPECT_GE(waited.elapsed(), 950);
    EXPECT_EQ(darkest(), 255) << "what can be seen through stands on white";
}

TEST_F(Controls, WorkThatIsQuickShowsNothingAndSlowWorkAWayOut)
{
    QElapsedTimer waited;
    waited.start();
    QQuickItem* const panel = show(R"(BusyPanel { text: "Opening beach.jpg"; cancelText: "Give up"; running: true })");
    QSignalSpy cancelled(panel, SIGNAL(cancelled()));
    ASSERT_TRUE(WindowDriver::waitUntil([&] { return panel->isVisible(); }));
    EXPECT_GE(waited.elapsed(), 145);
    EXPECT_EQ(driver->focusedName(), QStringLiteral("Give up"));
    driver->press(Qt::Key_Escape);
    EXPECT_EQ(cancelled.size(), 1);
    panel->setProperty("running", false);
    EXPECT_FALSE(panel->isVisible());
    panel->setProperty("running", true);
    EXPECT_FALSE(panel->isVisible()) << "every wait has its own first moment";
}

TEST_F(Controls, PrintsThatLieAskewHaveSmoothEdgesAndTranslucentPicturesStandOnWhite)
{
    QQuickItem* const ground = show(R"(Rectangle { anchors.fill: parent; color: "black"
        Print { x: 60; y: 60; width: 200; height: 200; turn: 5 }
        Picture { objectName: "picture"; x: 60; y: 400; width: 60; height: 60; radius: 10 } })");
    const UIImage clear = CGContext::image({8, 8}, false, 1)->makeUIImage();
    ground->findChild<QQuickItem*>(QStringLiteral("picture"))->setProperty("picture", QVariant::fromValue(clear));
    driver->settle();
    const QImage shot = driver->view().grabWindow();
    const int ratio = shot.width() / driver->view().width();
    // By the pixel, the light of a sheet is its area; a jagged edge has that too, but hardly a pixel in between.
    double light = 0;
    int between = 0;
    for (int y = 40 * ratio; y < 280 * ratio; ++y) {
        for (int x = 40 * ratio; x < 280 * ratio; ++x) {
            const int value = qGreen(shot.pixel(x, y));
            light += value / 255.0;
            between += value > 10 && value < 245;
        }
    }
    EXPECT_NEAR(light, 200 * 200 * ratio * ratio, 100);
    EXPECT_GT(between, 4 * 180 * ratio);
    EXPECT_EQ(shot.pixel(90 * ratio, 430 * ratio), qRgb(255, 255, 255));
    EXPECT_EQ(shot.pixel(61 * ratio, 401 * ratio), qRgb(0, 0, 0)); // round corners
}

TEST_F(Controls, AToastIsActedOnOrGoesAtATap)
{
    QQuickItem* const toast = show(R"(Toast { text: "Saved"; action: "Show"; y: 300 })");
    QSignalSpy acted(toast, SIGNAL(acted()));
    EXPECT_TRUE(driver->tap(QStringLiteral("Show")));
    EXPECT_EQ(acted.size(), 1);
    QSignalSpy done(toast, SIGNAL(done()));
    EXPECT_TRUE(driver->tap(QStringLiteral("Saved")));
    EXPECT_EQ(done.size(), 1);
}

} // namespace
} // namespace lamina::test
