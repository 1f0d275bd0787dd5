#include "GraphFixture.h"
#include "TestPictures.h"
#include "gpu/sources/GPUImagePicture.h"
#include "platform/image/pixels/CGColorSpace.h"

#include <cmath>

namespace lamina::test {
namespace {

using Alpha = CGImageAlphaInfo;
using Bytes = std::vector<std::uint8_t>;
using Pixels = std::vector<Rgba>;

constexpr Rgba kGround{10, 20, 30, 255};
constexpr Rgba kPatch{200, 100, 50, 255};

/// What a filter sees of the picture.
CGImage seen(GPUImagePicture& picture, IntSize size = {})
{
    const auto filter = std::make_shared<GPUImageFilter>();
    if (!size.isEmpty())
        filter->forceProcessingAtSize({double(size.width), double(size.height)});
    filter->useNextFrameForImageCapture();
    picture.addTarget(filter);
    picture.processImage();
    CGImage result = filter->newCGImageFromCurrentlyProcessedOutput();
    picture.removeTarget(filter);
    return result;
}

/// The pixels of a row of these bytes as a filter sees them.
Pixels seenOf(CGBitmapInfo info, const Bytes& bytes, PictureUpload upload = {}, int bitsPerComponent = 8,
              int bitsPerPixel = 32, const CGColorSpace& space = CGColorSpace::deviceRGB())
{
    const int width = static_cast<int>(bytes.size()) * 8 / bitsPerPixel;
    const auto picture = std::make_shared<GPUImagePicture>(
        pictureFromBytes(packedLayout({width, 1}, info, bitsPerComponent, bitsPerPixel, space), bytes), upload);
    return pixelsOf(seen(*picture));
}

using PictureUploadTest = GraphFixture;

TEST_F(PictureUploadTest, EachLayoutGoesUpAsItsOrderTellsOrIsDrawnAnew)
{
    // Valid as premultiplied too, wherever alpha stands: 128 and 255 are never less than a colour.
    const Bytes alphaLast{10, 20, 30, 128, 60, 50, 40, 255};
    const Bytes alphaFirst{128, 10, 20, 30, 255, 60, 50, 40};
    const Pixels asRgba{{10, 20, 30, 128}, {60, 50, 40, 255}};
    const Pixels asBgra{{30, 20, 10, 128}, {40, 50, 60, 255}};
    const Pixels multiplied{{5, 10, 15, 128}, {60, 50, 40, 255}};
    struct Case {
        const char* name;
        CGBitmapInfo info;
        Bytes bytes;
        Pixels seen;
    };
    const Case cases[] = {
        {"BGRA premultiplied", bitmapInfo(Alpha::PremultipliedFirst, kCGBitmapByteOrder32Little), alphaLast, asBgra},
        {"BGRA", bitmapInfo(Alpha::First, kCGBitmapByteOrder32Little), alphaLast, asBgra},
        {"BGRX", bitmapInfo(Alpha::NoneSkipFirst, kCGBitmapByteOrder32Little), alphaLast, asBgra},
        {"RGBA premultiplied", bitmapInfo(Alpha::PremultipliedLast), alphaLast, asRgba},
        {"RGBA", bitmapInfo(Alpha::Last), alphaLast, asRgba},
        {"RGBX", bitmapInfo(Alpha::NoneSkipLast), alphaLast, asRgba},
        {"RGBA big", bitmapInfo(Alpha::Last, kCGBitmapByteOrder32Big), alphaLast, asRgba},
        // An order of another width is taken for BGRA.
        {"16-bit order",
         bitmapInfo(Alpha::First, kCGBitmapByteOrder16Little),
         alphaFirst,
         {{20, 10, 128, 30}, {50, 60, 255, 40}}},
        // Drawn anew, which premultiplies.
        {"ARGB", bitmapInfo(Alpha::First), alphaFirst, multiplied},
        {"ARGB premultiplied", bitmapInfo(Alpha::PremultipliedFirst), alphaFirst, asRgba},
        {"XRGB",
         bitmapInfo(Alpha::NoneSkipFirst, kCGBitmapByteOrder32Big),
         alphaFirst,
         {{10, 20, 30, 255}, {60, 50, 40, 255}}},
        {"ABGR", bitmapInfo(Alpha::Last, kCGBitmapByteOrder32Little), {128, 30, 20, 10, 255, 40, 50, 60}, multiplied},
    };
    for (const auto& [name, info, bytes, pixels] : cases)
        EXPECT_EQ(seenOf(info, bytes), pixels) << name;

    EXPECT_EQ(seenOf(bitmapInfo(Alpha::None), {7, 200}, {}, 8, 8, CGColorSpace::deviceGray()),
              (Pixels{{7, 7, 7, 255}, {200, 200, 200, 255}}));
    // R = (1 - C)(1 - K): 255 * 0.8 * 0.4, 255 * 1 * 0.4, 255 * 0.6 * 0.4.
    EXPECT_EQ(seenOf(bitmapInfo(Alpha::None), {51, 0, 102, 153}, {}, 8, 32, CGColorSpace::deviceCMYK()),
              (Pixels{{82, 102, 61, 255}}));
    // 16 bits, most significant byte first: 0x8080 is 128 / 255.
    EXPECT_EQ(seenOf(bitmapInfo(Alpha::NoneSkipLast), {0x80, 0x80, 0xFF, 0xFF, 0, 0, 0, 0}, {}, 16, 64),
              (Pixels{{128, 255, 0, 255}}));
}

TEST_F(PictureUploadTest, PaddedRowsAndCutOutsKeepTheirPixels)
{
    const CGImage whole = chartPicture(paddedLayout(9, 7, Alpha::NoneSkipLast));
    for (const CGImage& picture : {whole, whole.subImage({2, 3, 5, 3})}) {
        EXPECT_EQ(componentGrid(std::make_shared<GPUImageFilter>()->newCGImageByFilteringCGImage(picture), 1),
                  componentGrid(picture, 1));
    }
}

TEST_F(PictureUploadTest, UnpremultipliesByTruncationAndLetsOverflowRun)
{
    const PictureUpload removing{.removePremultiplication = true};
    EXPECT_EQ(seenOf(bitmapInfo(Alpha::PremultipliedLast),
                     {
                         64,  1,   128, 128, // 127.5, 1.99, 255
                         9,   8,   7,   255, // as they are
                         0,   0,   0,   0,   // clear stays clear
                         200, 0,   0,   100, // 510 = 0x1FE: the ninth bit falls off the top
                         0,   200, 0,   100, // ... and here into the red
                         0,   0,   200, 100, // ... and here into the green
                         0,   5,   0,   0,   // colour over nothing: all ones, from its place upwards
                     },
                     removing),
              (Pixels{{127, 1, 255, 128},
                      {9, 8, 7, 255},
                      {0, 0, 0, 0},
                      {0xFE, 0, 0, 100},
                      {1, 0xFE, 0, 100},
                      {0, 1, 0xFE, 100},
                      {255, 255, 0, 0}}));
    // Straight and skipped alpha are left alone.
    EXPECT_EQ(seenOf(bitmapInfo(Alpha::Last), {64, 1, 128, 128}, removing), (Pixels{{64, 1, 128, 128}}));
    // So is premultiplied BGRA, which goes up as if it were straight; what is drawn anew is divided.
    EXPECT_EQ(seenOf(bitmapInfo(Alpha::PremultipliedFirst, kCGBitmapByteOrder32Little), {64, 1, 128, 128}, removing),
              (Pixels{{128, 1, 64, 128}}));
    EXPECT_EQ(seenOf(bitmapInfo(Alpha::PremultipliedFirst), {128, 64, 1, 128}, removing), (Pixels{{127, 1, 255, 128}}));
}

TEST_F(PictureUploadTest, PremultipliesWhatIsStraight)
{
    const PictureUpload multiplying{.premultiply = true};
    for (const auto& [info, pixel] :
         {std::pair<CGBitmapInfo, Rgba>{bitmapInfo(Alpha::Last), {100, 50, 1, 128}},
          {bitmapInfo(Alpha::First, kCGBitmapByteOrder32Little), {1, 50, 100, 128}},
          {bitmapInfo(Alpha::PremultipliedLast), {200, 100, 1, 128}},
          {bitmapInfo(Alpha::NoneSkipLast), {200, 100, 1, 128}},
          {bitmapInfo(Alpha::Last, kCGBitmapByteOrder32Little), {100, 1, 78, 200}}}) // drawn anew, which has done it
        EXPECT_EQ(seenOf(info, {200, 100, 1, 128}, multiplying), Pixels{pixel}) << info;
    GPUImagePicture ground(solidPicture(3, 3, {}), multiplying);
    ground.replaceTextureWithSubCGImage(solidPicture(3, 3, {200, 100, 1, 128}));
    EXPECT_TRUE(imagesMatch(seen(ground), solidPicture(3, 3, {100, 50, 1, 128})));
}

TEST_F(PictureUploadTest, SmoothScalingStretchesToPowersOfTwoAndAverages)
{
    // Much smaller, a checkerboard of single pixels becomes even; without mipmaps single pixels would be picked.
    const CGImage board = makePicture(100, 100, [](int x, int y) {
        const std::uint8_t value = (x + y) % 2 * 255;
        return Rgba{value, value, value, 255};
    });
    const auto picture = std::make_shared<GPUImagePicture>(board, PictureUpload{.smoothlyScaleOutput = true});
    EXPECT_EQ(picture->outputImageSize(), (CGSize{100, 100}));
    EXPECT_TRUE(imagesMatch(seen(*picture, {5, 5}), solidPicture(5, 5, {128, 128, 128, 255}), 2));
    EXPECT_EQ(picture->framebufferForOutput()->size(), (CGSize{128, 128}));
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
             Case{{50, 100}, {32, 64}, {32, 64}}, Case{{64, 20}, {64, 20}, {64, 20}},
             Case{{100, 33}, {64, 33 * (64.0 / 100)}, {64, 21}}, // not rounded
             Case{{1000, 1}, {64, 1}, {64, 1}},                  // never less than a pixel
         }) {
        const auto picture = std::make_shared<GPUImagePicture>(solidPicture(size.width, size.height, kGround));
        EXPECT_EQ(picture->outputImageSize(), told);
        EXPECT_TRUE(imagesMatch(seen(*picture), solidPicture(texture.width, texture.height, kGround)));
    }
    GPUImageContext::limitTextureSize(0);
}

/// All of it is ground, in either order of storage.
std::shared_ptr<GPUImagePicture> groundPicture(bool bgra)
{
    const CGBitmapInfo info = bgra ? bitmapInfo(Alpha::First, kCGBitmapByteOrder32Little) : bitmapInfo(Alpha::Last);
    return std::make_shared<GPUImagePicture>(makePicture(packedLayout({6, 5}, info, 8, 32), [&](int, int) {
        return bgra ? Rgba{30, 20, 10, 255} : kGround;
    }));
}

/// Only these pixels are the patch's.
testing::AssertionResult isPatched(GPUImagePicture& picture, IntRect rect)
{
    return imagesMatch(seen(picture), makePicture(6, 5, [&](int x, int y) {
                           const bool inside = x >= rect.x && x < rect.right() && y >= rect.y && y < rect.bottom();
                           return inside ? kPatch : kGround;
                       }));
}

TEST_F(PictureUploadTest, APartIsReplacedFromEveryLayout)
{
    const CGImageLayout bgra =
        packedLayout({2, 1}, bitmapInfo(Alpha::NoneSkipFirst, kCGBitmapByteOrder32Little), 8, 32);
    const std::pair<CGImage, IntRect> patches[] = {
        {solidPicture(2, 3, kPatch), {1, 1, 2, 3}},
        {solidPicture(2, 3, kPatch), {4, 2, 2, 3}}, // at the edge
        {pictureFromBytes(bgra, Bytes{50, 100, 200, 0, 50, 100, 200, 0}), {3, 0, 2, 1}},
        {solidPicture(9, 9, kPatch).subImage({2, 2, 3, 3}), {2, 1, 3, 3}}, // its rows lie apart
        {solidPicture(1, 1, kPatch), {0, 0, 5, 4}},                        // stretched
    };
    for (const bool storedAsBgra : {false, true}) {
        for (const auto& [patch, place] : patches) {
            const auto picture = groundPicture(storedAsBgra);
            picture->replaceTextureWithSubCGImage(patch, CGRect(place.x, place.y, place.width, place.height));
            EXPECT_TRUE(isPatched(*picture, place));
        }
        const auto picture = groundPicture(storedAsBgra);
        picture->replaceTextureWithSubimage(UIImage(solidPicture(2, 3, kPatch)));
        EXPECT_TRUE(isPatched(*picture, {0, 0, 2, 3}));
    }
}

TEST_F(PictureUploadTest, APartThatLiesOutsideChangesNothing)
{
    const auto picture = groundPicture(false);
    for (const CGRect& rect : {CGRect{4, 1, 3, 3}, CGRect{-1, 0, 3, 3}, CGRect{0, 3, 3, 3}, CGRect{1e300, 0, 3, 3},
                               CGRect{0, 0, 1e300, 3}, CGRect{std::nan(""), 0, 3, 3}, CGRect{0, 0, 0, 0}})
        picture->replaceTextureWithSubCGImage(solidPicture(3, 3, kPatch), rect);
    picture->replaceTextureWithSubCGImage(CGImage{}, {0, 0, 2, 2});
    picture->replaceTextureWithSubCGImage(CGImage{});
    EXPECT_TRUE(isPatched(*picture, {}));
}

} // namespace
} // namespace lamina::test
