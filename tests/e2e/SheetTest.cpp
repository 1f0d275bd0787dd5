// A sheet in the window: how a finger takes it, how it comes and goes, and what keys find on it.
#include "WindowTest.h"

#include "TestPictures.h"
#include "app/ViewController.h"
#include "export/JPGController.h"
#include "platform/view/UIStoryboard.h"

#include <stdexcept>

namespace lamina::test {
namespace {

class Sheet : public WindowTest {
protected:
    void openSheet(QSize size = {kWidth, kHeight})
    {
        LaunchOptions options;
        options.size = size;
        open(options);
        sheet = UIStoryboard::named(kMainStoryboard)->instantiate<JPGController>("JPGController");
        sheet->setShareImage(UIImage(rampPicture(100, 50, 0)));
        sheet->setModalPresentationStyle(UIModalPresentationStyle::OverCurrentContext);
        driver->top<ViewController>()->present(sheet, true);
        driver->settle();
    }
    QQuickItem& shown(const char* name)
    {
        QQuickItem* const item = driver->item(QString::fromLatin1(name));
        if (!item)
            throw std::runtime_error(std::string(name) + " is not on the screen");
        return *item;
    }
    double titleTop() { return shown("Save as JPG").mapToScene({}).y(); }
    /// A place of the sheet's own, between its controls.
    QPointF above(const char* name) { return shown(name).mapToScene({shown(name).width() / 2, -4}); }
    bool isOpen() { return driver->top<JPGController>() != nullptr; }

    std::shared_ptr<JPGController> sheet;
    const double threshold = kHeight / SheetViewController::kPartThatCloses;
};

TEST_F(Sheet, IsPulledByItsWholeBodyAndNotByItsSliders)
{
    openSheet();
    const double rest = titleTop();
    driver->drag(above("Quality"), {0, threshold - 4});
    EXPECT_TRUE(isOpen());
    EXPECT_EQ(titleTop(), rest) << "it has sprung back";
    driver->drag(above("Save as JPG"), {0, -80});
    EXPECT_EQ(titleTop(), rest);

    // What a finger does on a slider is meant for that.
    const QPointF thumb = WindowDriver::middleOf(shown("Quality"));
    driver->drag(thumb, {-40, 6});
    EXPECT_LT(sheet->qualityParameter(), 0.6);
    EXPECT_EQ(titleTop(), rest);

    driver->drag(WindowDriver::middleOf(shown("Save JPG")), {0, threshold + 4});
    EXPECT_FALSE(isOpen());
    EXPECT_FALSE(sheet->isExporting()) << "the button that the finger came down on is not pressed";
}

TEST_F(Sheet, IsACardOnAWideWindowWhichIsNotPulled)
{
    openSheet({900, 600});
    const double rest = titleTop();
    driver->drag(above("Quality"), {0, 400});
    EXPECT_TRUE(isOpen());
    EXPECT_EQ(titleTop(), rest);
    driver->drag({20, 300}, {0, 0}); // beside it
    EXPECT_FALSE(isOpen());
}

TEST_F(Sheet, GoesDownBeforeItIsGone)
{
    qputenv("LAMINA_REDUCED_MOTION", "0");
    openSheet();
    qputenv("LAMINA_REDUCED_MOTION", "1");
    const double rest = titleTop();
    driver->pressOnly(Qt::Key_Escape);
    EXPECT_TRUE(WindowDriver::waitUntil(
        [&] {
            const QQuickItem* const title = driver->item(QStringLiteral("Save as JPG"));
            return title && title->mapToScene({}).y() > rest + 20;
        },
        2));
    EXPECT_EQ(driver->item(QStringLiteral("Blend"))->isVisible(), true);
    driver->settle();
    EXPECT_EQ(driver->item(QStringLiteral("Save as JPG")), nullptr);
}

TEST_F(Sheet, HasAPathForKeys)
{
    openSheet();
    EXPECT_EQ(driver->focusedName(), QStringLiteral("Save JPG"));
    driver->press(Qt::Key_Up);
    EXPECT_EQ(driver->ringedName(), QStringLiteral("Quality"));
    driver->press(Qt::Key_Left);
    EXPECT_NEAR(sheet->qualityParameter(), 0.9, 1e-6);
    driver->press(Qt::Key_Up);
    driver->press(Qt::Key_Right);
    EXPECT_EQ(sheet->sizeValueLbl(), QStringLiteral("1.1"));
    driver->press(Qt::Key_Up);
    EXPECT_EQ(driver->ringedName(), QStringLiteral("File type"));
    driver->press(Qt::Key_Return);
    EXPECT_EQ(driver->ringedName(), QStringLiteral("JPG")) << "the row in use";
    driver->press(Qt::Key_Up); // round
    EXPECT_EQ(driver->ringedName(), QStringLiteral("TIFF"));
    driver->press(Qt::Key_Home);
    driver->press(Qt::Key_Return);
    EXPECT_TRUE(isOpen()) << "its own type leaves it";
    EXPECT_EQ(driver->ringedName(), QStringLiteral("File type"));
    driver->press(Qt::Key_Escape);
    EXPECT_FALSE(isOpen());
}

} // namespace
} // namespace lamina::test
