#include "CommandRunner.h"
#include "TestPaths.h"
#include "TestPictures.h"

#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace lamina::test {
namespace {

using testing::HasSubstr;

constexpr int kSide = 375;
constexpr int kScale = 3;

CommandResult lamina(std::vector<std::string> arguments, const CommandOptions& options = {})
{
    return runCommand(LAMINA_COMMAND, arguments, options);
}

/// A colour of a ramp picture as a number per component, at a place given in shares of its sides.
struct Level {
    double red;
    double green;
    double blue;
};

/// One photo of a blend, told by arithmetic alone: where a canvas point lands on a ramp of `width` × `height`.
struct RampPhoto {
    int width;
    int height;
    double blue;
    double zoom = 1;
    double offsetX = 0; ///< points
    double offsetY = 0;

    Level at(double x, double y) const
    {
        const double pointsPerPixel = zoom * kSide / std::min(width, height);
        return {(x + offsetX) / pointsPerPixel / width * 255, (y + offsetY) / pointsPerPixel / height * 255, blue};
    }
};

/// Half of the second photo, a quarter of the first, a quarter of white.
Rgba blended(const Level& first, const Level& second)
{
    const auto mix = [](double top, double bottom) {
        return static_cast<std::uint8_t>(std::lround(0.5 * top + 0.25 * bottom + 0.25 * 255));
    };
    return {mix(second.red, first.red), mix(second.green, first.green), mix(second.blue, first.blue), 255};
}

class BlendCommand : public testing::Test {
protected:
    void SetUp() override
    {
        writePng(landscape(), rampPicture(800, 600, 40));
        writePng(portrait(), rampPicture(450, 900, 200));
    }
    std::string landscape() const { return folder.path("landscape.png"); }
    std::string portrait() const { return folder.path("portrait.png"); }
    std::string out() const { return folder.path("out.png"); }

    TemporaryFolder folder;
};

struct GeometryCase {
    const char* name;
    std::vector<std::string> options;
    RampPhoto first;
    RampPhoto second;
    /// Where a canvas point comes from in the second photo's own square: (x - centre - shift) / zoom + centre.
    double zoom = 1;
    double shiftX = 0;
    double shiftY = 0;
};

class BlendGeometry : public BlendCommand, public testing::WithParamInterface<GeometryCase> {};

TEST_P(BlendGeometry, EveryPixelIsWhereArithmeticPutsIt)
{
    const GeometryCase& c = GetParam();
    std::vector<std::string> arguments{"blend", landscape(), portrait(), "-o", out()};
    arguments.insert(arguments.end(), c.options.begin(), c.options.end());
    const CommandResult run = lamina(arguments);
    ASSERT_EQ(run.exitCode, 0) << run.errors;
    const CGImage picture = readPictureFile(out());
    ASSERT_EQ(picture.width(), kSide * kScale);
    ASSERT_EQ(picture.height(), kSide * kScale);

    int checked = 0;
    for (int py = 20; py < picture.height(); py += 61) {
        for (int px = 20; px < picture.width(); px += 61) {
            const double x = (px + 0.5) / kScale;
            const double y = (py + 0.5) / kScale;
            const double u = (x - kSide / 2.0 - c.shiftX) / c.zoom + kSide / 2.0;
            const double v = (y - kSide / 2.0 - c.shiftY) / c.zoom + kSide / 2.0;
            // Interpolation at an edge repeats it; the arithmetic here knows the inside only.
            if (u < 4 || v < 4 || u > kSide - 4 || v > kSide - 4)
                continue;
            const Rgba wanted = blended(c.first.at(x, y), c.second.at(u, v));
            ASSERT_LE(difference(pixelAt(picture, px, py), wanted), 2) << "at " << px << ", " << py;
            ++checked;
        }
    }
    EXPECT_GT(checked, 60);
}

INSTANTIATE_TEST_SUITE_P(
    Crops, BlendGeometry,
    testing::Values(
        GeometryCase{"StartsAtTheTopLeft", {}, {800, 600, 40}, {450, 900, 200}},
        GeometryCase{"OffsetsCountAfterTheZoom",
                     {"--crop1", "2,300,120", "--crop2", "1.5,80,400"},
                     {800, 600, 40, 2, 300, 120},
                     {450, 900, 200, 1.5, 80, 400}},
        // 800 × 600 at zoom 1 is 500 × 375 points: 125 to spare across, nothing down; the other stands upright.
        GeometryCase{"OffsetsAreClampedToThePhoto",
                     {"--crop1", "1,9999,50", "--crop2", "1,-20,9999"},
                     {800, 600, 40, 1, 125, 0},
                     {450, 900, 200, 1, 0, 375}},
        GeometryCase{"MoveTravelsInPoints", {"--move", "30,-20"}, {800, 600, 40}, {450, 900, 200}, 1, 30, -20},
        GeometryCase{"MoveAfterZoomTravelsTwiceAsFar",
                     {"--zoom", "2", "--move", "10,15"},
                     {800, 600, 40},
                     {450, 900, 200},
                     2,
                     20,
                     30},
        GeometryCase{
            "MoveBeforeZoomDoesNot", {"--move", "10,15", "--zoom", "2"}, {800, 600, 40}, {450, 900, 200}, 2, 10, 15},
        GeometryCase{"StepsAddUp",
                     {"--zoom", "2", "--move", "-10,0", "--zoom", "0.75", "--move", "0,8"},
                     {800, 600, 40},
                     {450, 900, 200},
                     1.5,
                     -20,
                     12}),
    [](const auto& geometry) { return std::string(geometry.param.name); });

TEST_F(BlendCommand, OutsideTheSecondPhotoOnlyTheFirstLiesOnWhite)
{
    const CommandResult run = lamina({"blend", landscape(), portrait(), "-o", out(), "--zoom", "0.5"});
    ASSERT_EQ(run.exitCode, 0) << run.errors;
    const CGImage picture = readPictureFile(out());
    const Level first = RampPhoto{800, 600, 40}.at(150.5 / kScale, 150.5 / kScale);
    const auto onWhite = [](double level) { return static_cast<std::uint8_t>(std::lround(0.5 * level + 0.5 * 255)); };
    const Rgba wanted{onWhite(first.red), onWhite(first.green), onWhite(first.blue), 255};
    EXPECT_LE(difference(pixelAt(picture, 150, 150), wanted), 2);
}

TEST_F(BlendCommand, WidthAndScaleDecideTheSide)
{
    const CommandResult run = lamina({"blend", landscape(), portrait(), "-o", out(), "--width", "320", "--scale", "2"});
    ASSERT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(readPictureFile(out()).size(), (IntSize{640, 640}));
}

TEST_F(BlendCommand, ReadsStandardInputAndWritesStandardOutput)
{
    ASSERT_EQ(lamina({"blend", landscape(), portrait(), "-o", out()}).exitCode, 0);
    CommandOptions options;
    options.input = readFile(portrait());
    const CommandResult run = lamina({"blend", landscape(), "-", "-o", "-"}, options);
    ASSERT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(run.output, readFile(out()));
    EXPECT_EQ(run.errors, "");
}

TEST_F(BlendCommand, GivesTheSameBytesOnOneCore)
{
    CommandOptions oneCore;
    oneCore.cores = 1;
    const std::vector<std::string> arguments{"blend", samples("meadow.jpg"), portrait(), "-o", "-", "--zoom", "1.37"};
    const CommandResult all = lamina(arguments);
    ASSERT_EQ(all.exitCode, 0) << all.errors;
    EXPECT_EQ(lamina(arguments, oneCore).output, all.output);
}

TEST_F(BlendCommand, TakesAnyFileName)
{
    for (const std::string name : {"a b.png", "it's \"this\".png", "Grüße ☀.png", "-dash.png", "new\nline.png"}) {
        SCOPED_TRACE(name);
        writeFile(folder.path(name), readFile(landscape()));
        const std::string target = folder.path("result of " + name);
        const CommandResult run = lamina({"blend", folder.path(name), portrait(), "-o", target});
        EXPECT_EQ(run.exitCode, 0) << run.errors;
        EXPECT_TRUE(std::filesystem::exists(target));
    }
    // A relative name that looks like an option.
    const auto here = std::filesystem::current_path();
    std::filesystem::current_path(folder.path());
    EXPECT_EQ(lamina({"blend", "-o", "-result.png", "--", "-dash.png", "portrait.png"}).exitCode, 0);
    EXPECT_TRUE(std::filesystem::exists("-result.png"));
    std::filesystem::current_path(here);
}

TEST_F(BlendCommand, TheFileOpensInAnotherProgram)
{
    ASSERT_EQ(lamina({"blend", landscape(), portrait(), "-o", out()}).exitCode, 0);
    const std::string script =
        "import sys\nfrom PIL import Image, ImageCms\nimport io\n"
        "p = Image.open(sys.argv[1]); p.load()\n"
        "profile = ImageCms.ImageCmsProfile(io.BytesIO(p.info['icc_profile']))\n"
        "print(p.size, p.mode, p.getpixel((300, 600)), ImageCms.getProfileDescription(profile).strip())\n";
    const CommandResult reader = runCommand("/usr/bin/python3", {"-c", script, out()});
    ASSERT_EQ(reader.exitCode, 0) << reader.errors;
    const Rgba ours = pixelAt(readPictureFile(out()), 300, 600);
    const std::string pixel =
        "(" + std::to_string(ours[0]) + ", " + std::to_string(ours[1]) + ", " + std::to_string(ours[2]) + ")";
    EXPECT_THAT(reader.output, HasSubstr("(1125, 1125) RGB " + pixel));
    EXPECT_THAT(reader.output, HasSubstr("sRGB"));
}

TEST_F(BlendCommand, WrongUsageIsToldAndLeavesNothing)
{
    const std::vector<std::vector<std::string>> wrong{
        {"blend"},
        {"--screen", "nowhere"},
        {"blend", landscape()},
        {"blend", landscape(), portrait()},
        {"blend", landscape(), portrait(), "-o", folder.path("out.webp")},
        {"blend", landscape(), portrait(), "-o", out(), "--crop1", "7,0,0"},
        {"blend", landscape(), portrait(), "-o", out(), "--crop1", "0.5,0,0"},
        {"blend", landscape(), portrait(), "-o", out(), "--crop2", "1,0"},
        {"blend", landscape(), portrait(), "-o", out(), "--crop2", "nan,0,0"},
        {"blend", landscape(), portrait(), "-o", out(), "--zoom", "0"},
        {"blend", landscape(), portrait(), "-o", out(), "--zoom", "inf"},
        {"blend", landscape(), portrait(), "-o", out(), "--move", "1;2"},
        {"blend", landscape(), portrait(), "-o", out(), "--width", "0"},
        {"blend", landscape(), portrait(), "-o", out(), "--width", "2000", "--scale", "16"},
        {"blend", landscape(), portrait(), "-o", out(), "--sideways"},
        {"blend", "-", "-", "-o", out()},
        {"blur", landscape()},
    };
    for (const auto& arguments : wrong) {
        const CommandResult run = lamina(arguments);
        EXPECT_EQ(run.exitCode, 2) << testing::PrintToString(arguments);
        EXPECT_THAT(run.errors, testing::StartsWith("lamina: "));
        EXPECT_EQ(run.output, "");
    }
    EXPECT_THAT(folder.names(), testing::ElementsAre("landscape.png", "portrait.png"));
}

TEST_F(BlendCommand, HelpAndVersionAreData)
{
    const CommandResult version = lamina({"--version"});
    EXPECT_EQ(version.exitCode, 0);
    EXPECT_THAT(version.output, testing::MatchesRegex("lamina [0-9]+\\.[0-9]+\\.[0-9]+\n"));
    const CommandResult help = lamina({"blend", "--help"});
    EXPECT_EQ(help.exitCode, 0);
    for (const char* option : {"--width", "--scale", "--crop1", "--crop2", "--move", "--zoom", "--quiet", "--output"})
        EXPECT_THAT(help.output, HasSubstr(option));
    EXPECT_EQ(help.errors, "");
}

// Far beyond the square nothing is left of the second photo, and no step makes the command slow or fail.
TEST_F(BlendCommand, ExtremeStepsStayHarmless)
{
    for (const std::vector<std::string>& steps : {std::vector<std::string>{"--move", "1e9,-1e9"},
                                                  {"--zoom", "1e12"},
                                                  {"--zoom", "1e-12"},
                                                  {"--zoom", "1e300", "--zoom", "1e300"}}) {
        std::vector<std::string> arguments{"blend", landscape(), portrait(), "-o", out()};
        arguments.insert(arguments.end(), steps.begin(), steps.end());
        const CommandResult run = lamina(arguments);
        EXPECT_EQ(run.exitCode, 0) << run.errors;
        EXPECT_EQ(readPictureFile(out()).size(), (IntSize{1125, 1125}));
    }
}

} // namespace
} // namespace lamina::test
