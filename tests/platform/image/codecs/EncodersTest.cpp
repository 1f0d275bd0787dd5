#include "CommandRunner.h"
#include "PillowReader.h"
#include "TestPaths.h"
#include "TestPictures.h"

#include "platform/base/WorkerPool.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/codecs/PictureEncoding.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace lamina::test {
namespace {

using File = std::vector<std::uint8_t>;

Result<File> encoded(std::string_view uti, const CGImage& picture, const EncodeOptions& options = {})
{
    return encodePicture(picture, *pictureFormatForUTI(uti), "picture", options);
}

/// A picture as RGBA with straight alpha; 255 where it has none.
CGImage asRead(const CGImage& picture)
{
    return makePicture(
        picture.width(), picture.height(),
        [&](int x, int y) {
            Rgba pixel = pixelAt(picture, x, y);
            pixel[3] = picture.hasAlpha() ? pixel[3] : 255;
            return pixel;
        },
        true);
}

/// A file that is written, and what another program is to make of it.
struct Case {
    std::string_view uti;
    CGImage picture;
    std::string kind;
    CGImage wanted;
    int tolerance = 0;
    EncodeOptions options = {};
};

void check(const std::vector<Case>& cases)
{
    std::vector<File> files;
    for (const Case& c : cases)
        files.push_back(*encoded(c.uti, c.picture, c.options));
    const std::vector<PillowPicture> pictures = readWithPillow(files);
    for (std::size_t i = 0; i < cases.size(); ++i) {
        SCOPED_TRACE(testing::Message() << "case " << i << ", " << cases[i].uti);
        EXPECT_EQ(pictures[i].kind, cases[i].kind);
        EXPECT_TRUE(imagesMatch(pictures[i].pixels, cases[i].wanted, cases[i].tolerance));
    }
}

// Sizes around those that the filters' loops take at once.
TEST(Encoders, KeepEveryPixelWhereTheFormatCan)
{
    std::vector<Case> cases;
    for (const IntSize size : {IntSize{1, 1}, IntSize{3, 17}, IntSize{64, 5}, IntSize{301, 260}}) {
        const CGImage opaque = noisePicture(size.width, size.height, CGImageAlphaInfo::NoneSkipLast);
        const CGImage translucent = noisePicture(size.width, size.height, CGImageAlphaInfo::Last, 2);
        cases.push_back({kUTTypePNG, opaque, "PNG RGB sRGB", asRead(opaque)});
        cases.push_back({kUTTypeTIFF, opaque, "TIFF RGB sRGB", asRead(opaque)});
        cases.push_back({kUTTypeBMP, opaque, "BMP RGB -", asRead(opaque)});
        cases.push_back({kUTTypePNG, translucent, "PNG RGBA sRGB", translucent});
        cases.push_back({kUTTypeTIFF, translucent, "TIFF RGBA sRGB", translucent});
    }
    // Contents that lead to each of the filters of a PNG.
    using Value = int (*)(int, int);
    for (const Value value : {Value([](int, int) { return 200; }), Value([](int x, int y) { return x * 3 + y * 5; }),
                              Value([](int x, int y) { return (x / 5 + y / 3) % 2 * 255; }),
                              Value([](int x, int y) { return (x * x + y * y) / 8; })}) {
        const CGImage picture = makePicture(300, 200, [&](int x, int y) {
            const auto level = static_cast<std::uint8_t>(value(x, y));
            return Rgba{level, static_cast<std::uint8_t>(level + x), 9, 255};
        });
        cases.push_back({kUTTypePNG, picture, "PNG RGB sRGB", asRead(picture)});
    }
    check(cases);
}

TEST(Encoders, StoreNoMoreThanThePictureHas)
{
    const auto level = [](int x, int y) { return 6 * x + y / 3; };
    const CGImage gray = bytePicture(40, 30, level);
    const auto asGray = [&](int from) {
        return makePicture(
            40, 30,
            [&](int x, int y) {
                const auto value = static_cast<std::uint8_t>(level(x, y));
                return Rgba{value, value, value, static_cast<std::uint8_t>(x < from ? 0 : 255)};
            },
            true);
    };
    // A mask is an alpha beside the grey, and none where it hides nothing.
    const CGImage half = gray.withMask(bytePicture(40, 30, [](int x, int) { return x < 20 ? 255 : 0; }));
    const CGImage all = gray.withMask(bytePicture(40, 30, [](int, int) { return 0; }));
    const CGImage opaque = solidPicture(5, 5, {1, 2, 3, 255});
    const CGImage premultiplied = solidPicture(5, 5, {100, 100, 100, 128}, CGImageAlphaInfo::PremultipliedLast);
    check({{kUTTypePNG, gray, "PNG L -", asGray(0)},
           {kUTTypeTIFF, gray, "TIFF L -", asGray(0)},
           {kUTTypeJPEG, gray, "JPEG L - 1x1", asGray(0), 1}, // a profile of RGB would be wrong beside one component
           {kUTTypePNG, half, "PNG LA -", asGray(20)},
           {kUTTypeTIFF, half, "TIFF LA -", asGray(20)},
           {kUTTypeTIFF, all, "TIFF L -", asGray(0)},
           {kUTTypePNG, opaque, "PNG RGB sRGB", opaque},
           {kUTTypePNG, premultiplied, "PNG RGBA sRGB", solidPicture(5, 5, {199, 199, 199, 128})}});
}

// In best quality each of the three steps (colours, transform, quantisation) rounds once.
TEST(Encoders, WriteJPEGInTheQualityWanted)
{
    const CGImage ramp = rampPicture(120, 90, 90);
    const auto size = [&](double quality) { return encoded(kUTTypeJPEG, ramp, {.quality = quality})->size(); };
    check({{kUTTypeJPEG, ramp, "JPEG RGB sRGB 1x1", asRead(ramp), 3, {.quality = 1}},
           {kUTTypeJPEG, ramp, "JPEG RGB sRGB 2x2", asRead(ramp), 16, {.quality = 0.8}}});
    EXPECT_GT(size(1), size(0.8));
    EXPECT_GT(size(0.8), size(0.2));
    EXPECT_EQ(size(7), size(1));
    EXPECT_EQ(size(std::nan("")), size(1));
    EXPECT_EQ(size(-7), size(0));
}

// By hand: value · alpha + background · (1 - alpha), with alpha 128/255.
TEST(Encoders, CompositeTranslucentPixelsOverTheBackground)
{
    const double nan = std::nan("");
    const CGImage picture = solidPicture(16, 16, {200, 100, 0, 128});
    std::vector<Case> cases;
    for (const auto& [background, wanted] :
         {std::pair{UIColor{0, 0, 1, 1}, Rgba{100, 50, 127, 255}},
          {UIColor{0, 0, 0, 0}, Rgba{227, 177, 127, 255}},  // clear lies on white
          {UIColor{9, -4, nan, 1}, Rgba{227, 50, 0, 255}},  // as (1, 0, 0)
          {UIColor{0, 0, 0, 0.5}, Rgba{164, 114, 64, 255}}, // grey of 128: half black on white
          {EncodeOptions().background, Rgba{227, 177, 127, 255}}}) {
        const EncodeOptions options{.background = background};
        cases.push_back({kUTTypeBMP, picture, "BMP RGB -", solidPicture(16, 16, wanted), 1, options});
        cases.push_back({kUTTypeGIF, picture, "GIF P -", solidPicture(16, 16, wanted), 1, options});
        cases.push_back({kUTTypeJPEG, picture, "JPEG RGB sRGB 1x1", solidPicture(16, 16, wanted), 2, options});
    }
    check(cases);
}

TEST(Encoders, KeepFewColorsOfAGIFExactly)
{
    // 256 colours that share cells of any coarse histogram, in the order of a permutation
    const auto color = [](int i, int alpha) {
        return Rgba{static_cast<std::uint8_t>(i), static_cast<std::uint8_t>(i * 37), 90,
                    static_cast<std::uint8_t>(alpha)};
    };
    const CGImage all = makePicture(
        32, 24, [&](int x, int y) { return color((x + 32 * y) * 77 % 256, 255); }, true);
    // One colour less, and its place clear. 127 is clear, 128 is not.
    const auto but200 = [&](int alpha) {
        return [=](int x, int y) { return x + 16 * y == 200 ? color(200, alpha) : color(x + 16 * y, 255); };
    };
    const auto clear = [&](int x, int y) { return x + 16 * y == 200 ? Rgba{} : color(x + 16 * y, 255); };
    const CGImage empty = solidPicture(16, 16, {9, 9, 9, 0});
    const CGImage black = solidPicture(16, 16, {0, 0, 0, 0});
    check({{kUTTypeGIF, all, "GIF P -", all},
           {kUTTypeGIF, makePicture(16, 16, but200(127), true), "GIF P -", makePicture(16, 16, clear, true)},
           {kUTTypeGIF, empty, "GIF P -", black}});
}

double meanSquare(const CGImage& wanted, const CGImage& got)
{
    double sum = 0;
    for (int y = 0; y < wanted.height(); ++y)
        for (int x = 0; x < wanted.width(); ++x)
            for (int c = 0; c < 3; ++c)
                sum += std::pow(wanted.row(y)[4 * x + c] - got.row(y)[4 * x + c], 2);
    return sum / (3.0 * wanted.width() * wanted.height());
}

// Not worse than the palette that another program finds for the same photo.
TEST(Encoders, ChooseAGoodPalette)
{
    static const char* const script = R"(
import sys
from PIL import Image
im = Image.open(sys.argv[1]).convert('RGB')
im.quantize(256, method=Image.Quantize.MEDIANCUT, dither=Image.Dither.NONE).save(sys.argv[2])
)";
    for (const char* name : {"city-rain", "meadow", "sea-sunset"}) {
        SCOPED_TRACE(name);
        const TemporaryFolder folder;
        const Result<UIImage> photo = loadPicture(samples(name + std::string(".jpg")), {.shortSide = 500});
        ASSERT_TRUE(photo);
        writePng(folder.path("photo.png"), photo->cgImage());
        runCommand("/usr/bin/python3", {"-c", script, folder.path("photo.png"), folder.path("other.gif")});
        const double ours =
            meanSquare(photo->cgImage(), readWithPillow({*encoded(kUTTypeGIF, photo->cgImage())})[0].pixels);
        EXPECT_LT(ours, meanSquare(photo->cgImage(), readPictureFile(folder.path("other.gif"))));
        EXPECT_GT(ours, 0);
    }
}

TEST(Encoders, RefuseWhatTheFormatCannotState)
{
    const auto line = [](int length) {
        return makePicture(length, 1, [](int x, int) { return Rgba{static_cast<std::uint8_t>(x % 251), 99, 7, 255}; });
    };
    check(
        {{kUTTypeGIF, line(65535), "GIF P -", asRead(line(65535))},
         {kUTTypeJPEG, line(65500), "JPEG RGB sRGB 1x1", asRead(line(65500)), 9},
         {kUTTypeTIFF, line(100'000), "TIFF RGB sRGB", asRead(line(100'000))}}); // a row longer than a strip should be

    // One bit a pixel here, 24 in the file: 2.4 GB.
    const CGImageLayout layout =
        packedLayout({32'768, 24'576}, bitmapInfo(CGImageAlphaInfo::None), 1, 1, CGColorSpace::deviceGray());
    const CGImage huge = CGImage::make(layout, PixelBuffer::allocate(layout.byteCount()));
    const auto causeOf = [](const Result<File>& file) { return file ? std::string() : file.error().cause; };
    EXPECT_EQ(causeOf(encoded(kUTTypeJPEG, line(65501))), "a JPEG picture can't be longer than 65500 pixels");
    EXPECT_EQ(causeOf(encoded(kUTTypeGIF, line(65536))), "a GIF picture can't be longer than 65535 pixels");
    EXPECT_EQ(causeOf(encoded(kUTTypeBMP, huge)), "a BMP picture can't be larger than 2 GB");
    EXPECT_EQ(causeOf(encoded(kUTTypeTIFF, CGImage())), "there is no picture");
    EXPECT_EQ(encodePNG(CGImage(), "out.png").error().subject, "out.png");
}

TEST(Encoders, GiveTheSameBytesWhateverTheCores)
{
    const CGImage noise = noisePicture(500, 333, CGImageAlphaInfo::Last);
    for (const PictureFormat& format : pictureFormats()) {
        if (!format.encoder)
            continue;
        const File first = *encodePicture(noise, format, "picture");
        WorkerPool::shared().setConcurrency(1);
        const File second = *encodePicture(noise, format, "picture");
        WorkerPool::shared().setConcurrency(0);
        EXPECT_EQ(first, second) << format.name;
    }
}

TEST(Encoders, StateSRGBInABMP)
{
    const File file = *encoded(kUTTypeBMP, solidPicture(1, 1, {1, 2, 3, 255}));
    // Behind a file header of 14 bytes the picture's own, of which byte 56 begins the kind of colours.
    EXPECT_EQ(file[14], 108);
    EXPECT_EQ(std::string(file.begin() + 14 + 56, file.begin() + 14 + 60), "BGRs");
}

} // namespace
} // namespace lamina::test
