#include "CommandLines.h"
#include "TestPaths.h"
#include "platform/base/CGGeometry.h"

#include <array>
#include <cstddef>
#include <gmock/gmock.h>
#include <string>
#include <utility>
#include <vector>

namespace lamina::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

class Exports : public CommandLines {
protected:
    /// Fails the running test where the line fails or tells anything; gives what it prints.
    std::string good(const std::string& line, const CommandOptions& options = {}) const
    {
        const CommandResult run = shell(line, options);
        EXPECT_EQ(run.exitCode, 0) << line;
        EXPECT_EQ(run.errors, "") << line;
        return run.output;
    }
    std::size_t sizeOf(const std::string& name) const { return readFile(folder.path(name)).size(); }
};

TEST_F(Exports, AFolderGetsAFileOfTheTypesOwnName)
{
    const std::string strange = "Größe ☀ of it's";
    good("mkdir twice \"" + strange + "\"");
    for (const std::string type : {"jpg", "png", "pdf-standard", "pdf-print --notes", "svg", "mp4"})
        for (const std::string& place : {strange, std::string("twice")})
            good(std::string("lamina export ").append(type).append(" -i flat.png -o \"").append(place).append("\""));
    const std::string names = "Convert.mp4\nNotes.pdf\nUntitledPdf.pdf\nUntitledSVG.svg\ndefault.jpg\ndefault.png\n";
    EXPECT_EQ(good("LC_ALL=C ls twice && diff -r twice \"" + strange + "\""), names) << "with the same bytes";
    good("lamina export tiff -i flat.png -o a.tiff && lamina export tiff -i flat.png -o b.TIF && cmp a.tiff b.TIF");
}

TEST_F(Exports, OptionsReachTheWork)
{
    good("lamina export png -i flat.png -o half.png --size 0.5");
    EXPECT_EQ(readPictureFile(folder.path("half.png")).size(), (IntSize{200, 100}));
    good("lamina op opacity=0 -i flat.png -o clear.png && lamina export png -i clear.png -o white.png && "
         "lamina export png -i clear.png -o kept.png --transparency");
    EXPECT_EQ(pixelAt(readPictureFile(folder.path("white.png")), 1, 1), (Rgba{255, 255, 255, 255}));
    EXPECT_EQ(pixelAt(readPictureFile(folder.path("kept.png")), 1, 1)[3], 0);
    writePng(folder.path("noise.png"), noisePicture(160, 160, CGImageAlphaInfo::NoneSkipLast));
    for (const auto& [type, low, high] :
         {std::array{"jpg", "0.1", "1"}, {"mp4", "low", "high"}, {"mp4", "0.5", "0.6"}}) {
        const std::string line = std::string("lamina export ") + type + " -i noise.png --quality ";
        for (const auto& [quality, name] : {std::pair{low, " -o a."}, {high, " -o b."}})
            good(std::string(line).append(quality).append(name).append(type));
        EXPECT_LT(sizeOf(std::string("a.") + type), 0.8 * static_cast<double>(sizeOf(std::string("b.") + type)));
    }
    good("lamina export pdf-standard -i flat.png -o p.pdf --picture-scale 2");
    EXPECT_THAT(good("pdfinfo p.pdf"), HasSubstr("200 x 100 pts"));
    good("lamina export pdf-print -i flat.png -o p.pdf --profile cmyk --crop-marks --ppi 288");
    EXPECT_THAT(good("pdfinfo p.pdf"), HasSubstr("140 x 90 pts"));
    EXPECT_THAT(good("pdfimages -list p.pdf"), HasSubstr("cmyk"));
}

TEST_F(Exports, TakeClipsForWhatTheyAre)
{
    good(
        "ffmpeg -v error -loop 1 -i flat.png -t 1 -pix_fmt yuv420p in.mp4 && lamina export png -i in.mp4 -o frame.png");
    const CGImage frame = readPictureFile(folder.path("frame.png"));
    EXPECT_EQ(frame.size(), (IntSize{400, 200}));
    for (std::size_t c = 0; c < 3; ++c)
        EXPECT_NEAR(pixelAt(frame, 200, 100)[c], kFlat[c], 3);
    good("lamina export mp4 -i in.mp4 -o again.mp4 --quality low");
    const std::string length = "ffprobe -v error -show_entries stream=duration -select_streams v -of csv=p=0 ";
    EXPECT_THAT(good(length + "again.mp4"), StartsWith("1.0")) << "a picture would stand for 3 seconds";
}

TEST_F(Exports, ATerminalSeesHowFarTheyAre)
{
    const std::string line = "export mp4 -i flat.png -o out.mp4";
    const auto onTerminal = [&](const std::string& command) {
        return good("script -qec \"'" LAMINA_COMMAND "' " + command + "\" /dev/null");
    };
    EXPECT_THAT(onTerminal(line), AllOf(HasSubstr("#] 100 %"), HasSubstr("out.mp4: written")));
    EXPECT_EQ(onTerminal(line + " --quiet"), "");
}

TEST_F(Exports, ABlendIsExportedWithItsScale)
{
    const std::string blend = "lamina blend flat.png small.png --width 64 --scale 2 ";
    EXPECT_EQ(bytesOf(picture(blend + "-o out.png --as png")), bytesOf(picture(blend + "-o out.png")));
    good(blend + "--as pdf-print --notes -o . && mv Notes.pdf out.pdf");
    EXPECT_THAT(good("pdfinfo out.pdf"), HasSubstr("128 x 228 pts")) << "print counts pixels";
    good(blend + "--as pdf-standard -o out.pdf");
    EXPECT_THAT(good("pdfinfo out.pdf"), HasSubstr("64 x 64 pts"));
}

TEST_F(Exports, AnInterruptionLeavesNothingBehind)
{
    const std::vector<std::string> before = folder.names();
    CommandOptions options;
    options.interruptAfterMs = 900;
    const CommandResult run = runCommand(
        LAMINA_COMMAND, {"export", "mp4", "-i", samples("meadow.jpg"), "-o", folder.path("out.mp4")}, options);
    EXPECT_EQ(run.exitCode, 130);
    EXPECT_EQ(folder.names(), before);
}

} // namespace
} // namespace lamina::test
