#include "CommandLines.h"

#include "platform/base/CGGeometry.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <vector>

namespace lamina::test {
namespace {

constexpr double kSide = 375; // points
constexpr int kScale = 3;

/// Where a point of a square comes from that was turned or flipped.
using Source = CGPoint (*)(CGPoint point);
constexpr Source kAsItIs = [](CGPoint p) { return p; };
constexpr Source kTurnedLeft = [](CGPoint p) { return CGPoint{kSide - p.y, p.x}; };
constexpr Source kTurnedRight = [](CGPoint p) { return CGPoint{p.y, kSide - p.x}; };
constexpr Source kMirrored = [](CGPoint p) { return CGPoint{kSide - p.x, p.y}; };
constexpr Source kUpsideDown = [](CGPoint p) { return CGPoint{p.x, kSide - p.y}; };

/// One photo of a blend, told by arithmetic alone: where a canvas point lands on a ramp.
struct RampPhoto {
    int width;
    int height;
    double blue;
    double zoom = 1;
    CGPoint offset = {}; ///< points
    Source source = kAsItIs;
    double opacity = 0.5;

    std::array<double, 3> at(CGPoint point) const
    {
        const auto [x, y] = source(point);
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
        // Pixels turn inside the place that the photo has, whenever it came there.
        {"--zoom 2 --turn 2:left --move -10,0", {800, 600, 40}, {450, 900, 200, 1, {}, kTurnedLeft}, 2, {-20, 0}},
        {"--crop1 2,300,120 --turn 1:right --flip 2:vertical --opacity 1:0.8",
         {800, 600, 40, 2, {300, 120}, kTurnedRight, 0.8},
         {450, 900, 200, 1, {}, kUpsideDown}},
        {"--opacity 2:0.3 --flip 1:horizontal --turn 2:right --turn 2:right --flip 2:horizontal",
         {800, 600, 40, 1, {}, kMirrored},
         {450, 900, 200, 1, {}, kUpsideDown, 0.3}},
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
                const auto below = c.first.at(point);
                const auto above = c.second.at({u, v});
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

// One colour all over, of which only the second photo is seen: what sliders make of it, and in which order they do.
TEST_F(BlendCommand, TonesWorkFromThePhotoAsItWasWhenItsSliderWasFirstMoved)
{
    const auto brighter = [](double in, double by) { return std::clamp(in + by, 0.0, 255.0); };
    const auto contrasted = [](double in, double by) {
        return std::clamp((in - 128) * (by + 255) * 259 / ((259 - by) * 255) + 128, 0.0, 255.0);
    };
    struct Case {
        std::string options;
        std::function<double(double in)> wanted;
    };
    const std::vector<Case> cases{
        {"--brightness 2:-70.5", [&](double in) { return brighter(in, -70.5); }},
        {"--contrast 2:50", [&](double in) { return contrasted(in, 50); }},
        {"--contrast 2:50 --contrast 2:-200", [&](double in) { return contrasted(in, -200); }},
        {"--contrast 2:50 --contrast 2:0", [&](double in) { return in; }},
        {"--brightness 1:90 --contrast 1:200", [&](double in) { return in; }},
        // A slider's first move finds what the other made of it; the other's next move does too.
        {"--brightness 2:40 --contrast 2:30", [&](double in) { return contrasted(in + 40, 30); }},
        {"--brightness 2:40 --contrast 2:30 --brightness 2:10", [&](double in) { return in + 50; }},
        // Another photo's turn makes the next move a first one; nothing else does.
        {"--brightness 2:40 --flip 1:vertical --brightness 2:10", [&](double in) { return in + 50; }},
        {"--brightness 2:40 --zoom 2 --turn 2:left --move 5,5 --brightness 2:10", [&](double in) { return in + 10; }},
    };
    for (const Case& c : cases) {
        const CGImage result =
            picture("lamina blend small.png flat.png -o out.png --width 64 --scale 1 --opacity 2:1 " + c.options);
        for (std::size_t i = 0; i < 3; ++i)
            EXPECT_NEAR(pixelAt(result, 32, 32)[i], c.wanted(kFlat[i]), 1) << c.options;
    }
}

/// The box around all pixels in which two pictures of one size differ.
CGRect difference(const CGImage& one, const CGImage& other)
{
    CGRect box;
    for (int y = 0; y < one.height(); ++y)
        for (int x = 0; x < one.width(); ++x)
            if (pixelAt(one, x, y) != pixelAt(other, x, y))
                box = box.unionWith(CGRect(x, y, 1, 1));
    return box;
}

// The sun is round: what differs tells where it lies, and that neither a border nor handles came along.
TEST_F(BlendCommand, StickersLieWhereTheyAreToldWithoutHandlesOrBorders)
{
    const CGImage plain = blend("--width 200 --scale 2");
    struct Case {
        std::string sticker;
        CGPoint centre;
        double side; ///< of the picture, without its margin
    };
    for (const Case& c : std::vector<Case>{{"sun@100,100", {100, 100}, 164},
                                           {"big117@60.5,140,96,96", {60.5, 140}, 60},
                                           {"Sun@120,80,136,96,90", {120, 80}, 60}}) {
        SCOPED_TRACE(c.sticker);
        const CGImage result = blend("--width 200 --scale 2 --sticker " + c.sticker);
        const CGRect box = difference(plain, result);
        EXPECT_NEAR(box.midX() / 2, c.centre.x, 2);
        EXPECT_NEAR(box.midY() / 2, c.centre.y, 2);
        EXPECT_LE(box.size.width / 2, c.side);
        EXPECT_GE(box.size.width / 2, c.side * 0.7);
        const int x = static_cast<int>(2 * c.centre.x - c.side) + 1; // where a border's corner would be
        const int y = static_cast<int>(2 * c.centre.y - c.side) + 1;
        EXPECT_EQ(pixelAt(result, x, y), pixelAt(plain, x, y));
    }
    // The last one lies on top, and stays there whatever comes after.
    const std::string cloud = "--width 200 --scale 2 --zoom 2 --contrast 1:10 --sticker cloud@100,100,150,150";
    EXPECT_EQ(pixelAt(blend("--sticker sun@100,100 " + cloud + " --move 1,0 --move -1,0"), 200, 210),
              pixelAt(blend(cloud), 200, 210));
}

TEST_F(BlendCommand, WidthAndScaleDecideTheSide)
{
    EXPECT_EQ(blend("--width 320 --scale 2").size(), (IntSize{640, 640}));
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
