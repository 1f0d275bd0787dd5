#include "platform/image/drawing/SquareCrop.h"

#include "platform/base/UIScreen.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace lamina {
namespace {

/// Red grows by 2 a pixel along x, green along y.
UIImage ramp(int width, int height)
{
    const CGImageLayout layout = CGImageLayout::rgba(width, height, CGImageAlphaInfo::NoneSkipLast);
    PixelBuffer buffer = PixelBuffer::allocate(layout.byteCount());
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            std::uint8_t* pixel = buffer.data() + 4 * (y * width + x);
            pixel[0] = static_cast<std::uint8_t>(2 * x);
            pixel[1] = static_cast<std::uint8_t>(2 * y);
            pixel[2] = 7;
            pixel[3] = 255;
        }
    }
    return UIImage(CGImage::make(layout, std::move(buffer)));
}

struct SquareCase {
    int width;
    int height;
    double left; ///< of the middle square
    double top;
};

TEST(SquareCrop, TakesTheMiddleAtTheScreensScale)
{
    const UIScreen before = UIScreen::main();
    UIScreen::setMain({{375, 667}, 2});
    for (const SquareCase& c : {SquareCase{100, 60, 20, 0}, {60, 100, 0, 20}, {60, 60, 0, 0}}) {
        SCOPED_TRACE(testing::Message() << c.width << " x " << c.height);
        const UIImage square = squareImageFromImage(ramp(c.width, c.height), 15);
        ASSERT_EQ(square.pixelSize(), (IntSize{30, 30}));
        EXPECT_EQ(square.scale(), 2);
        EXPECT_FALSE(square.cgImage().hasAlpha());
        // A side of 60 becomes 30, so each pixel is the mean of two by two.
        for (const int i : {0, 9, 29}) {
            const std::uint8_t* pixel = square.cgImage().row(i) + 4 * i;
            EXPECT_NEAR(pixel[0], 2 * (c.left + 2 * i + 0.5), 1);
            EXPECT_NEAR(pixel[1], 2 * (c.top + 2 * i + 0.5), 1);
        }
    }
    UIScreen::setMain(before);
}

TEST(SquareCrop, NeedsAPictureAndAnEdge)
{
    EXPECT_FALSE(squareImageFromImage({}, 10));
    for (const double edge : {0.0, -4.0, std::nan(""), std::numeric_limits<double>::infinity()})
        EXPECT_FALSE(squareImageFromImage(ramp(4, 4), edge));
}

} // namespace
} // namespace lamina
