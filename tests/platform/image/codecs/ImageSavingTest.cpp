#include "platform/image/codecs/ImageSaving.h"

#include "CommandRunner.h"
#include "LogCapture.h"
#include "PillowReader.h"
#include "TestPictures.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace lamina::test {
namespace {

/// Two pixels: red and, to the right of it, green, half covered.
UIImage twoPixels()
{
    const auto color = [](int x, int) { return x == 0 ? Rgba{255, 0, 0, 255} : Rgba{0, 255, 0, 128}; };
    return UIImage(makePicture(2, 1, color, true));
}

/// What Pillow makes of a file that was saved.
PillowPicture readSaved(const std::string& path)
{
    const std::string content = readFile(path);
    return readWithPillow({{content.begin(), content.end()}})[0];
}

TEST(PictureFormats, AreToldByExtensionAndType)
{
    const auto named = [](std::string_view file) {
        const PictureFormat* format = pictureFormatForFileName(file);
        return format ? format->name : "none";
    };
    for (const auto& [file, name] : {std::pair{"a.jpg", "JPEG"},
                                     {"/b.c/A.JPEG", "JPEG"},
                                     {"a.png.Dib", "BMP"},
                                     {"x.avif", "HEIC"},
                                     {"x.TIF", "TIFF"},
                                     {".png", "none"},
                                     {"/x/.png", "none"},
                                     {"a.png/b", "none"},
                                     {"png", "none"},
                                     {"a.", "none"},
                                     {"", "none"}})
        EXPECT_EQ(named(file), name) << file;
    EXPECT_EQ(extensionForUTI("public.heic"), "heic");
    EXPECT_EQ(extensionForUTI("com.adobe.pdf"), "pdf");
    EXPECT_EQ(extensionForUTI("public.nothing"), std::nullopt);
    EXPECT_EQ(extensionForUTI(""), std::nullopt);
}

TEST(ImageSaving, FollowsTheTypesNumber)
{
    struct Case {
        int type;
        std::string_view uti;
        const char* kind;
        const char* extension;
    };
    const Case cases[] = {
        {0, "public.png", "PNG RGBA sRGB", "png"},    {1, "public.jpeg", "JPEG RGB sRGB 1x1", "jpeg"},
        {2, "com.compuserve.gif", "GIF P -", "gif"},  {3, "com.microsoft.bmp", "BMP RGB -", "bmp"},
        {4, "public.tiff", "TIFF RGBA sRGB", "tiff"}, {5, "public.png", "PNG RGBA sRGB", "png"},
        {-1, "public.png", "PNG RGBA sRGB", "png"},
    };
    const TemporaryFolder folder;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.type);
        EXPECT_EQ(utiForType(c.type), c.uti);
        EXPECT_EQ(extensionForUTI(c.uti), c.extension);
        // The file's name has no say.
        ASSERT_TRUE(saveToPath(twoPixels(), folder.path("a.file"), c.type, UIColor::black()));
        EXPECT_EQ(readSaved(folder.path("a.file")).kind, c.kind);
        ASSERT_TRUE(saveToURL(twoPixels(), "file://" + folder.path("b.file"), c.uti, UIColor::black()));
        EXPECT_EQ(readFile(folder.path("b.file")), readFile(folder.path("a.file")));
    }
    ASSERT_TRUE(saveToPath(twoPixels(), folder.path("name.jpg")));
    EXPECT_EQ(readSaved(folder.path("name.jpg")).kind, "PNG RGBA sRGB");
}

TEST(ImageSaving, TakesTheQualityAlong)
{
    const UIImage noise(noisePicture(64, 64, CGImageAlphaInfo::NoneSkipLast));
    const auto size = [&](double quality) {
        return encodeImage(noise, {std::string(kUTTypeJPEG), quality, std::nullopt}, "noise")->size();
    };
    EXPECT_GT(size(1), 2 * size(0.3));
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
    writeFile(folder.path("kept.jpg"), "kept");
    const UIImage line(bytePicture(70'000, 1, [](int, int) { return 1; }));
    refused(saveToURL(twoPixels(), "https://example.org/a.png"), "not on this device");
    refused(saveToURL(twoPixels(), "file://" + folder.path("none/a.png")), "no such folder");
    refused(saveToPath(twoPixels(), ""), "not the name of a file");
    refused(saveToPath(UIImage(), folder.path("a.png")), "there is no picture");
    refused(saveToPath(twoPixels(), folder.path("a.heic"), "public.heic", std::nullopt), "can't be written");
    refused(saveToPath(line, folder.path("kept.jpg"), kImageTypeJPEG, std::nullopt), "65500");
    EXPECT_EQ(readFile(folder.path("kept.jpg")), "kept"); // what can't be encoded leaves the file that was there
    EXPECT_EQ(folder.names(), std::vector<std::string>{"kept.jpg"});
}

} // namespace
} // namespace lamina::test
