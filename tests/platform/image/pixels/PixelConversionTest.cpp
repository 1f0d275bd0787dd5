#include "../codecs/DecodedPictures.h"

#include "platform/image/pixels/PixelConversion.h"

#include <gtest/gtest.h>

namespace lamina::test {
namespace {

CGImage onePixel(const Bytes& bytes, int bitsPerComponent, int bitsPerPixel, const CGColorSpace& space,
                 CGBitmapInfo info)
{
    CGImageLayout layout;
    layout.width = layout.height = 1;
    layout.bytesPerRow = bytes.size();
    layout.bitsPerComponent = bitsPerComponent;
    layout.bitsPerPixel = bitsPerPixel;
    layout.bitmapInfo = info;
    layout.colorSpace = space;
    PixelBuffer buffer = PixelBuffer::allocate(bytes.size());
    std::copy(bytes.begin(), bytes.end(), buffer.data());
    return CGImage::make(layout, std::move(buffer));
}

struct Case {
    const char* name;
    CGImage image;
    Bytes straight;
    Bytes premultiplied;
};

std::vector<Case> cases()
{
    using A = CGImageAlphaInfo;
    const CGColorSpace rgb = CGColorSpace::deviceRGB();
    const CGColorSpace gray = CGColorSpace::deviceGray();
    const CGColorSpace cmyk = CGColorSpace::deviceCMYK();
    const CGBitmapInfo little = kCGBitmapByteOrder32Little;
    const CGBitmapInfo floats = kCGBitmapFloatComponents;
    return {
        {"RGBA",
         onePixel({200, 100, 50, 128}, 8, 32, rgb, bitmapInfo(A::Last)),
         {200, 100, 50, 128},
         {100, 50, 25, 128}},
        {"RGBX",
         onePixel({200, 100, 50, 7}, 8, 32, rgb, bitmapInfo(A::NoneSkipLast)),
         {200, 100, 50, 255},
         {200, 100, 50, 255}},
        {"XRGB",
         onePixel({7, 200, 100, 50}, 8, 32, rgb, bitmapInfo(A::NoneSkipFirst)),
         {200, 100, 50, 255},
         {200, 100, 50, 255}},
        {"ARGB premultiplied",
         onePixel({128, 100, 50, 25}, 8, 32, rgb, bitmapInfo(A::PremultipliedFirst)),
         {199, 100, 50, 128},
         {100, 50, 25, 128}},
        {"BGRA",
         onePixel({50, 100, 200, 255}, 8, 32, rgb, bitmapInfo(A::First, little)),
         {200, 100, 50, 255},
         {200, 100, 50, 255}},
        {"RGB", onePixel({200, 100, 50}, 8, 24, rgb, bitmapInfo(A::None)), {200, 100, 50, 255}, {200, 100, 50, 255}},
        {"clear", onePixel({0, 0, 0, 0}, 8, 32, rgb, bitmapInfo(A::PremultipliedLast)), {0, 0, 0, 0}, {0, 0, 0, 0}},
        // 0x0081 is 0.502 / 255 and must round up, 0x0080 is 0.498 / 255 and must not.
        {"RGB of 16 bits",
         onePixel({0x00, 0x81, 0x00, 0x80, 0xFF, 0xFF}, 16, 48, rgb, bitmapInfo(A::None)),
         {1, 0, 255, 255},
         {1, 0, 255, 255}},
        {"RGB of 16 bits, little",
         onePixel({0x81, 0x00, 0x80, 0x00, 0x34, 0x12}, 16, 48, rgb, bitmapInfo(A::None, kCGBitmapByteOrder16Little)),
         {1, 0, 18, 255},
         {1, 0, 18, 255}}, // 0x1234 / 257 = 18.1
        {"RGB of 5 bits behind a spare one",
         onePixel({0b01111100, 0b00010000}, 5, 16, rgb, bitmapInfo(A::NoneSkipFirst)),
         {255, 0, 132, 255},
         {255, 0, 132, 255}}, // 16 / 31 = 131.6 / 255
        {"floats",
         onePixel({0, 0, 0, 0x3F, 0, 0, 0x80, 0xBF, 0, 0, 0, 0x40}, 32, 96, rgb, bitmapInfo(A::None, little | floats)),
         {128, 0, 255, 255},
         {128, 0, 255, 255}}, // 0.5, -1, 2
        {"grey", onePixel({77}, 8, 8, gray, bitmapInfo(A::None)), {77, 77, 77, 255}, {77, 77, 77, 255}},
        {"grey and alpha",
         onePixel({200, 128}, 8, 16, gray, bitmapInfo(A::Last)),
         {200, 200, 200, 128},
         {100, 100, 100, 128}},
        {"grey of 4 bits",
         onePixel({0xA0}, 4, 4, gray, bitmapInfo(A::None)),
         {170, 170, 170, 255},
         {170, 170, 170, 255}},
        {"alpha only",
         onePixel({77}, 8, 8, CGColorSpace::alphaOnly(), bitmapInfo(A::Only)),
         {0, 0, 0, 77},
         {0, 0, 0, 77}},
        // (1 - C)(1 - K) of 255: 204 · 0.5 = 102.4 with K = 127
        {"CMYK", onePixel({51, 0, 255, 127}, 8, 32, cmyk, bitmapInfo(A::None)), {102, 128, 0, 255}, {102, 128, 0, 255}},
        {"CMYK and alpha",
         onePixel({51, 0, 255, 127, 128}, 8, 40, cmyk, bitmapInfo(A::Last)),
         {102, 128, 0, 128},
         {51, 64, 0, 128}},
    };
}

TEST(RowConverter, ReadsEveryLayout)
{
    for (const Case& one : cases()) {
        SCOPED_TRACE(one.name);
        ASSERT_TRUE(one.image);
        Bytes rgba(4);
        RowConverter(one.image, AlphaForm::Straight).convert(0, 0, 1, rgba.data());
        EXPECT_EQ(rgba, one.straight);
        RowConverter(one.image, AlphaForm::Premultiplied).convert(0, 0, 1, rgba.data());
        EXPECT_EQ(rgba, one.premultiplied);
    }
}

// Twelve pixels of one bit: a stretch that begins inside a byte.
TEST(RowConverter, BeginsAnywhereInARow)
{
    CGImageLayout layout = CGImageLayout::gray(12, 1);
    layout.bitsPerComponent = layout.bitsPerPixel = 1;
    layout.bytesPerRow = 2;
    PixelBuffer buffer = PixelBuffer::allocate(2);
    buffer.data()[0] = 0b00000110;
    buffer.data()[1] = 0b10000000;
    Bytes rgba(4 * 4);
    RowConverter(CGImage::make(layout, std::move(buffer)), AlphaForm::Straight).convert(5, 0, 4, rgba.data());
    EXPECT_EQ(rgba, (Bytes{255, 255, 255, 255, 255, 255, 255, 255, 0, 0, 0, 255, 255, 255, 255, 255}));
}

TEST(ConvertedToSRGB, AppliesTheMaskStretched)
{
    PixelBuffer pixels = PixelBuffer::allocate(4 * 4);
    std::fill_n(pixels.data(), 16, std::uint8_t{90});
    const CGImage picture = CGImage::make(CGImageLayout::rgba(4, 1, CGImageAlphaInfo::NoneSkipLast), std::move(pixels));
    PixelBuffer values = PixelBuffer::allocate(2);
    values.data()[0] = 0; // shows
    values.data()[1] = 200;
    const CGImage mask = CGImage::make(CGImageLayout::gray(2, 1), std::move(values));
    const CGImage shown = convertedToSRGB(picture.withMask(mask));
    ASSERT_EQ(shown.alphaInfo(), CGImageAlphaInfo::Last);
    // Centres of the four columns lie at -0.25, 0.25, 0.75 and 1.25 of the mask's.
    const int expected[] = {255, 205, 105, 55};
    for (int x = 0; x < 4; ++x) {
        EXPECT_EQ(pixelAt(shown, x, 0), (Pixel{90, 90, 90, expected[x]})) << x;
    }
}

} // namespace
} // namespace lamina::test
