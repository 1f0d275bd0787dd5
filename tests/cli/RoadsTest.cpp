#include "CommandLines.h"
#include "TestPaths.h"

#include <gmock/gmock.h>
#include <utility>
#include <vector>

namespace lamina::test {
namespace {

using Roads = CommandLines;

// The first line of each pair takes the plain road to "out.png"; the second must make the same bytes.
TEST_F(Roads, DifferentRoadsLeadToTheSameBytes)
{
    writeFile(folder.path("chain.json"), R"json({"Filters": [
        {"FilterName": "GPUImageSepiaFilter", "Attributes": {"setIntensity:": "float(0.5)"}},
        {"FilterName": "GPUImageHazeFilter", "Attributes": {"setDistance:": "float(0.1)"}}]})json");
    writeFile(folder.path("empty.json"), R"({"Filters": []})");
    const std::string inverted = "lamina op invert -i small.png -o out.png";
    const std::string sepia = "lamina filter GPUImageSepiaFilter -i flat.png -o out.png";
    const std::string collage = "lamina collage flat.png small.png -o out.png --width 64 --scale 2";
    const std::vector<std::pair<std::string, std::string>> pairs{
        {inverted, "lamina op invert -i - -o - <small.png >out.png"},
        {inverted, "cp small.png out.png; lamina op invert -i out.png -o out.png"},
        {inverted, "ln -s out.png link.png; lamina op invert -i small.png -o link.png"},
        {inverted, "lamina op invert -i small.png -o \"it's ☀ \n.png\"; mv it* out.png"},
        {sepia, "lamina filter GPUImageSepiaFilter -i - -o - <flat.png >out.png"},
        {sepia, "lamina filter -o out.png --set intensity=0 GPUImageSepiaFilter --set intensity=1 -i flat.png"},
        {"lamina op autoEnhance -i flat.png -o out.png", "lamina filter --pipeline empty.json -i flat.png -o out.png"},
        {"lamina filter GPUImageSepiaFilter --set intensity=0.5 -i flat.png -o a.png; "
         "lamina filter GPUImageHazeFilter --set distance=0.1 -i a.png -o out.png",
         "lamina filter --pipeline chain.json -i flat.png -o out.png"},
        {"lamina op rotateInDegrees=90 -i small.png -o a.png; lamina op cropToSize=1x2 -i a.png -o out.png",
         "lamina op -i small.png rotateInDegrees=90 -o out.png cropToSize=1x2"},
        {"lamina blend flat.png small.png -o out.png", "lamina blend flat.png - -o - <small.png >out.png"},
        {"lamina blend flat.png small.png -o out.png --turn 2:left --sticker 'Ice cream@99,90'",
         "lamina blend --sticker ice-cream@99,90,200,200,0 --turn 2:right --turn 2:right flat.png --turn 2:right "
         "small.png --contrast 2:0 --opacity 1:0.5 -o out.png"},
        // A layout takes back what stood before it; a photo named again is not chosen anew, so that sliders and filters
        // go on from where they began.
        {collage, collage + " --gap 0 --turn 1:left --turn 1:right --zoom 2:2 --layout 2000"},
        {"lamina collage small.png flat.png -o out.png --width 64 --scale 2", collage + " --swap 2:1"},
        {collage + " --effect 1:contrast=40", collage + " --effect 1:contrast=-20 --effect 1:Contrast=40"},
        {collage + " --filter 1:502", collage + " --filter 1:comic --filter 1:Sepia"},
        {collage + " --zoom 1:2", collage + " --zoom 1:2 --flip 2:vertical --effect 1:emboss=3 --filter 2:ink --reset"},
        {"lamina blend flat.png small.png -o out.png",
         "cp small.png ./-in.png; lamina blend -o -out.png -- flat.png -in.png; mv ./-out.png out.png"},
    };
    for (const auto& [plain, other] : pairs) {
        SCOPED_TRACE(other);
        picture(plain);
        const std::string bytes = readFile(folder.path("out.png"));
        picture(other);
        EXPECT_TRUE(readFile(folder.path("out.png")) == bytes);
    }
}

TEST_F(Roads, DamagedPhotosAreUsedAndToldOfOnce)
{
    writeFile(folder.path("damaged.jpg"), damagedPhoto());
    const std::string told = ": the picture is damaged; it is shown as far as it goes\n";
    const std::string named = "lamina: damaged.jpg" + told;
    for (const auto& [line, message] : std::vector<std::pair<std::string, std::string>>{
             {"op invert -i damaged.jpg -o out.png", named},
             {"op scaleToFitSize=8x8 -i - -o out.png <damaged.jpg", "lamina: standard input" + told},
             {"op invert --each damaged.jpg small.png -o out.{name}.png", named},
             {"blend damaged.jpg damaged.jpg -o out.png", named + named},
             {"collage damaged.jpg flat.png -o out.png", named},
             {"export jpg -i damaged.jpg -o out.jpg", named},
             {"op invert -i flat.png -o out.png", ""}}) {
        SCOPED_TRACE(line);
        const CommandResult run = shell("lamina " + line);
        EXPECT_EQ(run.exitCode, 0);
        EXPECT_EQ(run.errors, message);
    }
}

// 200 MB that are no picture: held once, and refused where there is no room for them.
TEST_F(Roads, StandardInputIsHeldOnce)
{
    const std::string line = "head -c 200000000 /dev/zero 2>/dev/null | lamina op invert -i - -o out.png";
    const CommandResult whole = shell(line);
    EXPECT_EQ(whole.exitCode, 3);
    EXPECT_EQ(whole.errors, "lamina: standard input: not a picture\n");
#if !defined(__SANITIZE_ADDRESS__) // which needs room without end
    EXPECT_LT(whole.peakKilobytes, 260'000);
    const CommandResult tight = shell("ulimit -v 200000; " + line);
    EXPECT_EQ(tight.exitCode, 3);
    EXPECT_EQ(tight.errors, "lamina: standard input: not enough memory\n");
#endif
}

TEST_F(Roads, TheSameBytesComeOfAnyNumberOfCores)
{
    const std::string photo = "'" + samples("meadow.jpg") + "'";
    CommandOptions oneCore;
    oneCore.cores = 1;
    for (const std::string& line :
         {"lamina blend " + photo + " flat.png -o - --zoom 1.37 --contrast 1:30 --sticker sun@90,99,80,80,20",
          "lamina collage " + photo + " flat.png -o - --layout 2005 --rotate 1:20 --effect 2:unsharpen=3 --gap 3",
          "lamina op rotateInDegrees=33 scaleToFitSize=500x500 gaussianBlurWithBias -o - -i " + photo}) {
        const std::string bytes = shell(line).output;
        EXPECT_THAT(bytes, testing::StartsWith("\x89PNG"));
        EXPECT_TRUE(shell(line, oneCore).output == bytes) << line;
    }
}

TEST_F(Roads, TheNameOfTheOutputTellsItsFormat)
{
    for (const auto& [extension, head] :
         std::vector<std::pair<std::string, std::string>>{{"PNG", "\x89PNG"}, {"jpeg", "\xFF\xD8"}}) {
        const CommandResult run = shell("lamina op opacity=0 -i flat.png -o o." + extension);
        EXPECT_EQ(run.exitCode, 0) << run.errors;
        EXPECT_THAT(readFile(folder.path("o." + extension)), testing::StartsWith(head));
    }
    const CGImage onWhite = readPictureFile(folder.path("o.jpeg"));
    EXPECT_EQ(pixelAt(onWhite, 1, 1), (Rgba{255, 255, 255, 255}));
}

TEST_F(Roads, AnInterruptionLeavesNothingBehind)
{
    const std::vector<std::string> before = folder.names();
    CommandOptions options;
    options.input = readFile(folder.path("small.png"));
    options.interruptAfterMs = 700;
    const CommandResult run =
        runCommand(LAMINA_COMMAND, {"op", "invert", "-i", "-", "-o", folder.path("out.png")}, options);
    EXPECT_EQ(run.exitCode, 130);
    EXPECT_EQ(folder.names(), before);
}

} // namespace
} // namespace lamina::test
