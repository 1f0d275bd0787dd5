// A blend with all that can be done to it, by fingers: back and forth through its steps, out as a file, and discarded.
#include "WindowTest.h"

#include "TestPictures.h"
#include "editors/blend/BlendComposition.h"
#include "editors/blend/PickedImages.h"
#include "editors/colorpicker/InfColorPickerController.h"
#include "export/PNGController.h"
#include "export/SavingTypeController.h"
#include "platform/host/CanvasItem.h"
#include "platform/image/drawing/CGContext.h"

#include <QColorSpace>
#include <QImage>

#include <algorithm>
#include <cmath>
#include <vector>

namespace lamina::test {
namespace {

constexpr double kScale = 3;

class WholeRoad : public WindowTest {
protected:
    /// A step of the user's: what it leaves is kept.
    void step(const char* what)
    {
        EXPECT_TRUE(blend->canUndo()) << what;
        EXPECT_FALSE(looksAlike(blend->composition(), states.back())) << what;
        states.push_back(blend->composition());
    }
    void tapAsStep(const char* name)
    {
        ASSERT_TRUE(driver->tap(QString::fromLatin1(name))) << name;
        step(name);
    }
    enum Row { Contrast, Brightness, Opacity };
    void dragSlider(Row row, double by)
    {
        const QString name = blend->sliders()[row].toMap()[QStringLiteral("label")].toString();
        const QQuickItem* const slider = driver->item(name);
        ASSERT_NE(slider, nullptr) << name.toStdString();
        constexpr double kThumb = 22;
        const double way = slider->property("visualPosition").toDouble() * (slider->width() - kThumb);
        driver->drag(slider->mapToScene({kThumb / 2 + way, slider->height() / 2}), {by, 0});
        step("slid");
    }
    /// A place of the canvas, in points, in the window.
    QPointF inWindow(CGPoint point)
    {
        const double unit = driver->canvas()->width() / blend->composition().side;
        return driver->canvas()->mapToScene({point.x * unit, point.y * unit});
    }
    void tapCanvas(CGPoint point) { driver->drag(inWindow(point), {}); }
    void dragCanvasFrom(CGPoint point, QPointF by, const char* what)
    {
        driver->drag(inWindow(point), by);
        step(what);
    }
    /// A new sticker, 60 points inside the square, which is selected.
    void addSticker(const char* name)
    {
        ASSERT_TRUE(WindowDriver::waitUntil([&] { return driver->item(QString::fromLatin1(name)) != nullptr; }));
        tapAsStep(name);
        tapCanvas({160, 160});
        ASSERT_TRUE(blend->stickerActive());
    }
    QImage saveAsPNG()
    {
        QDir documents(QDir::home().filePath(QStringLiteral("Documents/Lamina")));
        documents.removeRecursively();
        EXPECT_TRUE(driver->tap(QStringLiteral("Save")) && driver->waitFor<SavingTypeController>());
        EXPECT_TRUE(driver->tap(QStringLiteral("PNG")) && driver->waitFor<PNGController>());
        EXPECT_TRUE(driver->tap(QStringLiteral("Save PNG")));
        leaveShareScreen();
        QImage saved = QImage(documents.filePath(QStringLiteral("default.png"))).convertToFormat(QImage::Format_RGB32);
        saved.setColorSpace({});
        return saved;
    }
    /// The photo alone, as it is moved and zoomed, premultiplied.
    CGImage layer(std::size_t index) const;
    bool isUnderSticker(int x, int y) const;
    void expectMixture(const QImage& saved) const;

    std::shared_ptr<BlendPhotoViewController> blend;
    std::vector<BlendComposition> states;
};

CGImage WholeRoad::layer(std::size_t index) const
{
    const BlendPhoto& photo = blend->composition().photos[index];
    const double middle = blend->composition().side / 2;
    CGAffineTransform t = photo.transform; // about the middle
    t.tx += middle - t.a * middle - t.c * middle;
    t.ty += middle - t.b * middle - t.d * middle;
    auto context = CGContext::image({2 * middle, 2 * middle}, false, kScale);
    context->drawImage(photo.image.cgImage(), t);
    return context->makeImage();
}

bool WholeRoad::isUnderSticker(int x, int y) const
{
    const Stickers& stickers = blend->composition().stickers;
    return std::any_of(stickers.begin(), stickers.end(), [&](const Sticker& sticker) {
        const double reach = std::hypot(sticker.size.width, sticker.size.height) / 2;
        return std::hypot(x / kScale - sticker.center.x, y / kScale - sticker.center.y) <= reach;
    });
}

/// a T + (1 - a)(b B + (1 - b) C) with white for C, wherever no sticker can be.
void WholeRoad::expectMixture(const QImage& saved) const
{
    const BlendComposition& composition = blend->composition();
    const std::size_t topIndex = composition.order[1];
    const CGImage top = layer(topIndex);
    const CGImage below = layer(1 - topIndex);
    const double a = composition.photos[topIndex].alpha;
    const double b = composition.photos[1 - topIndex].alpha;
    int compared = 0;
    double worst = 0;
    for (int y = 0; y < saved.height(); y += 7) {
        for (int x = 0; x < saved.width(); x += 5) {
            if (isUnderSticker(x, y))
                continue;
            const Rgba t = pixelAt(top, x, y);
            const Rgba u = pixelAt(below, x, y);
            const QRgb seen = saved.pixel(x, y);
            const int shown[] = {qRed(seen), qGreen(seen), qBlue(seen)};
            for (int i = 0; i < 3; ++i) {
                const double paper = b * u[i] + (1 - b * u[3] / 255) * 255;
                worst = std::max(worst, std::abs(a * t[i] + (1 - a * t[3] / 255) * paper - shown[i]));
            }
            ++compared;
        }
    }
    EXPECT_GT(compared, 5000);
    EXPECT_LE(worst, 2);
}

TEST_F(WholeRoad, EverythingIsDoneUndoneAndSaved)
{
    open();
    goToBlend();
    blend = driver->top<BlendPhotoViewController>();
    states = {blend->composition()};

    driver->dragCanvas({30, -24});
    step("moved");
    driver->pinchCanvas(60, 90);
    step("zoomed");
    ASSERT_TRUE(driver->tap(QStringLiteral("Tools")));
    tapAsStep("Left");
    ASSERT_TRUE(driver->tap(QStringLiteral("Photo 1")));
    tapAsStep("Flip H");
    ASSERT_TRUE(driver->tap(QStringLiteral("Color")));
    ASSERT_TRUE(driver->waitFor<InfColorPickerController>());
    driver->drag(WindowDriver::middleOf(*driver->canvas()), {20, -30});
    tapAsStep("Done");
    ASSERT_TRUE(driver->waitFor<BlendPhotoViewController>());

    ASSERT_TRUE(driver->tap(QStringLiteral("Effects")));
    dragSlider(Contrast, 25);
    dragSlider(Brightness, -20);
    dragSlider(Contrast, -40);
    dragSlider(Opacity, 30);
    ASSERT_TRUE(driver->tap(QStringLiteral("Hide")));

    // A sticker's handles: at the lower left its size, at the lower right its turn, at the upper left its end.
    ASSERT_TRUE(driver->tap(QStringLiteral("Sticker")));
    addSticker("Sun");
    dragCanvasFrom({78, 242}, {30, -40}, "resized");
    dragCanvasFrom({160, 160}, {-70, -60}, "dragged");
    addSticker("Cloud");
    dragCanvasFrom({242, 242}, {-60, 20}, "turned");
    dragCanvasFrom({160, 160}, {60, 70}, "dragged");
    addSticker("Rainbow");
    tapCanvas({78, 78});
    step("closed");
    ASSERT_EQ(blend->composition().stickers.size(), 2U);

    const auto finished = bytesOf(blend->renderedCanvas().cgImage());
    for (std::size_t i = states.size() - 1; i > 0; --i) {
        ASSERT_TRUE(driver->tap(QStringLiteral("Undo"))) << i;
        EXPECT_TRUE(looksAlike(blend->composition(), states[i - 1])) << i;
    }
    EXPECT_FALSE(driver->tap(QStringLiteral("Undo"))) << "one step each";
    for (std::size_t i = 1; i < states.size(); ++i) {
        ASSERT_TRUE(driver->tap(QStringLiteral("Redo"))) << i;
        EXPECT_TRUE(looksAlike(blend->composition(), states[i])) << i;
    }
    EXPECT_FALSE(driver->tap(QStringLiteral("Redo")));
    EXPECT_EQ(bytesOf(blend->renderedCanvas().cgImage()), finished);

    // A selected sticker is as plain in the file as one that is not, the second time too.
    tapCanvas({90, 100});
    ASSERT_TRUE(blend->stickerActive());
    tapCanvas({300, 20}); // beside it
    ASSERT_FALSE(blend->stickerActive());
    tapCanvas({90, 100});
    const QImage saved = saveAsPNG();
    EXPECT_FALSE(blend->stickerActive());
    driver->grab(); // with all that waits to be painted
    EXPECT_EQ(saved, driver->canvas()->shownImage().convertToFormat(QImage::Format_RGB32));
    expectMixture(saved);
    tapCanvas({90, 100});
    EXPECT_TRUE(blend->stickerActive());
    EXPECT_EQ(saveAsPNG(), saved);

    ASSERT_TRUE(driver->tap(QStringLiteral("Back")));
    EXPECT_EQ(alertText(), "⚠️|Discard Editing");
    ASSERT_TRUE(driver->tap(QStringLiteral("YES")));
    ASSERT_TRUE(driver->waitFor<ImagePIckingViewController>());
    EXPECT_FALSE(firstPickedImage || secondPickedImage);
}

} // namespace
} // namespace lamina::test
