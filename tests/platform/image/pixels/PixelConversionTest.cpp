#include "platform/image/pixels/PixelConversion.h"

#include "TestPictures.h"

namespace lamina::test {
namespace {

using Bytes = std::vector<std::uint8_t>;

struct Case {
    Bytes bytes; ///< of the one pixel
    CGColorSpace space;
    CGBitmapInfo info;
    int bitsPerComponent;
    int bitsPerPixel;
    Bytes straight;
    Bytes premultiplied; ///< empty: the same
};

std::vector<Case> cases()
{
    using A = CGImageAlphaInfo;
    const CGColorSpace rgb = CGColorSpace::deviceRGB();
    const CGColorSpace gray = CGColorSpace::deviceGray();
    const CGColorSpace cmyk = CGColorSpace::deviceCMYK();
    const CGBitmapInfo none = bitmapInfo(A::None);
    const CGBitmapInfo little = kCGBitmapByteOrder32Little;
    const CGBitmapInfo floats = bitmapInfo(A::None, little | kCGBitmapFloatComponents);
    const CGBitmapInfo little16 = bitmapInfo(A::None, kCGBitmapByteOrder16Little);
    const Bytes opaque{200, 100, 50, 255};
    return {
        {{200, 100, 50, 128}, rgb, bitmapInfo(A::Last), 8, 32, {200, 100, 50, 128}, {100, 50, 25, 128}},
        {{200, 100, 50, 7}, rgb, bitmapInfo(A::NoneSkipLast), 8, 32, opaque, {}},
        {{7, 200, 100, 50}, rgb, bitmapInfo(A::NoneSkipFirst), 8, 32, opaque, {}},
        {{128, 100, 50, 25}, rgb, bitmapInfo(A::PremultipliedFirst), 8, 32, {199, 100, 50, 128}, {100, 50, 25, 128}},
        {{50, 100, 200, 255}, rgb, bitmapInfo(A::First, little), 8, 32, opaque, {}},
        {{200, 100, 50}, rgb, none, 8, 24, opaque, {}},
        // 0x0081 is 0.502 / 255 and must round up, 0x0080 is 0.498 / 255 and must not.
        {{0x00, 0x81, 0x00, 0x80, 0xFF, 0xFF}, rgb, none, 16, 48, {1, 0, 255, 255}, {}},
        // 0x1234 / 257 = 18.1
        {{0x81, 0x00, 0x80, 0x00, 0x34, 0x12}, rgb, little16, 16, 48, {1, 0, 18, 255}, {}},
        // 16 / 31 = 131.6 / 255
        {{0b01111100, 0b00010000}, rgb, bitmapInfo(A::NoneSkipFirst), 5, 16, {255, 0, 132, 255}, {}},
        // 0.5, -1, 2
        {{0, 0, 0, 0x3F, 0, 0, 0x80, 0xBF, 0, 0, 0, 0x40}, rgb, floats, 32, 96, {128, 0, 255, 255}, {}},
        {{77}, gray, none, 8, 8, {77, 77, 77, 255}, {}},
        {{200, 128}, gray, bitmapInfo(A::Last), 8, 16, {200, 200, 200, 128}, {100, 100, 100, 128}},
        {{0xA0}, gray, none, 4, 4, {170, 170, 170, 255}, {}},
        {{77}, CGColorSpace::alphaOnly(), bitmapInfo(A::Only), 8, 8, {0, 0, 0, 77}, {}},
        // (1 - C)(1 - K) of 255: 204 · 0.5 = 102.4 with K = 127
        {{51, 0, 255, 127}, cmyk, none, 8, 32, {102, 128, 0, 255}, {}},
        {{51, 0, 255, 127, 128}, cmyk, bitmapInfo(A::Last), 8, 40, {102, 128, 0, 128}, {51, 64, 0, 128}},
    };
}

TEST(RowConverter, ReadsEveryLayout)
{
    for (const Case& c : cases()) {
        SCOPED_TRACE(testing::PrintToString(c.bytes) + " of " + std::to_string(c.bitsPerPixel) + " bits");
        const CGImageLayout layout = packedLayout({1, 1}, c.info, c.bitsPerComponent, c.bitsPerPixel, c.space);
        const CGImage image = pictureFromBytes(layout, c.bytes);
        Bytes rgba(4);
        RowConverter(image, AlphaForm::Straight).convert(0, 0, 1, rgba.data());
        EXPECT_EQ(rgba, c.straight);
        RowConverter(image, AlphaForm::Premultiplied).convert(0, 0, 1, rgba.data());
        EXPECT_EQ(rgba, c.premultiplied.empty() ? c.straight : c.premultiplied);
    }
}

// Twelve pixels of one bit: a stretch that begins inside a byte.
TEST(RowConverter, BeginsAnywhereInARow)
{
    const CGImageLayout layout =
        packedLayout({12, 1}, bitmapInfo(CGImageAlphaInfo::None), 1, 1, CGColorSpace::deviceGray());
    const CGImage bits = pictureFromBytes(layout, Bytes{0b00000110, 0b10000000});
    Bytes rgba(4 * 4);
    RowConverter(bits, AlphaForm::Straight).convert(5, 0, 4, rgba.data());
    EXPECT_EQ(rgba, (Bytes{255, 255, 255, 255, 255, 255, 255, 255, 0, 0, 0, 255, 255, 255, 255, 255}));
}

TEST(ConvertedToSRGB, AppliesTheMaskStretched)
{
    const CGImage picture = solidPicture(4, 1, {90, 90, 90, 90}, CGImageAlphaInfo::NoneSkipLast);
    const CGImage mask = bytePicture(2, 1, [](int x, int) { return 200 * x; }); // 0 shows
    const CGImage shown = convertedToSRGB(picture.withMask(mask));
    ASSERT_EQ(shown.alphaInfo(), CGImageAlphaInfo::Last);
    // Centres of the four columns lie at -0.25, 0.25, 0.75 and 1.25 of the mask's.
    EXPECT_EQ(componentGrid(shown, 3), (std::vector<std::vector<int>>{{255, 205, 105, 55}}));
}

TEST(CGImage, RefusesLayoutsThatCannotBe)
{
    using A = CGImageAlphaInfo;
    const auto accepts = [](const CGImageLayout& layout, std::size_t bytes = 64) {
        return static_cast<bool>(CGImage::make(layout, PixelBuffer::zeroed(bytes)));
    };
    const CGImageLayout sound = CGImageLayout::rgba(4, 4, A::Last);
    EXPECT_TRUE(accepts(sound));
    EXPECT_FALSE(accepts(sound, 63));
    EXPECT_FALSE(accepts(CGImageLayout::rgba(0, 4, A::Last)));
    EXPECT_FALSE(accepts(CGImageLayout::rgba(4, -1, A::Last)));
    CGImageLayout shortRows = sound;
    shortRows.bytesPerRow = 15;
    EXPECT_FALSE(accepts(shortRows));
    CGImageLayout crowded = sound;
    crowded.bitsPerPixel = 24;
    EXPECT_FALSE(accepts(crowded));
    EXPECT_FALSE(accepts(CGImageLayout::rgba(4, 4, A::Only))); // coverage has no colours
    const CGImage part = chartPicture(sound).subImage({1, 2, 9, 9});
    EXPECT_EQ(part.size(), (IntSize{3, 2}));
    EXPECT_EQ(pixelAt(part, 0, 0), pixelAt(chartPicture(sound), 1, 2));
    EXPECT_FALSE(part.subImage({3, 0, 1, 1}));
}

} // namespace
} // namespace lamina::test
