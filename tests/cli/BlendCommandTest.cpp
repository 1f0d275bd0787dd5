#include "CommandLines.h"

#include "editors/blend/BlendPhotoViewController.h"
#include "editors/blend/BlendTools.h"
#include "editors/blend/PickedImages.h"
#include "platform/base/CGAffineTransform.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/UIScreen.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <gmock/gmock.h>
#include <memory>
#include <nlohmann/json.hpp>
#include <numbers>
#include <set>
#include <string>
#include <vector>

namespace lamina::test {
namespace {

constexpr double kSide = 375; // points
constexpr int kScale = 3;

/// One photo of a blend, told by arithmetic alone: where a canvas point lands on a ramp.
struct RampPhoto {
    int width;
    int height;
    double blue;
    double zoom = 1;
    CGPoint offset = {}; ///< points
    double opacity = 0.5;

    std::array<double, 3> at(double x, double y) const
    {
        const double pointsPerPixel = zoom * kSide / std::min(width, height);
        return {(x + offset.x) / pointsPerPixel / width * 255, (y + offset.y) / pointsPerPixel / height * 255, blue};
    }
};

struct GeometryCase {
    std::string options;
    RampPhoto first = {800, 600, 40};
    RampPhoto second = {450, 900, 200};
    // Where a canvas point comes from in the second photo's own square: (x - centre - shift) / zoom + centre.
    double zoom = 1;
    CGPoint shift = {};

    double source(double canvas, double moved) const { return (canvas - kSide / 2 - moved) / zoom + kSide / 2; }
};

class BlendCommand : public CommandLines {
protected:
    BlendCommand()
    {
        writePng(folder.path("lying.png"), rampPicture(800, 600, 40));
        writePng(folder.path("upright.png"), rampPicture(450, 900, 200));
    }
    CGImage blend(const std::string& options) const
    {
        return picture("lamina blend lying.png upright.png -o out.png " + options);
    }
};

TEST_F(BlendCommand, EveryPixelIsWhereArithmeticPutsIt)
{
    const std::vector<GeometryCase> cases{
        {"", {800, 600, 40}, {450, 900, 200}},
        // The offset counts after the zoom.
        {"--crop1 2,300,120 --crop2 1.5,80,400", {800, 600, 40, 2, {300, 120}}, {450, 900, 200, 1.5, {80, 400}}},
        // 800 × 600 at zoom 1 is 500 × 375 points: 125 to spare across, nothing down; the other stands upright.
        {"--crop1 1,9999,50 --crop2 1,-20,9999", {800, 600, 40, 1, {125, 0}}, {450, 900, 200, 1, {0, 375}}},
        {"--move 10,15 --zoom 2", {800, 600, 40}, {450, 900, 200}, 2, {10, 15}},
        // After a zoom of 2 it travels twice as far.
        {"--zoom 2 --move -10,0 --zoom 0.75 --move 0,8", {800, 600, 40}, {450, 900, 200}, 1.5, {-20, 12}},
        {"--opacity 1:0.8", {800, 600, 40, 1, {}, 0.8}, {450, 900, 200}},
        {"--opacity 2:0.3", {800, 600, 40}, {450, 900, 200, 1, {}, 0.3}},
    };
    for (const GeometryCase& c : cases) {
        SCOPED_TRACE(c.options);
        const CGImage result = blend(c.options);
        ASSERT_EQ(result.size(), (IntSize{1125, 1125}));
        for (int py = 20; py < result.height(); py += 61) {
            for (int px = 20; px < result.width(); px += 61) {
                const CGPoint point{(px + 0.5) / kScale, (py + 0.5) / kScale};
                const double u = c.source(point.x, c.shift.x);
                const double v = c.source(point.y, c.shift.y);
                // Interpolation at an edge repeats it; the arithmetic here knows the inside only.
                if (u < 4 || v < 4 || u > kSide - 4 || v > kSide - 4)
                    continue;
                const auto below = c.first.at(point.x, point.y);
                const auto above = c.second.at(u, v);
                const double a = c.second.opacity;
                const double b = c.first.opacity;
                Rgba wanted{0, 0, 0, 255};
                for (std::size_t i = 0; i < 3; ++i)
                    wanted[i] =
                        static_cast<std::uint8_t>(std::lround(a * above[i] + (1 - a) * (b * below[i] + (1 - b) * 255)));
                ASSERT_TRUE(pixelMatches(result, px, py, wanted, 2));
            }
        }
    }
}

TEST_F(BlendCommand, OutsideTheSecondPhotoOnlyTheFirstLiesOnWhite)
{
    // The first photo is 40 blue everywhere.
    EXPECT_NEAR(pixelAt(blend("--zoom 0.5"), 150, 150)[2], (40 + 255) / 2, 2);
    // Far beyond the square nothing is left of the second photo, and no step makes the command slow or fail.
    EXPECT_NEAR(pixelAt(blend("--move 1e9,-1e9"), 500, 500)[2], (40 + 255) / 2, 2);
    EXPECT_NEAR(pixelAt(blend("--zoom 1e-12"), 500, 500)[2], (40 + 255) / 2, 2);
    blend("--zoom 1e300 --zoom 1e300");
}

TEST_F(BlendCommand, MakesThePictureThatTheEditorMakes)
{
    writePng(folder.path("first.png"), rampPicture(320, 320, 40));
    writePng(folder.path("second.png"), chartPicture(320, 320, CGImageAlphaInfo::NoneSkipLast));
    UIScreen::setMain({{320, 640}, 2});
    firstPickedImage = UIImage(readPictureFile(folder.path("first.png")));
    secondPickedImage = UIImage(readPictureFile(folder.path("second.png")));
    const auto editor = std::make_shared<BlendPhotoViewController>();
    editor->view();
    editor->nudge(30.25, -15);
    editor->toolBtn();
    editor->photo1();
    editor->leftBtn();
    editor->FxBtn();
    editor->slide(blendslider::kContrast, 35);
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
    editor->stickerImgGesture(6000);
    editor->stickerImgGesture(6011);
    BlendComposition blend = editor->composition();
    ASSERT_EQ(blend.stickers.size(), 2U);
    blend.stickers[0].center = {70, 250};
    blend.stickers[0].size = {160, 136};
    blend.stickers[1].transform = CGAffineTransform::rotation(30 * std::numbers::pi / 180);
    editor->setComposition(blend);
    // Stickers lie on top whatever comes after them.
    const CGImage made =
        picture("lamina blend first.png second.png -o out.png --width 320 --scale 2 --sticker sun@70,250,160,136 "
                "--move 30.25,-15 --turn 1:left --contrast 1:35 --brightness 2:-30 --flip 1:vertical "
                "--flip 2:horizontal --brightness 2:20 --contrast 2:25 --opacity 2:0.8 "
                "--sticker cat@160,160,200,200,30");
    EXPECT_TRUE(imagesMatch(made, editor->flattened().cgImage()));
    clearPickedImages();
}

TEST_F(BlendCommand, EveryStickerIsListedOnceForPeopleAndPrograms)
{
    const std::string text = shell("lamina stickers").output;
    EXPECT_THAT(text, testing::HasSubstr("Weather:\n  big117  Sun\n"));
    std::set<std::string> words;
    for (const auto& entry : nlohmann::json::parse(shell("lamina stickers --json").output)) {
        const std::string word = entry.at("word");
        words.insert(word);
        EXPECT_THAT(text, testing::HasSubstr("  " + entry.at("name").get<std::string>() + "  " + word + "\n"));
        EXPECT_THAT(text, testing::HasSubstr(entry.at("group").get<std::string>() + ":\n"));
    }
    EXPECT_EQ(words.size(), 84U);
}

TEST_F(BlendCommand, HelpAndVersionAreData)
{
    EXPECT_THAT(shell("lamina --version").output, testing::MatchesRegex("lamina [0-9]+\\.[0-9]+\\.[0-9]+\n"));
    const CommandResult help = shell("lamina blend --help");
    EXPECT_EQ(help.exitCode, 0);
    EXPECT_THAT(help.output, testing::HasSubstr("--crop2"));
    EXPECT_EQ(help.errors, "");
}

} // namespace
} // namespace lamina::test
