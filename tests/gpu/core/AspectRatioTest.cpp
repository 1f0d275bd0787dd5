#include "GraphFixture.h"
#include "TestPictures.h"
#include "gpu/core/AspectRatioFilter.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace lamina::test {
namespace {

using AspectRatioTest = GraphFixture;

/// Paints the distance from a point off the middle, in widths of the picture.
struct DistancePainter : AspectRatioFilter<GPUImageFilter> {
    DistancePainter()
        : AspectRatioFilter(std::string("precision highp float; varying vec2 textureCoordinate;") + kAspectRatioShader +
                            "void main() { gl_FragColor = vec4(vec3(distanceFromCenter(textureCoordinate)), 1.0); }")
    {
        setCenter({0.25, 0.75});
    }
};

CGImage distances(int width, int height, double ratio)
{
    return makePicture(width, height, [&](int x, int y) {
        const double distance = std::hypot((x + 0.5) / width - 0.25, ((y + 0.5) / height - 0.75) * ratio);
        const auto level = static_cast<std::uint8_t>(std::lround(255 * std::min(distance, 1.0)));
        return Rgba{level, level, level, 255};
    });
}

TEST_F(AspectRatioTest, MeasuresInTheUprightPictureHoweverTheInputLies)
{
    DistancePainter filter;
    EXPECT_EQ(filter.aspectRatio(), 0) << "before the first picture";
    for (int number = 0; number < 8; ++number) {
        const auto rotation = static_cast<GPUImageRotationMode>(number);
        onQueue([&] { filter.setInputRotation(rotation, 0); });
        const CGImage input = swapsWidthAndHeight(rotation) ? solidPicture(20, 40, {}) : solidPicture(40, 20, {});
        EXPECT_TRUE(imagesMatch(filter.newCGImageByFilteringCGImage(input), distances(40, 20, 0.5), 1)) << number;
    }
    filter.setAspectRatio(2);
    EXPECT_TRUE(imagesMatch(filter.newCGImageByFilteringCGImage(solidPicture(40, 20, {})), distances(40, 20, 2), 1));
    EXPECT_EQ(filter.aspectRatio(), 2);
    filter.setAspectRatio(0);
    EXPECT_TRUE(imagesMatch(filter.newCGImageByFilteringCGImage(solidPicture(20, 30, {})), distances(20, 30, 1.5), 1));
}

} // namespace
} // namespace lamina::test
