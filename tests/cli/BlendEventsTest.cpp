#include "CommandLines.h"

#include "editors/blend/BlendPhotoViewController.h"
#include "editors/blend/BlendTools.h"
#include "editors/blend/PickedImages.h"
#include "editors/stickers/Sticker.h"
#include "platform/base/CGAffineTransform.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/UIScreen.h"
#include "platform/view/CanvasRenderer.h"
#include "platform/view/TouchDispatcher.h"

#include <cmath>
#include <gtest/gtest.h>
#include <memory>
#include <numbers>
#include <sstream>
#include <string>
#include <vector>

namespace lamina::test {
namespace {

constexpr int kSide = 320;
constexpr double kScale = 2;

/// The editor, driven by touch as a window drives it, with the two photos that the command is given.
class BlendEvents : public CommandLines {
protected:
    BlendEvents()
    {
        writePng(folder.path("first.png"), rampPicture(kSide, kSide, 40));
        writePng(folder.path("second.png"), chartPicture(kSide, kSide, CGImageAlphaInfo::NoneSkipLast));
        UIScreen::setMain({{kSide, 2.0 * kSide}, kScale});
        firstPickedImage = UIImage(readPictureFile(folder.path("first.png")));
        secondPickedImage = UIImage(readPictureFile(folder.path("second.png")));
        editor = std::make_shared<BlendPhotoViewController>();
        canvas = std::make_unique<CanvasRenderer>(editor->canvasView(), kScale);
        fingers = std::make_unique<TouchDispatcher>(editor->canvasView());
    }
    ~BlendEvents() override
    {
        DispatchQueue::main().runUntilIdle();
        clearPickedImages();
    }

    /// A finger along these points.
    void touch(const std::vector<CGPoint>& way)
    {
        m_time += 1; // far from a double tap
        fingers->touchBegan(1, way.front(), m_time);
        for (const CGPoint& point : way)
            fingers->touchMoved(1, point, m_time += 0.1);
        fingers->touchEnded(1, way.back(), m_time += 0.1);
        canvas->render();
    }

    std::shared_ptr<BlendPhotoViewController> editor;
    std::unique_ptr<CanvasRenderer> canvas;
    std::unique_ptr<TouchDispatcher> fingers;

private:
    double m_time = 0;
};

/// A sticker as the command is told of it.
std::string told(const std::string& name, const Sticker& sticker)
{
    const double degrees = std::atan2(sticker.transform.b, sticker.transform.a) * 180 / std::numbers::pi;
    std::ostringstream text;
    text.precision(17);
    text << " --sticker " << name << '@' << sticker.center.x << ',' << sticker.center.y << ',' << sticker.size.width
         << ',' << sticker.size.height << ',' << degrees;
    return text.str();
}

TEST_F(BlendEvents, FingersAndTheCommandMakeTheSamePictureAndTheCanvasShowsIt)
{
    std::ostringstream move;
    touch({{160, 160}, {180, 150}, {200, 140}});
    move << " --move " << editor->imgView2().transform().tx << ',' << editor->imgView2().transform().ty;
    editor->toolBtn();
    editor->photo1();
    editor->leftBtn();
    editor->FxBtn();
    for (const double value : {10, 60, 35})
        editor->slide(blendslider::kContrast, value);
    editor->photo2();
    editor->slide(blendslider::kBrightness, -30);
    editor->photo1();
    editor->toolBtn();
    editor->chooseSubTool("vertical");
    editor->photo2();
    editor->chooseSubTool("horizontal");
    editor->FxBtn();
    editor->slide(blendslider::kBrightness, 20);
    editor->slide(blendslider::kContrast, 25);
    editor->slide(blendslider::kOpacity, 0.8);
    canvas->render();
    editor->stickerBtn();
    editor->stickerImgGesture(6000);
    touch({{160, 160}});                        // shows its handles
    touch({{78, 242}, {98, 232}, {118, 222}});  // the lower left one makes it smaller
    touch({{160, 160}, {150, 170}, {70, 250}}); // moves it
    editor->stickerImgGesture(6000 + 11);
    touch({{160, 160}});
    touch({{242, 242}, {240, 250}, {180, 270}}); // the lower right one turns and scales

    const CGImage picture = editor->flattened().cgImage();
    canvas->render();
    EXPECT_TRUE(imagesMatch(canvas->image(), picture));
    const Stickers& stickers = editor->composition().stickers;
    ASSERT_EQ(stickers.size(), 2U);
    EXPECT_NE(stickers[0].size.width, stickers[0].size.height);
    EXPECT_NE(stickers[1].transform, CGAffineTransform());
    // Stickers lie on top whatever comes after them.
    EXPECT_TRUE(imagesMatch(this->picture("lamina blend first.png second.png -o out.png --width 320 --scale 2" +
                                          told("sun", stickers[0]) + move.str() +
                                          " --turn 1:left --contrast 1:35 --brightness 2:-30 --flip 1:vertical" +
                                          " --flip 2:horizontal --brightness 2:20 --contrast 2:25 --opacity 2:0.8" +
                                          told("cat", stickers[1])),
                            picture));
}

} // namespace
} // namespace lamina::test
