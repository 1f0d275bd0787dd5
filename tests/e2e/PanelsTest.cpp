// What the blend's tools open: by fingers and by keys, on its way in and out, and beside the canvas of each shape of
// window.
#include "WindowTest.h"

#include "editors/blend/BlendComposition.h"
#include "platform/base/CGGeometry.h"

#include <QAccessible>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QStyleHints>
#include <QTest>

#include <gmock/gmock.h>

#include <cmath>
#include <set>
#include <string>
#include <vector>

namespace lamina::test {
namespace {

class Panels : public WindowTest {
protected:
    void openBlend(QSize size = {}, const char* reducedMotion = "1")
    {
        LaunchOptions options;
        options.size = size;
        qputenv("LAMINA_REDUCED_MOTION", reducedMotion);
        open(options);
        qputenv("LAMINA_REDUCED_MOTION", "1");
        goToBlend();
        blend = driver->top<BlendPhotoViewController>();
    }
    enum Row { Contrast, Brightness, Opacity };
    QString label(Row row) { return blend->sliders()[row].toMap()["label"].toString(); }
    QQuickItem* slider(Row row) { return driver->item(label(row)); }
    double shown(Row row) { return slider(row)->property("value").toDouble(); }
    double contrast() { return blend->composition().sliders[0]; }
    std::string words(Row row)
    {
        return QAccessible::queryAccessibleInterface(slider(row))->text(QAccessible::Description).toStdString();
    }
    /// By mouse; the rest is longer than one that parts a run of keys.
    void dragWithARest(QPointF from, QPointF by)
    {
        QTest::mousePress(&driver->view(), Qt::LeftButton, Qt::NoModifier, from.toPoint());
        for (int i = 1; i <= 4; ++i) {
            QTest::mouseMove(&driver->view(), (from + by * i / 4).toPoint());
            QTest::qWait(i == 2 ? 1200 : 10);
        }
        QTest::mouseRelease(&driver->view(), Qt::LeftButton, Qt::NoModifier, (from + by).toPoint());
        driver->settle();
    }
    /// Two taps where one has been before: they move nothing that would make them slow.
    void doubleTap(QPointF place)
    {
        driver->tapAt(place);
        QTest::qWait(2 * QGuiApplication::styleHints()->mouseDoubleClickInterval());
        driver->doubleTapAt(place);
    }
    void focus(const QString& name)
    {
        for (int i = 0; i < 30 && driver->focusedName() != name; ++i)
            driver->press(Qt::Key_Tab);
        ASSERT_EQ(driver->focusedName(), name);
    }
    QString canvasWords()
    {
        return QAccessible::queryAccessibleInterface(driver->canvas())->text(QAccessible::Description);
    }
    std::vector<std::string> stickers()
    {
        std::vector<std::string> names;
        for (const Sticker& sticker : blend->composition().stickers)
            names.push_back(sticker.name);
        return names;
    }

    std::shared_ptr<BlendPhotoViewController> blend;
};

TEST_F(Panels, ASliderIsDraggedInOneStepAndTakenBackByTwoTaps)
{
    openBlend();
    ASSERT_TRUE(driver->tap(QStringLiteral("Effects")));
    EXPECT_EQ(driver->item(QStringLiteral("Effects")), nullptr) << "the drawer lies on the bar";
    EXPECT_EQ(words(Opacity), "50\u00a0%");
    const QPointF thumb = WindowDriver::middleOf(*slider(Contrast));
    dragWithARest(thumb, {60, 0});
    EXPECT_GT(contrast(), 40);
    EXPECT_EQ(shown(Contrast), contrast());
    EXPECT_EQ(words(Contrast), "+" + std::to_string(std::lround(contrast())));
    blend->undo();
    EXPECT_EQ(contrast(), 0) << "the whole drag";
    EXPECT_EQ(shown(Contrast), 0);
    blend->redo();
    EXPECT_GT(contrast(), 40);
    EXPECT_EQ(shown(Contrast), contrast());

    const QPoint dragged = (thumb + QPointF(-40, 0)).toPoint();
    QTest::mousePress(&driver->view(), Qt::LeftButton, Qt::NoModifier, dragged);
    QTest::mouseMove(&driver->view(), dragged - QPoint(5, 0));
    EXPECT_LT(contrast(), 0);
    blend->undo(); // under the finger
    QTest::mouseRelease(&driver->view(), Qt::LeftButton, Qt::NoModifier, dragged - QPoint(5, 0));
    driver->settle();
    EXPECT_GT(contrast(), 40);
    EXPECT_EQ(shown(Contrast), contrast());

    doubleTap(thumb + QPointF(60, 0));
    EXPECT_EQ(contrast(), 0);
    driver->drag(thumb, {-50, 0});
    EXPECT_EQ(words(Contrast).substr(0, 3), "−");
    doubleTap({40, thumb.y()}); // the label
    EXPECT_EQ(contrast(), 0);
    EXPECT_EQ(shown(Contrast), 0);
}

TEST_F(Panels, ASliderIsWorkedByKeysAndHidesForThem)
{
    openBlend();
    focus(QStringLiteral("Effects"));
    driver->press(Qt::Key_Return);
    EXPECT_EQ(driver->focusedName(), label(Contrast));
    const struct {
        Qt::Key key;
        double value;
    } steps[] = {{Qt::Key_Right, 1},   {Qt::Key_Up, 2},      {Qt::Key_Left, 1},
                 {Qt::Key_Down, 0},    {Qt::Key_PageUp, 40}, {Qt::Key_PageDown, 0},
                 {Qt::Key_Home, -200}, {Qt::Key_Left, -200}, {Qt::Key_End, 200}};
    for (const auto& [key, value] : steps) {
        driver->press(key);
        EXPECT_EQ(contrast(), value) << key;
        EXPECT_EQ(shown(Contrast), value);
    }
    focus(label(Opacity));
    driver->press(Qt::Key_Right);
    EXPECT_EQ(words(Opacity), "51\u00a0%");
    focus(QStringLiteral("Hide"));
    driver->press(Qt::Key_Space);
    EXPECT_EQ(driver->focusedName(), QStringLiteral("Effects"));
    EXPECT_EQ(blend->shownPanel(), QString());
}

TEST_F(Panels, APanelComesAndGoesInItsTimeAndIsNotPressedOnItsWayOut)
{
    openBlend({}, "0");
    blend->FxBtn();
    QElapsedTimer waited;
    waited.start();
    const auto hide = [&] { return driver->item(QStringLiteral("Hide")); };
    std::set<double> ways;
    EXPECT_TRUE(WindowDriver::waitUntil([&] {
        if (hide())
            ways.insert(hide()->mapToScene({}).y());
        return waited.elapsed() > 700;
    }));
    ASSERT_GT(ways.size(), 3u) << "it jumped";
    const double standing = hide()->mapToScene({}).y();
    EXPECT_EQ(standing, *ways.begin());
    EXPECT_LE(standing, kHeight - 44);

    driver->tapOnly(*hide());
    waited.restart();
    const QPointF thumb = WindowDriver::middleOf(*slider(Contrast));
    EXPECT_TRUE(WindowDriver::waitUntil([&] { return hide()->mapToScene({}).y() > standing; }));
    QTest::mouseClick(&driver->view(), Qt::LeftButton, Qt::NoModifier, (thumb + QPointF(50, 3)).toPoint());
    EXPECT_EQ(contrast(), 0);
    EXPECT_TRUE(WindowDriver::waitUntil([&] { return !hide(); }));
    EXPECT_GE(waited.elapsed(), 590);
}

TEST_F(Panels, StickersAreOneStopForTheKeyboardAndAddedByIt)
{
    openBlend();
    EXPECT_TRUE(canvasWords().contains(QStringLiteral("Arrow keys move the second photo")));
    focus(QStringLiteral("Sticker"));
    driver->press(Qt::Key_Return);
    EXPECT_TRUE(canvasWords().contains(QStringLiteral("Choose Move")));
    ASSERT_TRUE(WindowDriver::waitUntil([&] { return blend->stickerStrip()->property("count").toInt() == 84; }));
    const auto goes = [&](Qt::Key key, const char* to) {
        driver->press(key);
        EXPECT_EQ(driver->focusedName().toStdString(), to) << key;
    };
    focus(QStringLiteral("Sun"));
    goes(Qt::Key_Tab, "Reset");
    goes(Qt::Key_Backtab, "Sun");
    goes(Qt::Key_Left, "Sun");
    goes(Qt::Key_Right, "Cloud");
    driver->press(Qt::Key_Return);
    driver->press(Qt::Key_End);
    driver->press(Qt::Key_Space);
    EXPECT_THAT(stickers(), testing::ElementsAre("big121", "big116"));
    const QRectF last = driver->view().activeFocusItem()->mapRectToScene(QRectF(0, 0, 80, 80));
    EXPECT_TRUE(QRectF(0, 0, kWidth, kHeight).contains(last)) << "scrolled into sight";

    driver->view().resize(1280, 800);
    driver->settle();
    focus(QStringLiteral("Sun"));
    goes(Qt::Key_Down, "Snowflake");
    goes(Qt::Key_Up, "Sun");
    goes(Qt::Key_Up, "Sun");
    driver->tapOnly(*driver->canvas()); // on the sticker
    driver->settle();
    EXPECT_TRUE(canvasWords().contains(QStringLiteral("Arrow keys move the sticker")));
}

} // namespace
} // namespace lamina::test
