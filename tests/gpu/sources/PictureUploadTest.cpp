#include "GraphFixture.h"
#include "gpu/sources/GPUImagePicture.h"

#include <cstring>

namespace lamina::test {
namespace {

using Bytes = std::vector<std::uint8_t>;

/// One row of pixels with these bytes in memory.
CGImage rowOf(const CGImageLayout& layout, const Bytes& bytes)
{
    PixelBuffer buffer = PixelBuffer::zeroed(std::max(bytes.size(), layout.byteCount()));
    std::copy(bytes.begin(), bytes.end(), buffer.data());
    CGImage image = CGImage::make(layout, std::move(buffer));
    EXPECT_TRUE(image);
    return image;
}

CGImageLayout layoutOf(int width, CGBitmapInfo info, int bitsPerComponent = 8, int bitsPerPixel = 32,
                       CGColorSpace space = CGColorSpace::deviceRGB())
{
    return {
        width,           1, static_cast<std::size_t>(width * bitsPerPixel / 8), bitsPerComponent, bitsPerPixel, info,
        std::move(space)};
}

/// What a filter sees of the picture, pixel by pixel of the first row.
std::vector<Rgba> seenByFilters(const CGImage& image, PictureUpload upload = {})
{
    const auto picture = std::make_shared<GPUImagePicture>(image, upload);
    const auto filter = std::make_shared<GPUImageFilter>();
    filter->useNextFrameForImageCapture();
    picture->addTarget(filter);
    picture->processImage();
    const CGImage seen = filter->newCGImageFromCurrentlyProcessedOutput();
    std::vector<Rgba> pixels;
    for (int x = 0; seen && x < seen.width(); ++x)
        pixels.push_back(pixelAt(seen, x, 0));
    return pixels;
}

class PictureUploadTest : public GraphFixture {};

TEST_F(PictureUploadTest, EachLayoutOfFourBytesGoesUpAsItsOrderTells)
{
    using Alpha = CGImageAlphaInfo;
    // Valid as premultiplied too, wherever alpha stands: 128 and 255 are never less than a colour.
    const Bytes alphaLast{10, 20, 30, 128, 60, 50, 40, 255};
    const Bytes alphaFirst{128, 10, 20, 30, 255, 60, 50, 40};
    const std::vector<Rgba> asRgba{{10, 20, 30, 128}, {60, 50, 40, 255}};
    const std::vector<Rgba> asBgra{{30, 20, 10, 128}, {40, 50, 60, 255}};
    const std::vector<Rgba> firstAsBgra{{20, 10, 128, 30}, {50, 60, 255, 40}};
    const std::vector<Rgba> multiplied{{5, 10, 15, 128}, {60, 50, 40, 255}};
    const std::vector<Rgba> opaque{{10, 20, 30, 255}, {60, 50, 40, 255}};
    const std::vector<Rgba> opaqueBgr{{30, 20, 10, 255}, {40, 50, 60, 255}};
    struct Case {
        const char* name;
        CGBitmapInfo info;
        Bytes bytes;
        std::vector<Rgba> seen;
    };
    const std::vector<Case> cases{
        {"BGRA premultiplied", bitmapInfo(Alpha::PremultipliedFirst, kCGBitmapByteOrder32Little), alphaLast, asBgra},
        {"BGRA", bitmapInfo(Alpha::First, kCGBitmapByteOrder32Little), alphaLast, asBgra},
        {"BGRX", bitmapInfo(Alpha::NoneSkipFirst, kCGBitmapByteOrder32Little), alphaLast, asBgra},
        {"RGBA premultiplied", bitmapInfo(Alpha::PremultipliedLast), alphaLast, asRgba},
        {"RGBA", bitmapInfo(Alpha::Last), alphaLast, asRgba},
        {"RGBX", bitmapInfo(Alpha::NoneSkipLast), alphaLast, asRgba},
        {"RGBA big", bitmapInfo(Alpha::Last, kCGBitmapByteOrder32Big), alphaLast, asRgba},
        {"RGBX big", bitmapInfo(Alpha::NoneSkipLast, kCGBitmapByteOrder32Big), alphaLast, asRgba},
        // An order of another width is taken for BGRA.
        {"16-bit order", bitmapInfo(Alpha::First, kCGBitmapByteOrder16Little), alphaFirst, firstAsBgra},
        // Drawn anew, which premultiplies.
        {"ARGB", bitmapInfo(Alpha::First), alphaFirst, multiplied},
        {"ARGB premultiplied", bitmapInfo(Alpha::PremultipliedFirst), alphaFirst, asRgba},
        {"XRGB", bitmapInfo(Alpha::NoneSkipFirst, kCGBitmapByteOrder32Big), alphaFirst, opaque},
        {"ABGR", bitmapInfo(Alpha::Last, kCGBitmapByteOrder32Little), {128, 30, 20, 10, 255, 40, 50, 60}, multiplied},
        {"XBGR", bitmapInfo(Alpha::NoneSkipLast, kCGBitmapByteOrder32Little), alphaFirst, opaqueBgr},
    };
    for (const auto& [name, info, bytes, seen] : cases)
        EXPECT_EQ(seenByFilters(rowOf(layoutOf(2, info), bytes)), seen) << name;
}

TEST_F(PictureUploadTest, OtherDepthsAndSpacesAreDrawnAnew)
{
    using Alpha = CGImageAlphaInfo;
    EXPECT_EQ(seenByFilters(rowOf(layoutOf(2, bitmapInfo(Alpha::None), 8, 8, CGColorSpace::deviceGray()), {7, 200})),
              (std::vector<Rgba>{{7, 7, 7, 255}, {200, 200, 200, 255}}));
    EXPECT_EQ(seenByFilters(rowOf(layoutOf(1, bitmapInfo(Alpha::None), 8, 24), {1, 2, 3})),
              (std::vector<Rgba>{{1, 2, 3, 255}}));
    // R = (1 - C)(1 - K): 255 * 0.8 * 0.4, 255 * 1 * 0.4, 255 * 0.6 * 0.4.
    EXPECT_EQ(seenByFilters(
                  rowOf(layoutOf(1, bitmapInfo(Alpha::None), 8, 32, CGColorSpace::deviceCMYK()), {51, 0, 102, 153})),
              (std::vector<Rgba>{{82, 102, 61, 255}}));
    // 16 bits, most significant byte first: 0x8080 is 128 / 255.
    EXPECT_EQ(seenByFilters(
                  rowOf(layoutOf(1, bitmapInfo(Alpha::NoneSkipLast), 16, 64), {0x80, 0x80, 0xFF, 0xFF, 0, 0, 0, 0})),
              (std::vector<Rgba>{{128, 255, 0, 255}}));

    const float values[] = {0.2F, 1, 0.6F, 1};
    Bytes floats(sizeof(values));
    std::memcpy(floats.data(), values, sizeof(values));
    EXPECT_EQ(seenByFilters(rowOf(
                  layoutOf(1, bitmapInfo(Alpha::NoneSkipLast) | kCGBitmapFloatComponents | kCGBitmapByteOrder32Little,
                           32, 128),
                  floats)),
              (std::vector<Rgba>{{51, 255, 153, 255}}));
}

TEST_F(PictureUploadTest, PaddedRowsAndCutOutsKeepTheirPixels)
{
    const CGImage whole = rampPicture(9, 7, 90); // opaque, so that drawing it anew changes nothing
    const CGImage cut = whole.subImage({2, 3, 5, 3});
    ASSERT_GT(cut.bytesPerRow(), std::size_t{5} * 4);
    const auto copy = std::make_shared<GPUImageFilter>();
    EXPECT_TRUE(samePixels(copy->newCGImageByFilteringCGImage(cut), rearranged(whole, {5, 3}, [](int x, int y) {
                               return IntSize{x + 2, y + 3};
                           })));
    // Rows that lie four bytes apart.
    CGImageLayout layout = CGImageLayout::rgba(1, 2, CGImageAlphaInfo::NoneSkipLast);
    layout.bytesPerRow = 8;
    EXPECT_TRUE(samePixels(
        copy->newCGImageByFilteringCGImage(rowOf(layout, {1, 2, 3, 255, 99, 99, 99, 99, 4, 5, 6, 255, 9, 9, 9, 9})),
        makePicture(1, 2, [](int, int y) {
            return y == 0 ? Rgba{1, 2, 3, 255} : Rgba{4, 5, 6, 255};
        })));
}

TEST_F(PictureUploadTest, UnpremultipliesByTruncationAndLetsOverflowRun)
{
    const CGImageLayout layout = layoutOf(7, bitmapInfo(CGImageAlphaInfo::PremultipliedLast));
    const CGImage row = rowOf(layout, {
                                          64,  1,   128, 128, // 127.5, 1.99, 255
                                          9,   8,   7,   255, // as they are
                                          0,   0,   0,   0,   // clear stays clear
                                          200, 0,   0,   100, // 510 = 0x1FE: the ninth bit falls off the top
                                          0,   200, 0,   100, // ... and here into the red
                                          0,   0,   200, 100, // ... and here into the green
                                          0,   5,   0,   0,   // colour over nothing: all ones, from its place upwards
                                      });
    const PictureUpload removing{.removePremultiplication = true};
    EXPECT_EQ(seenByFilters(row, removing), (std::vector<Rgba>{{127, 1, 255, 128},
                                                               {9, 8, 7, 255},
                                                               {0, 0, 0, 0},
                                                               {0xFE, 0, 0, 100},
                                                               {1, 0xFE, 0, 100},
                                                               {0, 1, 0xFE, 100},
                                                               {255, 255, 0, 0}}));
    // Straight and skipped alpha are left alone.
    CGImageLayout straight = layout;
    straight.bitmapInfo = bitmapInfo(CGImageAlphaInfo::Last);
    EXPECT_EQ(seenByFilters(rowOf(straight, {64, 1, 128, 128}), removing)[0], (Rgba{64, 1, 128, 128}));
    // So is premultiplied BGRA, which goes up as if it were straight; what is drawn anew is divided.
    const CGImageLayout bgra =
        layoutOf(1, bitmapInfo(CGImageAlphaInfo::PremultipliedFirst, kCGBitmapByteOrder32Little));
    EXPECT_EQ(seenByFilters(rowOf(bgra, {64, 1, 128, 128}), removing)[0], (Rgba{128, 1, 64, 128}));
    const CGImageLayout argb = layoutOf(1, bitmapInfo(CGImageAlphaInfo::PremultipliedFirst));
    EXPECT_EQ(seenByFilters(rowOf(argb, {128, 64, 1, 128}), removing)[0], (Rgba{127, 1, 255, 128}));
}

TEST_F(PictureUploadTest, SmoothScalingStretchesToPowersOfTwo)
{
    const auto picture = std::make_shared<GPUImagePicture>(plainPicture(100, 100, {10, 200, 30, 255}),
                                                           PictureUpload{.smoothlyScaleOutput = true});
    EXPECT_TRUE(picture->shouldSmoothlyScaleOutput());
    EXPECT_EQ(picture->outputImageSize(), (CGSize{100, 100}));
    const auto filter = std::make_shared<GPUImageFilter>();
    const auto consumer = consumerOf(*picture);
    picture->addTarget(filter);
    filter->useNextFrameForImageCapture();
    picture->processImage();
    EXPECT_TRUE(
        samePixels(filter->newCGImageFromCurrentlyProcessedOutput(), plainPicture(100, 100, {10, 200, 30, 255})));
    EXPECT_EQ(consumer->last().size, (CGSize{100, 100}));
    EXPECT_EQ(consumer->last().framebuffer.lock()->size(), (CGSize{128, 128}));

    // Much smaller, a checkerboard of single pixels becomes even; without mipmaps single pixels would be picked.
    const CGImage checkers = makePicture(64, 64, [](int x, int y) {
        const auto value = static_cast<std::uint8_t>((x + y) % 2 * 255);
        return Rgba{value, value, value, 255};
    });
    const auto board = std::make_shared<GPUImagePicture>(checkers, PictureUpload{.smoothlyScaleOutput = true});
    const auto small = std::make_shared<GPUImageFilter>();
    small->forceProcessingAtSize({5, 5});
    small->useNextFrameForImageCapture();
    board->addTarget(small);
    board->processImage();
    EXPECT_TRUE(
        samePixels(small->newCGImageFromCurrentlyProcessedOutput(), plainPicture(5, 5, {128, 128, 128, 255}), 2));
}

TEST_F(PictureUploadTest, PicturesOverTheTextureLimitAreReduced)
{
    struct Case {
        IntSize picture;
        CGSize told;
        IntSize texture;
    };
    GPUImageContext::limitTextureSize(64);
    for (const auto& [size, told, texture] : {
             Case{{100, 50}, {64, 32}, {64, 32}}, Case{{50, 100}, {32, 64}, {32, 64}},
             Case{{64, 20}, {64, 20}, {64, 20}}, Case{{100, 33}, {64, 33 * (64.0 / 100)}, {64, 21}},
             Case{{1000, 1}, {64, 1}, {64, 1}}, // never less than a pixel
         }) {
        const CGImage image = plainPicture(size.width, size.height, {10, 200, 30, 255});
        const auto picture = std::make_shared<GPUImagePicture>(image);
        EXPECT_DOUBLE_EQ(picture->outputImageSize().width, told.width);
        EXPECT_DOUBLE_EQ(picture->outputImageSize().height, told.height);
        const auto filter = std::make_shared<GPUImageFilter>();
        const CGImage out = filter->newCGImageByFilteringCGImage(image);
        EXPECT_TRUE(samePixels(out, plainPicture(texture.width, texture.height, {10, 200, 30, 255})));
    }
    GPUImageContext::limitTextureSize(0);
}

class SubImageTest : public GraphFixture, public testing::WithParamInterface<CGBitmapInfo> {
protected:
    static constexpr Rgba kGround{10, 20, 30, 255};
    static constexpr Rgba kPatch{200, 100, 50, 255};

    SubImageTest()
    {
        Bytes bytes;
        for (int i = 0; i < 6 * 5; ++i) {
            Rgba pixel = kGround;
            if ((GetParam() & kCGBitmapByteOrderMask) == kCGBitmapByteOrder32Little)
                std::swap(pixel[0], pixel[2]);
            bytes.insert(bytes.end(), pixel.begin(), pixel.end());
        }
        CGImageLayout layout = CGImageLayout::rgba(6, 5, CGImageAlphaInfo::Last);
        layout.bitmapInfo = GetParam();
        m_picture = std::make_shared<GPUImagePicture>(rowOf(layout, bytes));
        m_picture->addTarget(m_filter);
    }
    CGImage pixels()
    {
        m_filter->useNextFrameForImageCapture();
        m_picture->processImage();
        return m_filter->newCGImageFromCurrentlyProcessedOutput();
    }
    static CGImage patched(IntRect rect)
    {
        return makePicture(6, 5, [&](int x, int y) {
            return x >= rect.x && x < rect.right() && y >= rect.y && y < rect.bottom() ? kPatch : kGround;
        });
    }

    std::shared_ptr<GPUImageFilter> m_filter = std::make_shared<GPUImageFilter>();
    std::shared_ptr<GPUImagePicture> m_picture;
};

INSTANTIATE_TEST_SUITE_P(StorageOrders, SubImageTest,
                         testing::Values(bitmapInfo(CGImageAlphaInfo::Last),
                                         bitmapInfo(CGImageAlphaInfo::First, kCGBitmapByteOrder32Little)));

TEST_P(SubImageTest, ReplacesThePartItCovers)
{
    const CGImage patch = plainPicture(2, 3, kPatch);
    m_picture->replaceTextureWithSubCGImage(patch, {1, 1, 2, 3});
    EXPECT_TRUE(samePixels(pixels(), patched({1, 1, 2, 3})));
    m_picture->replaceTextureWithSubCGImage(plainPicture(6, 5, kGround));
    EXPECT_TRUE(samePixels(pixels(), patched({})));
    m_picture->replaceTextureWithSubimage(UIImage(patch), {4, 2, 2, 3}); // at the edge
    EXPECT_TRUE(samePixels(pixels(), patched({4, 2, 2, 3})));
    m_picture->replaceTextureWithSubimage(UIImage(plainPicture(6, 5, kGround)));
    m_picture->replaceTextureWithSubimage(UIImage(patch));
    EXPECT_TRUE(samePixels(pixels(), patched({0, 0, 2, 3})));
}

TEST_P(SubImageTest, TakesEveryLayout)
{
    const CGImageLayout bgra = layoutOf(2, bitmapInfo(CGImageAlphaInfo::NoneSkipFirst, kCGBitmapByteOrder32Little));
    m_picture->replaceTextureWithSubCGImage(rowOf(bgra, {50, 100, 200, 0, 50, 100, 200, 0}), {3, 0, 2, 1});
    EXPECT_TRUE(samePixels(pixels(), patched({3, 0, 2, 1})));

    const CGImage cut = plainPicture(9, 9, kPatch).subImage({2, 2, 3, 3}); // its rows lie apart
    m_picture->replaceTextureWithSubCGImage(cut, {2, 1, 3, 3});
    EXPECT_EQ(pixelAt(pixels(), 4, 3), kPatch);
    EXPECT_EQ(pixelAt(pixels(), 5, 3), kGround);
}

TEST_P(SubImageTest, WhatLiesOutsideChangesNothing)
{
    const CGImage patch = plainPicture(3, 3, kPatch);
    for (const CGRect& rect : {CGRect{4, 1, 3, 3}, CGRect{-1, 0, 3, 3}, CGRect{0, 3, 3, 3}, CGRect{1e300, 0, 3, 3},
                               CGRect{0, 0, 1e300, 3}, CGRect{std::nan(""), 0, 3, 3}, CGRect{0, 0, 0, 0}})
        m_picture->replaceTextureWithSubCGImage(patch, rect);
    m_picture->replaceTextureWithSubCGImage(CGImage{}, {0, 0, 2, 2});
    m_picture->replaceTextureWithSubCGImage(CGImage{});
    m_picture->replaceTextureWithSubCGImage(plainPicture(7, 1, kPatch));
    EXPECT_TRUE(samePixels(pixels(), patched({})));
}

TEST_P(SubImageTest, ARectangleLargerThanThePictureReadsNothingBeyondIt)
{
    const CGImage patch = plainPicture(1, 1, kPatch);
    m_picture->replaceTextureWithSubCGImage(patch, {0, 0, 5, 4});
    EXPECT_EQ(pixelAt(pixels(), 5, 4), kGround);
}

} // namespace
} // namespace lamina::test
