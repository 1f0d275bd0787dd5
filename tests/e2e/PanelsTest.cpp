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

#include <cmath>
#include <set>
#include <string>

namespace lamina::test {
namespace {

const QString kContrast = QStringLiteral("Contrast");
const QString kOpacity = QStringLiteral("Opacity");

class Panels : public WindowTest {
protected:
    void openBlend(const char* reducedMotion = "1")
    {
        qputenv("LAMINA_REDUCED_MOTION", reducedMotion);
        open();
        qputenv("LAMINA_REDUCED_MOTION", "1");
        goToBlend();
        blend = driver->top<BlendPhotoViewController>();
    }
    QQuickItem* slider() { return driver->item(kContrast); }
    /// What its slider shows is what the blend has.
    double contrast()
    {
        EXPECT_EQ(slider()->property("value").toDouble(), blend->composition().sliders[0]);
        return blend->composition().sliders[0];
    }
    std::string words(const QString& name)
    {
        return QAccessible::queryAccessibleInterface(driver->item(name))->text(QAccessible::Description).toStdString();
    }
    /// Two taps where one has been before: they move nothing that would make them slow.
    void doubleTap(QPointF place)
    {
        driver->tapAt(place);
        QTest::qWait(2 * QGuiApplication::styleHints()->mouseDoubleClickInterval());
        driver->doubleTapAt(place);
    }
    QString canvasWords()
    {
        return QAccessible::queryAccessibleInterface(driver->canvas())->text(QAccessible::Description);
    }

    std::shared_ptr<BlendPhotoViewController> blend;
};

TEST_F(Panels, ASliderIsDraggedInOneStepAndTakenBackByTwoTaps)
{
    openBlend();
    ASSERT_TRUE(driver->tap(QStringLiteral("Effects")));
    EXPECT_EQ(driver->item(QStringLiteral("Effects")), nullptr) << "the drawer lies on the bar";
    EXPECT_EQ(words(kOpacity), "50\u00a0%");
    const QPointF thumb = WindowDriver::middleOf(*slider());
    driver->drag(thumb, {60, 0});
    EXPECT_GT(contrast(), 40);
    EXPECT_EQ(words(kContrast), "+" + std::to_string(std::lround(contrast())));
    blend->undo();
    EXPECT_EQ(contrast(), 0) << "the whole drag";
    blend->redo();
    EXPECT_GT(contrast(), 40);

    const QPoint dragged = (thumb + QPointF(-40, 0)).toPoint();
    QTest::mousePress(&driver->view(), Qt::LeftButton, Qt::NoModifier, dragged);
    QTest::mouseMove(&driver->view(), dragged - QPoint(5, 0));
    EXPECT_LT(contrast(), 0);
    blend->undo(); // under the finger
    QTest::mouseRelease(&driver->view(), Qt::LeftButton, Qt::NoModifier, dragged - QPoint(5, 0));
    driver->settle();
    EXPECT_GT(contrast(), 40);

    doubleTap(thumb + QPointF(60, 0));
    EXPECT_EQ(contrast(), 0);
    driver->drag(thumb, {-50, 0});
    EXPECT_LT(contrast(), 0);
    doubleTap({40, thumb.y()}); // the label
    EXPECT_EQ(contrast(), 0);
}

TEST_F(Panels, ASliderIsWorkedByKeysAndHidesForThem)
{
    openBlend();
    pressUntil("Effects");
    driver->press(Qt::Key_Return);
    EXPECT_EQ(driver->focusedName(), kContrast);
    const struct {
        Qt::Key key;
        double value;
    } steps[] = {{Qt::Key_Right, 1},   {Qt::Key_Up, 2},      {Qt::Key_Left, 1},
                 {Qt::Key_Down, 0},    {Qt::Key_PageUp, 40}, {Qt::Key_PageDown, 0},
                 {Qt::Key_Home, -200}, {Qt::Key_Left, -200}, {Qt::Key_End, 200}};
    for (const auto& [key, value] : steps) {
        driver->press(key);
        EXPECT_EQ(contrast(), value) << key;
    }
    pressUntil("Opacity");
    driver->press(Qt::Key_Right);
    EXPECT_EQ(words(kOpacity), "51\u00a0%");
    pressUntil("Hide");
    driver->press(Qt::Key_Space);
    EXPECT_EQ(driver->focusedName(), QStringLiteral("Effects"));
    EXPECT_EQ(blend->shownPanel(), QString());
}

TEST_F(Panels, APanelComesAndGoesInItsTimeAndIsNotPressedOnItsWayOut)
{
    openBlend("0");
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
    const QPointF thumb = WindowDriver::middleOf(*slider());
    EXPECT_TRUE(WindowDriver::waitUntil([&] { return hide()->mapToScene({}).y() > standing; }));
    QTest::mouseClick(&driver->view(), Qt::LeftButton, Qt::NoModifier, (thumb + QPointF(50, 3)).toPoint());
    EXPECT_EQ(contrast(), 0);
    EXPECT_TRUE(WindowDriver::waitUntil([&] { return !hide(); }));
}

TEST_F(Panels, StickersAreOneStopForTheKeyboardAndAddedByIt)
{
    openBlend();
    EXPECT_TRUE(canvasWords().contains(QStringLiteral("Arrow keys move the second photo")));
    pressUntil("Sticker");
    driver->press(Qt::Key_Return);
    EXPECT_TRUE(canvasWords().contains(QStringLiteral("Choose Move")));
    ASSERT_TRUE(WindowDriver::waitUntil([&] { return blend->stickerStrip()->property("count").toInt() == 84; }));
    const auto goes = [&](Qt::Key key, const char* to) {
        driver->press(key);
        EXPECT_EQ(driver->focusedName().toStdString(), to) << key;
    };
    pressUntil("Sun");
    goes(Qt::Key_Tab, "Reset");
    goes(Qt::Key_Backtab, "Sun");
    goes(Qt::Key_Left, "Sun");
    goes(Qt::Key_Right, "Cloud");
    driver->press(Qt::Key_Return);
    driver->press(Qt::Key_End);
    driver->press(Qt::Key_Space);
    const Stickers& added = blend->composition().stickers;
    ASSERT_EQ(added.size(), 2U);
    EXPECT_EQ(added[0].name + " " + added[1].name, "big121 big116");
    const QRectF last = driver->view().activeFocusItem()->mapRectToScene(QRectF(0, 0, 80, 80));
    EXPECT_TRUE(QRectF(0, 0, kWidth, kHeight).contains(last)) << "scrolled into sight";

    driver->view().resize(1280, 800);
    driver->settle();
    pressUntil("Sun");
    goes(Qt::Key_Down, "Snowflake");
    goes(Qt::Key_Up, "Sun");
    goes(Qt::Key_Up, "Sun");
    driver->tapOnly(*driver->canvas()); // on the sticker
    driver->settle();
    EXPECT_TRUE(canvasWords().contains(QStringLiteral("Arrow keys move the sticker")));
}

} // namespace
} // namespace lamina::test
