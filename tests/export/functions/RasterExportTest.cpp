// PNG, JPG, TIFF and SVG, read back by programs that we did not write.
#include "CommandRunner.h"
#include "PillowReader.h"
#include "TestPictures.h"

#include "export/functions/ExportPlaces.h"
#include "export/functions/ExportWork.h"
#include "export/functions/ImageHelpers.h"
#include "export/functions/PNGFunctionClass.h"
#include "export/functions/SVGFunction.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/UIScreen.h"
#include "platform/files/PrivateFolder.h"
#include "platform/image/codecs/PictureEncoding.h"
#include "platform/image/pixels/PixelConversion.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <sys/resource.h>
#include <vector>

namespace lamina::test {
namespace {

namespace fs = std::filesystem;

using Type = SavingtypeMethod;
using File = std::vector<std::uint8_t>;

constexpr Type kRasterTypes[] = {Type::jpg, Type::png, Type::svg, Type::tiff};

template <class Value>
std::string messageOf(const Result<Value>& result)
{
    return result ? "done" : result.error().message();
}

File fileAt(const std::string& path)
{
    const std::string content = readFile(path);
    return {content.begin(), content.end()};
}

/// The PNG that a document holds; fails the running test where it is another document, or no XML.
File pictureInSVG(const std::string& path, const std::string& width, const std::string& height)
{
    static const char* const script = R"(
import base64, sys, xml.dom.minidom
path, w, h = sys.argv[1:]
text = open(path, encoding='utf-8', newline='').read()
xml.dom.minidom.parseString(text)
png = base64.b64decode(text.split('base64,')[1].split('"')[0], validate=True)
assert text == f"""<?xml version="1.0" encoding="UTF-8"?>
<svg xmlns="http://www.w3.org/2000/svg" width="{w}" height="{h}" viewBox="0 0 {w} {h}">
    <image href="data:image/png;base64,{base64.b64encode(png).decode()}" width="{w}" height="{h}" />
</svg>""", text
sys.stdout.buffer.write(png)
)";
    const CommandResult parsed = runCommand("/usr/bin/python3", {"-c", script, path, width, height});
    EXPECT_EQ(parsed.exitCode, 0) << parsed.errors;
    return {parsed.output.begin(), parsed.output.end()};
}

/// The picture as it is shown, in straight RGBA, on white unless its transparency stays.
CGImage shown(const UIImage& picture, bool transparency)
{
    const CGImage rgba = convertedToSRGB(picture.upright().cgImage());
    return makePicture(
        rgba.width(), rgba.height(),
        [&](int x, int y) {
            Rgba pixel = pixelAt(rgba, x, y);
            for (std::size_t c = 0; c < 3 && !transparency; ++c)
                pixel[c] = static_cast<std::uint8_t>((pixel[c] * pixel[3] + 255 * (255 - pixel[3]) + 127) / 255);
            pixel[3] = transparency ? pixel[3] : 255;
            return pixel;
        },
        true);
}

/// A home of its own, whose folders are named by no file, and a screen of one pixel a point.
class RasterExport : public testing::Test {
protected:
    void SetUp() override
    {
        ::setenv("HOME", home.path().c_str(), 1);
        ::setenv("XDG_CONFIG_HOME", home.path("config").c_str(), 1);
        ::unsetenv("XDG_CACHE_HOME");
        UIScreen::setMain({{375, 667}, 1});
    }
    void TearDown() override { UIScreen::setMain(UIScreen()); }

    static Result<ExportedFile> save(Type type, const UIImage& picture, const ExportOptions& options = {},
                                     const ExportPlace& place = {}, const ExportWatch& watch = {})
    {
        Result<ExportedFile> file = runExport(type, {picture, {}}, options, place, watch);
        DispatchQueue::main().runUntilIdle(60);
        return file;
    }
    /// All files below the home but for the library's index, as paths from there.
    std::vector<std::string> files() const
    {
        std::vector<std::string> names;
        for (const auto& entry : fs::recursive_directory_iterator(home.path()))
            if ((entry.is_regular_file() || entry.is_symlink()) &&
                !entry.path().filename().string().starts_with("photos.sqlite"))
                names.push_back(entry.path().lexically_relative(home.path()));
        std::sort(names.begin(), names.end());
        return names;
    }

    const TemporaryFolder home;
    const std::string documents = home.path("Documents/Lamina/");
    const UIImage chart{chartPicture(19, 20)};
};

TEST_F(RasterExport, KeepsThePixelsOfEverySourceWhereTheTypeCan)
{
    const auto ramp = [](int x, int y) { return 11 * x + y; };
    const CGImage cmyk = makePicture(paddedLayout(7, 5, bitmapInfo(CGImageAlphaInfo::None)), [&](int x, int y) {
        return Rgba{static_cast<std::uint8_t>(ramp(x, y)), 90, static_cast<std::uint8_t>(30 * y), 10};
    });
    CGImageLayout inks = cmyk.layout();
    inks.colorSpace = CGColorSpace::deviceCMYK();
    const CGImageLayout deep = packedLayout({6, 4}, bitmapInfo(CGImageAlphaInfo::Last), 16, 64);
    const UIImage sources[] = {
        UIImage(solidPicture(1, 1, {12, 200, 77, 255}, CGImageAlphaInfo::NoneSkipLast)),
        UIImage(noisePicture(1, 5000, CGImageAlphaInfo::NoneSkipLast)),
        UIImage(noisePicture(333, 67, CGImageAlphaInfo::PremultipliedLast)),
        UIImage(bytePicture(9, 8, ramp)),
        UIImage(pictureFromBytes(inks, cmyk.bytes())),
        UIImage(pictureFromBytes(deep, bytesOf(noisePicture(12, 4, CGImageAlphaInfo::Last)))),
        UIImage(chartPicture(19, 12), 1, UIImageOrientation::Right),
        chart,
    };
    for (std::size_t i = 0; i < std::size(sources); ++i) {
        SCOPED_TRACE(i);
        const UIImage& source = sources[i];
        const ExportOptions clear{.transparency = true};
        const Result<ExportedFile> jpg = save(Type::jpg, source);
        const Result<ExportedFile> png = save(Type::png, source);
        const Result<ExportedFile> clearPNG = save(Type::png, source, clear, {home.path(), "clear.png"});
        const Result<ExportedFile> svg = save(Type::svg, source);
        const Result<ExportedFile> clearSVG = save(Type::svg, source, clear, {home.path(), "clear.svg"});
        const Result<ExportedFile> tiff = save(Type::tiff, source);
        ASSERT_TRUE(jpg && png && clearPNG && svg && clearSVG && tiff);
        EXPECT_TRUE(jpg->path.empty());
        EXPECT_EQ(png->path, documents + "default.png");
        EXPECT_EQ(svg->path, documents + "UntitledSVG.svg");
        EXPECT_TRUE(png->picture.isIdenticalTo(source));
        EXPECT_TRUE(tiff->picture.isIdenticalTo(source));

        const std::string width = std::to_string(source.pixelSize().width) + ".0";
        const std::string height = std::to_string(source.pixelSize().height) + ".0";
        const std::vector<PillowPicture> read = readWithPillow(
            {jpg->bytes, fileAt(png->path), fileAt(clearPNG->path), pictureInSVG(svg->path, width, height),
             pictureInSVG(clearSVG->path, width, height), fileAt(tiff->path)});
        const CGImage onWhite = shown(source, false);
        const CGImage straight = shown(source, true);
        EXPECT_TRUE(imagesMatch(read[0].pixels, onWhite, 4)) << read[0].kind;
        EXPECT_EQ(read[1].kind, "PNG RGB sRGB");
        EXPECT_TRUE(imagesMatch(read[1].pixels, onWhite, 1));
        // Drawn into a context, translucent colours keep as much as their alpha lets them.
        EXPECT_TRUE(imagesMatch(shown(UIImage(read[2].pixels), false), onWhite, 1));
        EXPECT_TRUE(imagesMatch(shown(UIImage(read[3].pixels), false), onWhite, 1));
        EXPECT_TRUE(imagesMatch(read[4].pixels, straight));
        EXPECT_EQ(read[5].kind, "TIFF RGBA sRGB");
        EXPECT_TRUE(imagesMatch(read[5].pixels, straight));
        for (int y = 0; y < straight.height(); ++y)
            ASSERT_EQ(pixelAt(read[2].pixels, 0, y)[3], pixelAt(straight, 0, y)[3]);
    }
}

TEST_F(RasterExport, GivesPicturesTheSizeThatIsChosenAtTheScreensScale)
{
    UIScreen::setMain({{375, 667}, 3});
    const UIImage wide(rampPicture(60, 30, 9), 3); // 20 × 10 points
    using Case = std::pair<CGSize, IntSize>;
    for (const auto& [size, pixels] : {Case{{0, 0}, {60, 30}}, Case{{50, 25}, {150, 75}}, Case{{999, 5}, {30, 15}}}) {
        const ExportOptions options{.width = size.width, .height = size.height, .quality = 0.4};
        const Result<ExportedFile> png = save(Type::png, wide, options);
        const Result<ExportedFile> jpg = save(Type::jpg, wide, options);
        ASSERT_TRUE(png && jpg);
        EXPECT_EQ(readPictureFile(png->path).size(), pixels);
        EXPECT_EQ(jpg->picture.pixelSize(), pixels);
        EXPECT_EQ(jpg->picture.scale(), 3);
        // The loss comes before the size, and what is stored is of the quality that was chosen.
        const CGImage& stored = size.width == 0 ? wide.cgImage() : jpg->picture.cgImage();
        EXPECT_EQ(jpg->bytes, *encodePicture(stored, *pictureFormatForUTI(kUTTypeJPEG), "", {0.4}));
    }
    const UIImage high(rampPicture(30, 60, 9), 3);
    EXPECT_EQ(scaleImageToFit(high, 20, 1).pixelSize(), (IntSize{60, 120}));
    EXPECT_EQ(scaleImageToFit(UIImage(rampPicture(9, 9, 9)), 5, 1).pixelSize(), (IntSize{15, 15}));
    for (const double impossible : {0.0, -4.0, 1e9, std::nan("")})
        EXPECT_FALSE(scaleImageToFit(high, impossible, impossible)) << impossible;
    EXPECT_FALSE(scaleImageToFit({}, 5, 5));

    // What keeps its pixels is not drawn, and would not have changed.
    const UIImage premultiplied(chartPicture(19, 20, CGImageAlphaInfo::PremultipliedLast), 3);
    EXPECT_TRUE(scaleImageToFit(premultiplied, 19 / 3.0, 20 / 3.0).cgImage().sharesBytesWith(premultiplied.cgImage()));
    const PNGFunctionClass& png = PNGFunctionClass::shared();
    const UIImage laid = png.addBackground(premultiplied, {0, 0, 1, 1}, 11, 10);
    EXPECT_EQ(laid.pixelSize(), (IntSize{33, 30}));
    EXPECT_EQ(pixelAt(laid.cgImage(), 32, 0), (Rgba{0, 0, 255, 255}));
    EXPECT_NE(pixelAt(laid.cgImage(), 7, 5), (Rgba{0, 0, 255, 255}));
    // As a file of it would come back.
    const UIImage flat = png.flattenTransparent(premultiplied);
    EXPECT_EQ(flat.scale(), 1);
    EXPECT_EQ(*encodePNG(flat.cgImage(), ""), *encodePNG(premultiplied.cgImage(), ""));
}

TEST(ColorFromHex, ReadsTheLastSixDigitsOfANumber)
{
    const struct {
        const char* text;
        double red, green, blue;
    } cases[] = {{"#949494", 148, 148, 148}, {"ff8000", 255, 128, 0}, {"12345678", 0x34, 0x56, 0x78},
                 {"#F", 0, 0, 15},           {" 0x10aQ", 0, 1, 10},   {"", 0, 0, 0},
                 {"##ffffff", 0, 0, 0},      {"grey", 0, 0, 0},       {"ffffffffffffffffff", 255, 255, 255}};
    for (const auto& c : cases)
        EXPECT_EQ(colorFromHex(c.text, 0.5), (UIColor{c.red / 255, c.green / 255, c.blue / 255, 0.5})) << c.text;
}

TEST_F(RasterExport, StoresTheVeryBytesOfATIFFInTheLibrary)
{
    const std::string temporary = *temporaryFolder();
    for (const char* name : {"/old.tiff", "/new.tiff"})
        writeFile(temporary + name, "left");
    const auto now = fs::file_time_type::clock::now();
    fs::last_write_time(temporary + "/old.tiff", now - std::chrono::hours(25));
    fs::last_write_time(temporary + "/new.tiff", now - std::chrono::hours(23));
    fs::permissions(temporary, fs::perms(0777));

    const Result<ExportedFile> first = save(Type::tiff, chart);
    const Result<ExportedFile> second = save(Type::tiff, chart);
    ASSERT_TRUE(first && second);
    EXPECT_NE(first->path, second->path);
    EXPECT_EQ(fs::path(first->path).parent_path(), temporary);
    EXPECT_EQ(fs::status(temporary).permissions(), fs::perms(0700));
    for (const auto& entry : fs::directory_iterator(home.path("Pictures/Lamina")))
        EXPECT_EQ(fileAt(entry.path()), fileAt(first->path));
    EXPECT_FALSE(fs::exists(temporary + "/old.tiff"));
    EXPECT_TRUE(fs::exists(temporary + "/new.tiff"));

    ASSERT_TRUE(save(Type::tiff, chart, {}, {home.path(), "chosen.tiff"}));
    EXPECT_EQ(fileAt(home.path("chosen.tiff")), fileAt(first->path));
    EXPECT_EQ(files().size(), 6u); // two temporary, a leftover, two in the library, the chosen one
}

TEST_F(RasterExport, KeepsTheValuesAndTheProfileOfATIFFsOwnColors)
{
    CGImageLayout layout = CGImageLayout::rgba(19, 20, CGImageAlphaInfo::NoneSkipLast);
    const std::vector<std::uint8_t> profile = makeProfile({}, 1.8);
    layout.colorSpace = CGColorSpace::withProfile(CGColorSpace::Model::RGB, profile);
    const UIImage own(pictureFromBytes(layout, chartPicture(19, 20, CGImageAlphaInfo::NoneSkipLast).bytes()));
    ASSERT_TRUE(save(Type::tiff, own, {}, {home.path(), "own.tiff"}));
    const CommandResult read =
        runCommand("/usr/bin/python3", {"-c",
                                        "import sys; from PIL import Image; i = Image.open(sys.argv[1]);"
                                        "sys.stdout.buffer.write(i.info['icc_profile'] + i.convert('RGBA').tobytes())",
                                        home.path("own.tiff")});
    const std::vector<std::uint8_t> pixels = bytesOf(own.cgImage());
    EXPECT_EQ(read.output, std::string(profile.begin(), profile.end()) + std::string(pixels.begin(), pixels.end()));
}

TEST_F(RasterExport, WritesADocumentInPiecesOrAsAWhole)
{
    const SVGFunction& svg = SVGFunction::shared();
    EXPECT_EQ(svg.svgString({}, 1, 1), "");
    for (const int width : {1, 2, 3, 4}) { // whatever is left over of three bytes
        const UIImage picture(noisePicture(width, 1, CGImageAlphaInfo::Last));
        const Result<std::string> path = svg.saveSVG(svg.svgString(picture, 640, 0.1));
        ASSERT_TRUE(path);
        EXPECT_EQ(pictureInSVG(*path, "640.0", "0.1"), *encodePNG(picture.cgImage(), ""));
    }
    const UIImage large(noisePicture(200, 150, CGImageAlphaInfo::NoneSkipLast));
    ASSERT_TRUE(save(Type::svg, large));
    EXPECT_EQ(readFile(documents + "UntitledSVG.svg"), svg.svgString(large, 200, 150));
}

TEST_F(RasterExport, PutsFilesWhereItMayAndIsToldTo)
{
    const std::string folder = home.path("Ein Ordner ü");
    fs::create_directory(folder);
    EXPECT_EQ(*exportPath({folder + "/", {}}, "default.png"), folder + "/default.png");
    EXPECT_EQ(*exportPath({{}, "a.png"}, "default.png"), documents + "a.png");
    for (const char* name : {"..", "../a.png", "/etc/passwd"})
        EXPECT_EQ(messageOf(exportPath({folder, name}, "default.png")),
                  std::string(name) + ": this is not the name of a file");
    EXPECT_EQ(messageOf(save(Type::png, chart, {}, {home.path("none"), {}})),
              home.path("none/default.png") + ": no such folder");

    writeFile(home.path("precious.png"), "kept");
    fs::create_symlink(home.path("precious.png"), documents + "default.png");
    EXPECT_EQ(messageOf(save(Type::png, chart)), documents + "default.png: is a link to another file");
    EXPECT_EQ(readFile(home.path("precious.png")), "kept");

    fs::remove_all(home.path("Documents"));
    writeFile(home.path("Documents"), "in the way");
    writeFile(home.path("Pictures"), "in the way");
    for (const Type type : {Type::png, Type::svg})
        EXPECT_EQ(messageOf(save(type, chart)), home.path("Documents/Lamina") + ": no such folder");
    EXPECT_EQ(messageOf(save(Type::tiff, chart)), home.path("Pictures/Lamina") + ": no such folder");
    EXPECT_EQ(files(), (std::vector<std::string>{"Documents", "Pictures", "precious.png"}));
}

TEST_F(RasterExport, LeavesEverythingAsItWasWhenItStops)
{
    ASSERT_TRUE(save(Type::png, chart) && save(Type::svg, chart));
    const std::vector<std::string> before = files();
    const File png = fileAt(documents + "default.png");
    const UIImage noise(noisePicture(300, 300, CGImageAlphaInfo::NoneSkipLast));
    const std::atomic<bool> cancelled = true;
    for (const Type type : kRasterTypes) {
        EXPECT_EQ(messageOf(save(type, noise, {}, {}, {{}, &cancelled})), "cancelled");
        EXPECT_EQ(messageOf(save(type, {})), "there is no picture");
    }
    rlimit limit{};
    ::getrlimit(RLIMIT_FSIZE, &limit);
    const rlimit small{1 << 16, limit.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &small);
    for (const Type type : {Type::png, Type::svg, Type::tiff})
        EXPECT_NE(messageOf(save(type, noise)).find(": the file is too large for the device"), std::string::npos);
    ::setrlimit(RLIMIT_FSIZE, &limit);
    EXPECT_EQ(files(), before);
    EXPECT_EQ(fileAt(documents + "default.png"), png);
}

} // namespace
} // namespace lamina::test
