#include "platform/image/drawing/SquareCrop.h"

#include "TestPictures.h"
#include "platform/base/UIScreen.h"

#include <cmath>
#include <limits>

namespace lamina::test {
namespace {

TEST(SquareCrop, TakesTheMiddleAtTheScreensScale)
{
    const UIScreen before = UIScreen::main();
    UIScreen::setMain({{375, 667}, 2});
    const struct {
        int width;
        int height;
        int left; ///< of the middle square
        int top;
    } cases[] = {{100, 60, 20, 0}, {60, 100, 0, 20}};
    for (const auto& c : cases) {
        const CGImage ramp = makePicture(c.width, c.height, [](int x, int y) {
            return Rgba{static_cast<std::uint8_t>(2 * x), static_cast<std::uint8_t>(2 * y), 7, 255};
        });
        const UIImage square = squareImageFromImage(UIImage(ramp), 15);
        EXPECT_EQ(square.scale(), 2);
        EXPECT_FALSE(square.cgImage().hasAlpha());
        // A side of 60 becomes 30, so each pixel is the mean of two by two.
        EXPECT_TRUE(imagesMatch(square.cgImage(), makePicture(30, 30, [&](int x, int y) {
                                    return Rgba{static_cast<std::uint8_t>(2 * (c.left + 2 * x) + 1),
                                                static_cast<std::uint8_t>(2 * (c.top + 2 * y) + 1), 7, 255};
                                })));
    }
    UIScreen::setMain(before);
}

TEST(SquareCrop, NeedsAPictureAndAnEdge)
{
    EXPECT_FALSE(squareImageFromImage({}, 10));
    for (const double edge : {0.0, -4.0, std::nan(""), std::numeric_limits<double>::infinity()})
        EXPECT_FALSE(squareImageFromImage(UIImage(chartPicture(4, 4)), edge));
}

} // namespace
} // namespace lamina::test
