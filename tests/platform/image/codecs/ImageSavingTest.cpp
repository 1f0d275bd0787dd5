#include "platform/image/codecs/ImageSaving.h"

#include "../../base/LogCapture.h"
#include "CommandRunner.h"
#include "DrawingSupport.h"
#include "PillowReader.h"

#include <gtest/gtest.h>

namespace lamina::test {
namespace {

/// Two pixels: red and, to the right of it, green, half covered.
UIImage twoPixels(UIImageOrientation orientation = UIImageOrientation::Up, double scale = 1)
{
    const CGImage pixels = fourBytePicture(2, 1, CGImageAlphaInfo::Last, [](int x, int) {
        return x == 0 ? Pixel{255, 0, 0, 255} : Pixel{0, 255, 0, 128};
    });
    return UIImage(pixels, scale, orientation);
}

TEST(ImageSaving, FollowsTheTypesNumber)
{
    struct Case {
        int type;
        std::string_view uti;
        const char* format;
        const char* extension;
    };
    const Case cases[] = {
        {0, "public.png", "PNG", "png"},         {1, "public.jpeg", "JPEG", "jpeg"},
        {2, "com.compuserve.gif", "GIF", "gif"}, {3, "com.microsoft.bmp", "BMP", "bmp"},
        {4, "public.tiff", "TIFF", "tiff"},      {5, "public.png", "PNG", "png"},
        {-1, "public.png", "PNG", "png"},        {2147483647, "public.png", "PNG", "png"},
    };
    const TemporaryFolder folder;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.type);
        EXPECT_EQ(utiForType(c.type), c.uti);
        EXPECT_EQ(extensionForUTI(c.uti), c.extension);
        ASSERT_TRUE(saveToPath(twoPixels(), folder.path("a.file"), c.type, UIColor::black()));
        EXPECT_EQ(readWithPillow(folder.path("a.file")).format, c.format);
        ASSERT_TRUE(saveToURL(twoPixels(), "file://" + folder.path("b.file"), c.uti, UIColor::black()));
        EXPECT_EQ(readFile(folder.path("b.file")), readFile(folder.path("a.file")));
    }
    EXPECT_EQ(extensionForUTI("public.nothing"), std::nullopt);
    EXPECT_EQ(extensionForUTI(""), std::nullopt);

    // No identifier means PNG, whose translucent pixels need no background.
    ASSERT_TRUE(saveToPath(twoPixels(), folder.path("a.file"), "", UIColor::black()));
    const PillowPicture png = readWithPillow(folder.path("a.file"));
    EXPECT_EQ(png.format + png.mode, "PNGRGBA");
    EXPECT_EQ(png.at(1, 0, 3), 128);
}

TEST(ImageSaving, WritesWhatIsSeen)
{
    const TemporaryFolder folder;
    // Turned a quarter to the right, left becomes top.
    ASSERT_TRUE(saveToPath(twoPixels(UIImageOrientation::Right, 2), folder.path("turned.bmp"), kImageTypeBMP,
                           UIColor::black()));
    const PillowPicture turned = readWithPillow(folder.path("turned.bmp"));
    ASSERT_EQ((IntSize{turned.width, turned.height}), (IntSize{1, 2}));
    EXPECT_EQ(turned.at(0, 0, 0), 255);
    EXPECT_EQ(turned.at(0, 1, 1), 128);
    // White where no colour is given: half green on white keeps all of the green.
    ASSERT_TRUE(saveToPath(twoPixels(), folder.path("white.bmp"), kImageTypeBMP, std::nullopt));
    const PillowPicture white = readWithPillow(folder.path("white.bmp"));
    EXPECT_EQ(white.at(1, 0, 1), 255);
    EXPECT_EQ(white.at(1, 0, 0), 127);
    // The file's name has no say.
    ASSERT_TRUE(saveToPath(twoPixels(), folder.path("name.jpg")));
    EXPECT_EQ(readWithPillow(folder.path("name.jpg")).format, "PNG");
}

TEST(ImageSaving, AnswersNoAndLeavesNothingBehind)
{
    const TemporaryFolder folder;
    LogCapture log;
    const auto refused = [&](bool saved, const std::string& cause) {
        EXPECT_FALSE(saved);
        ASSERT_FALSE(log.messages.empty());
        EXPECT_NE(log.messages.back().second.find(cause), std::string::npos) << log.messages.back().second;
        log.messages.clear();
    };
    refused(saveToURL(twoPixels(), ""), "not on this device");
    refused(saveToURL(twoPixels(), "https://example.org/a.png"), "not on this device");
    refused(saveToURL(twoPixels(), "file://" + folder.path("none/a.png")), "no such folder");
    refused(saveToPath(twoPixels(), ""), "not the name of a file");
    refused(saveToPath(UIImage(), folder.path("a.png")), "there is no picture");
    refused(saveToPath(twoPixels(), folder.path("a.heic"), "public.heic", std::nullopt), "can't be written");
    EXPECT_EQ(folder.names(), std::vector<std::string>());

    // What can't be encoded leaves the file that was there.
    writeFile(folder.path("kept.jpg"), "kept");
    const UIImage line(bytePicture(70'000, 1, [](int, int) { return 1; }));
    refused(saveToPath(line, folder.path("kept.jpg"), kImageTypeJPEG, std::nullopt), "65500");
    EXPECT_EQ(readFile(folder.path("kept.jpg")), "kept");
    EXPECT_EQ(folder.names(), std::vector<std::string>{"kept.jpg"});
}

TEST(ImageSaving, PassesTheQualityOn)
{
    const UIImage noise(noisePicture(64, 64, CGImageAlphaInfo::NoneSkipLast));
    const auto size = [&](double quality) {
        return encodeImage(noise, {std::string(kUTTypeJPEG), quality, std::nullopt}, "noise")->size();
    };
    EXPECT_GT(size(1), 2 * size(0.3));
}

} // namespace
} // namespace lamina::test
