#include "CommandRunner.h"
#include "TestPaths.h"
#include "TestPictures.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <set>

namespace lamina::test {
namespace {

using testing::HasSubstr;

constexpr Rgba kFlat{100, 200, 40, 255};

/// Every pixel of the small picture is another.
Rgba grid(int x, int y)
{
    return {static_cast<std::uint8_t>(10 + 40 * x), static_cast<std::uint8_t>(20 + 60 * y), 200, 255};
}

struct OperationCase {
    std::string text;
    bool onFlat; ///< of 400 × 200, or the grid of 3 × 2
    IntSize size;
    std::function<Rgba(int x, int y)> pixel;
    int tolerance = 0;

    std::string name() const { return text.substr(0, text.find('=')); }
};

std::function<Rgba(int, int)> colour(Rgba value)
{
    return [value](int, int) { return value; };
}

/// What a convolution with a kernel sum of 1 makes of a flat picture: `border` pixels keep their source.
std::function<Rgba(int, int)> shifted(int border, int bias)
{
    return [=](int x, int y) {
        if (x < border || y < border || x >= 400 - border || y >= 200 - border)
            return kFlat;
        return Rgba{static_cast<std::uint8_t>(100 + bias), static_cast<std::uint8_t>(200 + bias),
                    static_cast<std::uint8_t>(40 + bias), 255};
    };
}

// Worked by hand, one for each operation at least. MASK is a flat grey of 128 of the grid's size.
std::vector<OperationCase> cases()
{
    const auto mirroredX = [](int x, int y) { return grid(2 - x, y); };
    const auto mirroredY = [](int x, int y) { return grid(x, 1 - y); };
    return {
        {"rotateInDegrees=90", false, {2, 3}, [](int x, int y) { return grid(2 - y, x); }},
        {"rotateInDegrees=-90", false, {2, 3}, [](int x, int y) { return grid(y, 1 - x); }},
        {"rotateInRadians=3.1415927,1,0", false, {3, 2}, mirroredY},
        {"rotateInRadians=0,0,1", false, {3, 2}, mirroredY},
        {"horizontalFlip", false, {3, 2}, mirroredX},
        {"verticalFlip", false, {3, 2}, mirroredY},
        {"rotateImagePixelsInDegrees=180", false, {3, 2}, [](int x, int y) { return grid(2 - x, 1 - y); }, 1},
        {"rotateImagePixelsInRadians=0", false, {3, 2}, grid, 1},
        {"cropToSize=2x1,5", false, {2, 1}, [](int x, int y) { return grid(x + 1, y + 1); }},
        {"cropToSize=2x1", false, {2, 1}, grid},
        {"scaleByFactor=0.5", true, {200, 100}, colour(kFlat)},
        {"scaleToSize=100x100,2", true, {200, 100}, colour(kFlat)},
        {"scaleToSize=100x90", true, {100, 90}, colour(kFlat)},
        {"scaleToFillSize=30x70.9", true, {30, 70}, colour(kFlat)},
        {"scaleToFitSize=100x100", true, {100, 50}, colour(kFlat)},
        {"scaleToCoverSize=100x100", true, {200, 100}, colour(kFlat)},
        // Twice through 128 / 255 leaves an alpha of 64.25; so few steps of alpha round the colour by two.
        {"maskWithImage=MASK",
         false,
         {3, 2},
         [](int x, int y) {
             return Rgba{grid(x, y)[0], grid(x, y)[1], 200, 64};
         },
         2},
        {"reflectedImageWithHeight=2,1,1", false, {3, 2}, mirroredY},
        {"brightenWithValue=70.5", true, {400, 200}, colour({170, 255, 110, 255})},
        // f = 275 · 259 / (239 · 255) = 1.1687
        {"contrastAdjustmentWithValue=20", true, {400, 200}, colour({95, 212, 25, 255})},
        {"gammaCorrectionWithValue=2", true, {400, 200}, colour({39, 156, 6, 255})},
        {"invert", true, {400, 200}, colour({155, 55, 215, 255})},
        {"opacity=0.5", true, {400, 200}, colour({100, 200, 40, 128}), 1},
        {"grayscale",
         false,
         {3, 2},
         [](int, int) {
             return Rgba{90, 90, 90, 255};
         },
         1},
        {"sepia", true, {400, 200}, colour({200, 178, 139, 255})},
        {"autoEnhance", false, {3, 2}, grid},
        {"redEyeCorrection", false, {3, 2}, grid},
        {"edgeDetectionWithBias", true, {400, 200}, colour({0, 0, 0, 255})},
        {"embossWithBias=30", true, {400, 200}, shifted(1, 30)},
        {"sharpenWithBias=-20", true, {400, 200}, shifted(1, -20)},
        {"unsharpenWithBias", true, {400, 200}, shifted(1, 0)},
        {"gaussianBlurWithBias=5", true, {400, 200}, shifted(2, 5)},
    };
}

class OpCommand : public testing::Test {
protected:
    void SetUp() override
    {
        writePng(small(), makePicture(3, 2, grid));
        writePng(flat(), makePicture(400, 200, colour(kFlat)));
        writePng(folder.path("mask.png"), makePicture(3, 2, colour({128, 128, 128, 255})));
        writePng(folder.path("gray.png"), makePicture(3, 2, colour({90, 90, 90, 255})));
    }
    std::string small() const { return folder.path("small.png"); }
    std::string flat() const { return folder.path("flat.png"); }
    std::string out(const std::string& name = "out.png") const { return folder.path(name); }

    static CommandResult op(std::vector<std::string> arguments, const CommandOptions& options = {})
    {
        arguments.insert(arguments.begin(), "op");
        return runCommand(LAMINA_COMMAND, arguments, options);
    }

    /// What every refusal has in common: one line, nothing written, no time or memory spent.
    void expectRefusal(const std::vector<std::string>& arguments, int exitCode, const std::string& message)
    {
        SCOPED_TRACE(testing::PrintToString(arguments));
        const std::vector<std::string> before = folder.names();
        const CommandResult run = op(arguments);
        EXPECT_EQ(run.exitCode, exitCode);
        EXPECT_THAT(run.errors, testing::StartsWith("lamina: "));
        EXPECT_THAT(run.errors, HasSubstr(message));
        EXPECT_EQ(run.output, "");
        EXPECT_EQ(folder.names(), before);
#if !defined(__SANITIZE_ADDRESS__)
        EXPECT_LT(run.peakKilobytes, 100'000);
#endif
    }

    TemporaryFolder folder;
};

TEST_F(OpCommand, EveryOperationDoesWhatItsNameSays)
{
    for (const OperationCase& c : cases()) {
        SCOPED_TRACE(c.text);
        std::string text = c.text;
        if (const std::size_t at = text.find("MASK"); at != std::string::npos)
            text.replace(at, 4, folder.path("mask.png"));
        const std::string input = c.name() == "grayscale" ? folder.path("gray.png") : c.onFlat ? flat() : small();
        const CommandResult run = op({text, "-i", input, "-o", out()});
        ASSERT_EQ(run.exitCode, 0) << run.errors;
        const CGImage picture = readPictureFile(out());
        ASSERT_EQ(picture.size(), c.size);
        int wrong = 0;
        for (int y = 0; y < c.size.height; ++y) {
            for (int x = 0; x < c.size.width; ++x)
                wrong += difference(pixelAt(picture, x, y), c.pixel(x, y)) > c.tolerance ? 1 : 0;
        }
        EXPECT_EQ(wrong, 0) << "the first pixel is " << testing::PrintToString(pixelAt(picture, 0, 0));
    }
}

TEST_F(OpCommand, HelpAndTheListForProgramsKnowTheSameOperations)
{
    const CommandResult list = op({"--json"});
    const CommandResult help = op({"--help"});
    ASSERT_EQ(list.exitCode, 0);
    ASSERT_EQ(help.exitCode, 0);
    std::set<std::string> listed;
    for (const auto& operation : nlohmann::json::parse(list.output)) {
        const std::string name = operation.at("name");
        listed.insert(name);
        EXPECT_THAT(help.output, HasSubstr("  " + name));
        for (const auto& argument : operation.at("arguments")) {
            EXPECT_THAT(help.output, HasSubstr(argument.at("name").get<std::string>() + ": " +
                                               argument.at("about").get<std::string>()));
        }
        // Examples are promises: only the mask's file is missing.
        const std::string example = operation.at("example");
        const CommandResult run = op({example.empty() ? name : name + "=" + example, "-i", flat(), "-o", out("x.png")});
        EXPECT_EQ(run.exitCode, name == "maskWithImage" ? 3 : 0) << run.errors;
    }
    std::set<std::string> tested;
    for (const OperationCase& c : cases())
        tested.insert(c.name());
    EXPECT_EQ(listed, tested);
}

TEST_F(OpCommand, OperationsActInTheirOrder)
{
    ASSERT_EQ(op({"rotateInDegrees=90", "cropToSize=1x1", "-i", small(), "-o", out()}).exitCode, 0);
    EXPECT_EQ(pixelAt(readPictureFile(out()), 0, 0), grid(2, 0));
    ASSERT_EQ(op({"-i", small(), "cropToSize=1x1", "-o", out(), "rotateInDegrees=90"}).exitCode, 0);
    EXPECT_EQ(pixelAt(readPictureFile(out()), 0, 0), grid(0, 0));
}

TEST_F(OpCommand, PictureScaleMakesPointsOfSeveralPixels)
{
    const auto sizeAfter = [&](const std::string& operation) {
        const CommandResult run = op({operation, "-i", flat(), "-o", out(), "--picture-scale", "2"});
        EXPECT_EQ(run.exitCode, 0) << run.errors;
        return readPictureFile(out()).size();
    };
    EXPECT_EQ(sizeAfter("brightenWithValue=0"), (IntSize{200, 100}));
    EXPECT_EQ(sizeAfter("cropToSize=50x30"), (IntSize{100, 60}));
    EXPECT_EQ(sizeAfter("reflectedImageWithHeight=10,1,0"), (IntSize{200, 10}));
}

TEST_F(OpCommand, TheNameOfTheOutputDecidesItsFormat)
{
    const std::vector<std::pair<std::string, std::string>> formats{
        {"png", "PNG RGBA"}, {"JPG", "JPEG RGB"},  {"jpeg", "JPEG RGB"},  {"gif", "GIF P"},
        {"bmp", "BMP RGB"},  {"tif", "TIFF RGBA"}, {"tiff", "TIFF RGBA"},
    };
    const std::string script = "import sys\nfrom PIL import Image\n"
                               "p = Image.open(sys.argv[1]); p.load()\n"
                               "print(p.format, p.mode, p.convert('RGB').getpixel((1, 1)))\n";
    for (const auto& [extension, format] : formats) {
        SCOPED_TRACE(extension);
        const std::string file = out("out." + extension);
        const CommandResult run = op({"invert", "opacity=0", "-i", flat(), "-o", file});
        ASSERT_EQ(run.exitCode, 0) << run.errors;
        const CommandResult reader = runCommand("/usr/bin/python3", {"-c", script, file});
        EXPECT_THAT(reader.output, testing::StartsWith(format)) << reader.errors;
        if (format.ends_with(" RGB")) {
            EXPECT_THAT(reader.output, HasSubstr("(255, 255, 255)")); // clear pixels lie on white
        }
    }
}

TEST_F(OpCommand, ReadsStandardInputAndWritesTheSameBytesOnAnyNumberOfCores)
{
    const std::vector<std::string> chain{"rotateInDegrees=33",
                                         "contrastAdjustmentWithValue=40",
                                         "scaleToFitSize=500x500",
                                         "gaussianBlurWithBias",
                                         "-o",
                                         "-",
                                         "-i"};
    const auto with = [&](const std::string& input, const CommandOptions& options) {
        std::vector<std::string> arguments = chain;
        arguments.push_back(input);
        const CommandResult run = op(arguments, options);
        EXPECT_EQ(run.exitCode, 0) << run.errors;
        return run.output;
    };
    const std::string photo = samples("meadow.jpg");
    CommandOptions piped;
    piped.input = readFile(photo);
    piped.cores = 1;
    const std::string bytes = with(photo, {});
    EXPECT_THAT(bytes, testing::StartsWith("\x89PNG"));
    EXPECT_EQ(with("-", piped), bytes);
}

TEST_F(OpCommand, AnUnknownNameSuggestsTheNearest)
{
    for (const auto& [typed, meant] :
         std::vector<std::pair<std::string, std::string>>{{"rotateInDegres=90", "rotateInDegrees"},
                                                          {"horizontalflip", "horizontalFlip"},
                                                          {"contrast=3", "contrastAdjustmentWithValue"},
                                                          {"blur", "gaussianBlurWithBias"},
                                                          {"greyscale", "grayscale"},
                                                          {"scale=2", "scaleToSize"},
                                                          {"sepai", "sepia"}})
        expectRefusal({typed, "-i", small(), "-o", out()}, 2, "did you mean " + meant + "?");
    // Whatever someone pasted is answered too.
    expectRefusal({std::string(100'000, 'x'), "-i", small(), "-o", out()}, 2, "did you mean");
}

TEST_F(OpCommand, BadArgumentsAreToldBeforeAnythingIsRead)
{
    const std::string nowhere = folder.path("nowhere.png");
    for (const auto& [text, message] :
         std::vector<std::pair<std::string, std::string>>{{"rotateInDegrees", "DEGREES is missing"},
                                                          {"rotateInDegrees=", "DEGREES must be a number"},
                                                          {"rotateInDegrees=nan", "DEGREES must be a number"},
                                                          {"brightenWithValue=1e39", "VALUE must be a number"},
                                                          {"brightenWithValue=1,2", "too many arguments"},
                                                          {"invert=1", "too many arguments"},
                                                          {"embossWithBias=1.5", "BIAS must be a whole number"},
                                                          {"embossWithBias=99999999999", "BIAS must be a whole number"},
                                                          {"rotateInRadians=1,2", "MIRRORX must be 0 or 1"},
                                                          {"cropToSize=-5x5", "WxH must be"},
                                                          {"cropToSize=5x0", "WxH must be"},
                                                          {"scaleToFitSize=100", "WxH must be"},
                                                          {"scaleToFitSize=infx1", "WxH must be"},
                                                          {"scaleByFactor=-1", "FACTOR must be a number above 0"},
                                                          {"reflectedImageWithHeight=0,1,0", "HEIGHT must be"},
                                                          {"=5", "an operation is NAME"},
                                                          {"maskWithImage=", "FILE must be a file"}})
        expectRefusal({text, "-i", nowhere, "-o", out()}, 2, message);

    expectRefusal({"-i", nowhere, "-o", out()}, 2, "at least one operation");
    expectRefusal({"invert", "-o", out()}, 2, "--input");
    expectRefusal({"invert", "-i", nowhere}, 2, "--output");
    expectRefusal({"invert", "-i", nowhere, "-o", out("out.webp")}, 2, "must end in");
    expectRefusal({"invert", "-i", nowhere, "-o", out(), "--picture-scale", "0"}, 2, "0.01 to 100");
    expectRefusal({"maskWithImage=-", "-i", "-", "-o", out()}, 2, "standard input");
}

TEST_F(OpCommand, AnOperationWithoutAPictureIsNamed)
{
    for (const std::string& text :
         {std::string("scaleToFillSize=1000000x1000000"), std::string("scaleByFactor=1e30"),
          std::string("scaleToFitSize=0.5x0.5"), std::string("reflectedImageWithHeight=4294967295,1,0")})
        expectRefusal({"invert", text, "-i", small(), "-o", out()}, 1, "lamina: " + text + ": gives no picture");
    expectRefusal({"maskWithImage=" + flat(), "-i", small(), "-o", out()}, 1,
                  "FILE has 400 x 200 pixels and the picture 3 x 2 pixels");
    expectRefusal({"rotateInDegrees=90", "cropToSize=3x2,8", "-i", small(), "-o", out()}, 1,
                  "cropToSize=3x2,8: reaches beyond the picture, which has 2 x 3 points");
    expectRefusal({"cropToSize=1x1", "--picture-scale", "2.5", "-i", small(), "-o", out()}, 1, "1.2 x 0.8 points");
}

TEST_F(OpCommand, UnreadableInputsAndUnwritableOutputsHaveTheirOwnCodes)
{
    const std::string nowhere = folder.path("no,where.png");
    expectRefusal({"invert", "-i", nowhere, "-o", out()}, 3, nowhere);
    expectRefusal({"maskWithImage=" + nowhere, "-i", small(), "-o", out()}, 3, nowhere);
    expectRefusal({"invert", "-i", small(), "-o", folder.path("no/folder/out.jpg")}, 4, "no/folder/out.jpg");
}

} // namespace
} // namespace lamina::test
