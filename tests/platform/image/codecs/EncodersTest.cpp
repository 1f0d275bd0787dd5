#include "CommandRunner.h"
#include "DrawingSupport.h"
#include "PillowReader.h"
#include "TestPaths.h"

#include "platform/base/WorkerPool.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/codecs/PictureEncoding.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>

namespace lamina::test {
namespace {

using File = Result<std::vector<std::uint8_t>>;
using Encoder = std::function<File(const CGImage&)>;

constexpr UIColor kBlue{0, 0, 1, 1};

Encoder encoder(std::string_view uti)
{
    return [uti](const CGImage& image) {
        return encodePicture(image, *pictureFormatForUTI(uti), "picture", {1, kBlue});
    };
}
const Encoder kBMP = encoder(kUTTypeBMP);
const Encoder kGIF = encoder(kUTTypeGIF);
const Encoder kJPEG = encoder(kUTTypeJPEG);
const Encoder kTIFF = encoder(kUTTypeTIFF);

/// The encoded picture as Pillow reads it.
PillowPicture read(const File& file)
{
    EXPECT_TRUE(file) << (file ? "" : file.error().cause);
    if (!file)
        return {};
    const TemporaryFolder folder;
    writeFile(folder.path("picture"), std::string(file->begin(), file->end()));
    return readWithPillow(folder.path("picture"));
}

CGImage flat(Pixel color, CGImageAlphaInfo alpha = CGImageAlphaInfo::Last)
{
    return fourBytePicture(16, 16, alpha, [&](int, int) { return color; });
}

/// The largest difference between the picture, R G B A in memory, and what was read. Alpha is taken as 255 where the
/// picture has none.
int largestDifference(const CGImage& wanted, const PillowPicture& got)
{
    EXPECT_EQ((IntSize{got.width, got.height}), wanted.size());
    int largest = 0;
    for (int y = 0; y < wanted.height(); ++y)
        for (int x = 0; x < wanted.width(); ++x)
            for (int c = 0; c < 4; ++c) {
                const int value = c < 3 || wanted.hasAlpha() ? wanted.row(y)[4 * x + c] : 255;
                largest = std::max(largest, std::abs(value - got.at(x, y, c)));
            }
    return largest;
}

TEST(Encoders, KeepEveryPixelWhereTheFormatCan)
{
    for (const IntSize size : {IntSize{1, 1}, IntSize{3, 17}, IntSize{64, 5}, IntSize{301, 403}}) {
        SCOPED_TRACE(testing::Message() << size.width << " x " << size.height);
        const CGImage opaque = noisePicture(size.width, size.height, CGImageAlphaInfo::NoneSkipLast);
        const CGImage translucent = noisePicture(size.width, size.height, CGImageAlphaInfo::Last, 2);
        const PillowPicture bmp = read(kBMP(opaque));
        EXPECT_EQ(bmp.format + bmp.mode, "BMPRGB");
        EXPECT_EQ(largestDifference(opaque, bmp), 0);
        const PillowPicture tiff = read(kTIFF(opaque));
        EXPECT_EQ(tiff.format + tiff.mode + tiff.profile, "TIFFRGBsRGB");
        EXPECT_EQ(largestDifference(opaque, tiff), 0);
        const PillowPicture clear = read(kTIFF(translucent));
        EXPECT_EQ(clear.mode, "RGBA");
        EXPECT_EQ(largestDifference(translucent, clear), 0);
    }
}

TEST(Encoders, KeepGrayPicturesGray)
{
    const CGImage ramp = bytePicture(40, 30, [](int x, int y) { return 6 * x + y / 3; });
    const PillowPicture tiff = read(kTIFF(ramp));
    const PillowPicture jpeg = read(kJPEG(ramp));
    EXPECT_EQ(tiff.mode + tiff.profile, "L-");
    EXPECT_EQ(jpeg.mode + jpeg.profile, "L-"); // a profile of RGB would be wrong beside one component
    for (int y = 0; y < 30; ++y)
        for (int x = 0; x < 40; ++x) {
            ASSERT_EQ(tiff.at(x, y, 1), 6 * x + y / 3);
            ASSERT_NEAR(jpeg.at(x, y, 1), 6 * x + y / 3, 1);
        }
    // A mask is an alpha beside the grey, and none where it hides nothing.
    const CGImage masked = ramp.withMask(bytePicture(40, 30, [](int x, int) { return x < 20 ? 255 : 0; }));
    const PillowPicture half = read(kTIFF(masked));
    EXPECT_EQ(half.mode, "LA");
    EXPECT_EQ(half.at(19, 9, 3), 0);
    EXPECT_EQ(half.at(20, 9, 1), 6 * 20 + 3);
    EXPECT_EQ(half.at(20, 9, 3), 255);
    EXPECT_EQ(read(kTIFF(ramp.withMask(bytePicture(40, 30, [](int, int) { return 0; })))).mode, "L");
}

// The look of a ramp, the resolution of colours, and the profile. In best quality each of the three steps (colours,
// transform, quantisation) rounds once.
TEST(Encoders, WriteJPEGInTheQualityWanted)
{
    const CGImage ramp = fourBytePicture(120, 90, CGImageAlphaInfo::NoneSkipLast, [](int x, int y) {
        return Pixel{static_cast<std::uint8_t>(2 * x), static_cast<std::uint8_t>(2 * y), 90, 17};
    });
    const auto encoded = [&](double quality) {
        return *encodePicture(ramp, *pictureFormatForUTI(kUTTypeJPEG), "picture", {quality, kBlue});
    };
    const PillowPicture best = read(encoded(1));
    EXPECT_EQ(best.format + best.mode + best.profile + best.sampling, "JPEGRGBsRGB1x1");
    EXPECT_LE(largestDifference(ramp, best), 3);
    const PillowPicture plain = read(encoded(0.8));
    EXPECT_EQ(plain.sampling, "2x2");
    EXPECT_LE(largestDifference(ramp, plain), 16);
    EXPECT_GT(encoded(1).size(), encoded(0.8).size());
    EXPECT_GT(encoded(0.8).size(), encoded(0.2).size());
    EXPECT_EQ(encoded(7), encoded(1));
    EXPECT_EQ(encoded(std::nan("")), encoded(1));
    EXPECT_EQ(encoded(-7), encoded(0));
}

// By hand: value · alpha + background · (1 - alpha), with alpha 128/255.
TEST(Encoders, LayTranslucentPixelsOnTheBackground)
{
    struct Case {
        UIColor background;
        Pixel wanted;
    };
    const double nan = std::nan("");
    const Case cases[] = {
        {{0, 0, 1, 1}, {100, 50, 127, 255}},   {{1, 1, 1, 1}, {227, 177, 127, 255}},
        {{0, 0, 0, 0}, {227, 177, 127, 255}},  // clear lies on white
        {{9, -4, nan, 1}, {227, 50, 0, 255}},  // as (1, 0, 0)
        {{0, 0, 0, 0.5}, {164, 114, 64, 255}}, // grey of 128: half black on white
    };
    const CGImage picture = flat({200, 100, 0, 128});
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << c.background.red << ' ' << c.background.green << ' ' << c.background.blue);
        const PillowPicture bmp =
            read(encodePicture(picture, *pictureFormatForUTI(kUTTypeBMP), "picture", {1, c.background}));
        const PillowPicture gif =
            read(encodePicture(picture, *pictureFormatForUTI(kUTTypeGIF), "picture", {1, c.background}));
        const PillowPicture jpeg =
            read(encodePicture(picture, *pictureFormatForUTI(kUTTypeJPEG), "picture", {1, c.background}));
        for (int channel = 0; channel < 4; ++channel) {
            const int wanted = c.wanted[static_cast<std::size_t>(channel)];
            EXPECT_NEAR(bmp.at(7, 7, channel), wanted, 1);
            EXPECT_NEAR(gif.at(7, 7, channel), wanted, 1);
            EXPECT_NEAR(jpeg.at(7, 7, channel), wanted, 2);
        }
    }
    const CGImage masked = flat({200, 100, 0, 255}).withMask(bytePicture(16, 16, [](int, int) { return 255; }));
    EXPECT_EQ(read(kBMP(masked)).at(7, 7, 2), 255) << "an image mask of the largest value hides";
}

TEST(Encoders, KeepFewColorsOfAGIFExactly)
{
    // 256 colours that share cells of any coarse histogram, in the order of a permutation
    const auto color = [](int i, int alpha) {
        return Pixel{static_cast<std::uint8_t>(i), static_cast<std::uint8_t>(i * 37), 90,
                     static_cast<std::uint8_t>(alpha)};
    };
    const CGImage all = fourBytePicture(32, 24, CGImageAlphaInfo::Last,
                                        [&](int x, int y) { return color((x + 32 * y) * 77 % 256, 255); });
    const PillowPicture opaque = read(kGIF(all));
    EXPECT_EQ(opaque.format, "GIF");
    EXPECT_EQ(largestDifference(all, opaque), 0);

    // One colour less, and its place clear. 127 is clear, 128 is not.
    const CGImage some = fourBytePicture(16, 16, CGImageAlphaInfo::Last, [&](int x, int y) {
        const int i = x + 16 * y;
        return i == 200 ? color(i, 127) : color(i, 255);
    });
    const PillowPicture clear = read(kGIF(some));
    for (int i = 0; i < 256; ++i) {
        ASSERT_EQ(clear.at(i % 16, i / 16, 3), i == 200 ? 0 : 255) << i;
        ASSERT_EQ(clear.at(i % 16, i / 16, 0), i == 200 ? 0 : i) << i;
    }
    EXPECT_EQ(read(kGIF(flat({9, 9, 9, 0}))).at(3, 3, 3), 0);
    EXPECT_EQ(read(kGIF(flat({9, 8, 7, 255}))).at(3, 3, 1), 8);
}

double meanSquare(const CGImage& wanted, const PillowPicture& got)
{
    double sum = 0;
    for (int y = 0; y < wanted.height(); ++y)
        for (int x = 0; x < wanted.width(); ++x)
            for (int c = 0; c < 3; ++c)
                sum += std::pow(wanted.row(y)[4 * x + c] - got.at(x, y, c), 2);
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
        const Result<UIImage> photo = loadPicture(samples(name + std::string(".jpg")), {.shortSide = 500});
        ASSERT_TRUE(photo);
        const CGImage& pixels = photo->cgImage();
        const TemporaryFolder folder;
        const auto png = encodePNG(pixels, "picture");
        writeFile(folder.path("photo.png"), std::string(png->begin(), png->end()));
        ASSERT_EQ(
            runCommand("/usr/bin/python3", {"-c", script, folder.path("photo.png"), folder.path("other.gif")}).exitCode,
            0);
        const double ours = meanSquare(pixels, read(kGIF(pixels)));
        const double other = meanSquare(pixels, readWithPillow(folder.path("other.gif")));
        EXPECT_LT(ours, other);
        EXPECT_GT(ours, 0);
    }
}

TEST(Encoders, RefuseWhatTheFormatCannotState)
{
    const auto line = [](int length) { return bytePicture(length, 1, [](int x, int) { return x % 256; }); };
    const auto causeOf = [](const File& file) { return file ? std::string() : file.error().cause; };
    EXPECT_EQ(causeOf(kJPEG(line(65501))), "a JPEG picture can't be longer than 65500 pixels");
    EXPECT_EQ(causeOf(kGIF(line(65536))), "a GIF picture can't be longer than 65535 pixels");
    EXPECT_EQ(read(kJPEG(line(65500))).width, 65500);
    EXPECT_EQ(read(kGIF(line(65535))).at(65534, 0, 1), 65534 % 256);
    EXPECT_EQ(read(kTIFF(line(300'000))).at(299'999, 0, 1), 299'999 % 256); // a row longer than a strip should be
    for (const Encoder& encoder : {kBMP, kGIF, kJPEG, kTIFF})
        EXPECT_EQ(causeOf(encoder(CGImage())), "there is no picture");

    // One bit a pixel here, 24 in the file: 2.4 GB.
    CGImageLayout layout = CGImageLayout::gray(32'768, 24'576);
    layout.bitsPerComponent = layout.bitsPerPixel = 1;
    layout.bytesPerRow = 32'768 / 8;
    const CGImage huge = CGImage::make(layout, PixelBuffer::allocate(layout.byteCount()));
    ASSERT_TRUE(huge);
    EXPECT_EQ(causeOf(kBMP(huge)), "a BMP picture can't be larger than 2 GB");
}

TEST(Encoders, GiveTheSameBytesWhateverTheCores)
{
    const CGImage noise = noisePicture(500, 333, CGImageAlphaInfo::Last);
    for (const Encoder& encoder : {kBMP, kGIF, kJPEG, kTIFF}) {
        const File first = encoder(noise);
        WorkerPool::shared().setConcurrency(1);
        const File second = encoder(noise);
        WorkerPool::shared().setConcurrency(0);
        ASSERT_TRUE(first && second);
        EXPECT_EQ(*first, *second);
    }
}

TEST(Encoders, StateSRGBInABMP)
{
    const File file = kBMP(flat({1, 2, 3, 255}));
    ASSERT_TRUE(file);
    // Behind a file header of 14 bytes the picture's own, of which byte 56 begins the kind of colours.
    EXPECT_EQ((*file)[14], 108);
    EXPECT_EQ(std::string(file->begin() + 14 + 56, file->begin() + 14 + 60), "BGRs");
}

} // namespace
} // namespace lamina::test
