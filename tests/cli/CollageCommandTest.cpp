#include "CommandLines.h"

#include "editors/collage/CollageEffects.h"
#include "editors/collage/CreateCollageViewController.h"
#include "editors/stickers/StickerStrip.h"
#include "platform/base/CGAffineTransform.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/UIColor.h"
#include "platform/base/UIScreen.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <gmock/gmock.h>
#include <memory>
#include <numbers>
#include <string>
#include <vector>

namespace lamina::test {
namespace {

constexpr double kSide = 320; // points
constexpr int kScale = 2;

/// A photo of a collage, told by arithmetic alone: where a canvas point lands on a ramp.
struct RampInSlot {
    int width;
    int height;
    double blue;
    double zoom = 1;
    double degrees = 0;
    CGPoint shift = {}; ///< points

    std::array<double, 3> at(double x, double y) const
    {
        const double angle = -degrees * std::numbers::pi / 180;
        const double dx = (x - kSide / 2 - shift.x) / zoom;
        const double dy = (y - kSide / 2 - shift.y) / zoom;
        const double pixels = std::min(width, height) / kSide; // a point
        const double u = (dx * std::cos(angle) - dy * std::sin(angle)) * pixels + width / 2.0;
        const double v = (dx * std::sin(angle) + dy * std::cos(angle)) * pixels + height / 2.0;
        return {u / width * 255, v / height * 255, blue};
    }
};

class CollageCommand : public CommandLines {
protected:
    CollageCommand()
    {
        writePng(folder.path("a.png"), rampPicture(800, 600, 40));
        writePng(folder.path("b.png"), rampPicture(450, 900, 200));
        writePng(folder.path("c.png"), rampPicture(700, 700, 120));
    }
    CGImage collage(const std::string& line) const
    {
        return picture("lamina collage " + line + " -o out.png --width 320 --scale 2");
    }
};

TEST_F(CollageCommand, EveryPixelIsWhereArithmeticPutsIt)
{
    const RampInSlot a{800, 600, 40};
    const RampInSlot b{450, 900, 200};
    const RampInSlot c{700, 700, 120};
    const struct {
        std::string line;
        bool rows; ///< three strips across, or rows
        std::array<RampInSlot, 3> slots;
    } cases[] = {
        {"a.png b.png c.png", false, {a, b, c}},
        {"a.png b.png c.png --move 2:10,-15 --zoom 2:1.5 --rotate 2:30 --zoom 1:2 --move 1:-8,4",
         false,
         {RampInSlot{800, 600, 40, 2, 0, {-8, 4}}, RampInSlot{450, 900, 200, 1.5, 30, {10, -15}}, c}},
        {"a.png b.png c.png --zoom 1:3 --move 3:9,9 --layout 3001 --rotate 3:-20",
         true,
         {a, b, RampInSlot{700, 700, 120, 1, -20}}},
        // Place and zoom are the slot's; the photo that comes into it takes them over.
        {"a.png b.png c.png --zoom 1:2 --swap 1:3", false, {RampInSlot{700, 700, 120, 2}, b, a}},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.line);
        const CGImage result = collage(one.line);
        ASSERT_EQ(result.size(), (IntSize{640, 640}));
        for (int py = 20; py < 640; py += 31) {
            for (int px = 20; px < 640; px += 31) {
                const double across = (one.rows ? py : px) * 3.0 / 640;
                if (std::abs(across - std::round(across)) < 0.05) // the cuts are told elsewhere
                    continue;
                const auto wanted =
                    one.slots[static_cast<std::size_t>(across)].at((px + 0.5) / kScale, (py + 0.5) / kScale);
                const auto channel = [&](std::size_t i) { return static_cast<std::uint8_t>(std::lround(wanted[i])); };
                if (std::ranges::all_of(wanted, [](double value) { return value > 2 && value < 253; })) {
                    ASSERT_TRUE(pixelMatches(result, px, py, {channel(0), channel(1), channel(2), 255}, 2));
                }
            }
        }
    }
}

TEST_F(CollageCommand, WhatNoPhotoCoversIsClearOrWhite)
{
    const std::string circles = "lamina collage a.png b.png c.png --layout 3008 --background 1:#ff0000 --move 1:999,0 ";
    const CGImage clear = picture(circles + "-o out.png --width 320 --scale 2");
    EXPECT_EQ(pixelAt(clear, 3, 3)[3], 0);
    int red = 0;
    for (int y = 0; y < 640; y += 8)
        for (int x = 0; x < 640; x += 8)
            red += pixelAt(clear, x, y) == Rgba{255, 0, 0, 255} ? 1 : 0;
    EXPECT_GT(red, 50); // of the circle whose photo has gone
    EXPECT_EQ(shell(circles + "-o out.jpg --width 320").exitCode, 0);
    EXPECT_TRUE(pixelMatches(readPictureFile(folder.path("out.jpg")), 3, 3, {255, 255, 255, 255}, 2));
}

TEST_F(CollageCommand, PhotosHaveThePixelsThatTheirZoomNeeds)
{
    // The same pixels once as a file that is read smaller where that does, and once as one that never is.
    shell("lamina op scaleToFitSize=2400x1800 sharpenWithBias=0 -i a.png -o a.jpg; "
          "lamina op invert invert -i a.jpg -o whole.png");
    for (const std::string steps :
         {" --zoom 1:3 --zoom 1:0.9", " --zoom 2:2.7 --swap 1:2", " --zoom 2:9 --layout 2001 --zoom 1:2.7"}) {
        const CGImage reduced = collage("a.jpg b.png" + steps);
        EXPECT_TRUE(imagesMatch(reduced, collage("whole.png b.png" + steps))) << steps;
    }
}

TEST_F(CollageCommand, MakesThePictureThatTheEditorMakes)
{
    writePng(folder.path("first.png"), chartPicture(320, 320, CGImageAlphaInfo::NoneSkipLast));
    writePng(folder.path("second.png"), rampPicture(320, 320, 90));
    UIScreen::setMain({{kSide, 700}, kScale});
    const auto editor = std::make_shared<CreateCollageViewController>();
    editor->setSelectedImages(
        {UIImage(readPictureFile(folder.path("first.png"))), UIImage(readPictureFile(folder.path("second.png")))});
    editor->view();
    editor->chooseTool("layout");
    editor->imgGesture1(2007);
    editor->chooseTool("fx");
    editor->contrast(30);
    editor->brightn(-20);
    editor->contrast(10); // on top of the old contrast
    editor->chooseTool("filter");
    DispatchQueue::main().drain();
    editor->filterImgGesture(502);
    editor->secondBtn();
    editor->filterImgGesture(505);
    editor->nudge(12, 7);
    editor->chooseTool("fx");
    editor->saturation(0.5);
    editor->opacity(0.7);
    editor->chooseTool("tools");
    editor->fstBtn();
    editor->leftBtn();
    editor->turnBy(std::numbers::pi / 6);
    editor->chooseTool("sticker");
    editor->stickerImgGesture(StickerStrip::kFirstTag);
    editor->slide(collageslider::kBorderWidth, 5);
    editor->slide(collageslider::kGap, 3);
    CollageComposition composition = editor->composition();
    ASSERT_EQ(composition.stickers.size(), 1U);
    composition.stickers[0].center = {70, 250};
    composition.stickers[0].size = {160, 136};
    composition.photoSlots[1].background = UIColor{0, 0, 1, 1};
    composition.borderColor = UIColor{1, 0, 0, 1};
    editor->setComposition(composition);
    const CGImage made =
        picture("lamina collage first.png second.png -o out.png --width 320 --height 700 --scale 2 --layout 2007 "
                "--effect 1:contrast=30 --effect 1:brightness=-20 --effect 1:contrast=10 --filter 1:502 "
                "--filter 2:505 --move 2:12,7 --effect 2:saturation=0.5 --opacity 2:0.7 --background '2:#0000ff' "
                "--turn 1:left --rotate 1:30 --sticker sun@70,250,160,136 --border '5,#ff0000' --gap 3");
    EXPECT_TRUE(imagesMatch(made, editor->flattened().cgImage()));
}

} // namespace
} // namespace lamina::test
