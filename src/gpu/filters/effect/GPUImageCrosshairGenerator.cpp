#include "gpu/filters/effect/GPUImageCrosshairGenerator.h"

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/VideoProcessingQueue.h"
#include "platform/base/CGGeometry.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace lamina {

namespace {

constexpr float kWidth = 5;
constexpr float kShareOfArms = 0.09F;

/// The middle of the pixel in which a place lies that has been through single precision.
double middleOfPixel(double place)
{
    constexpr double kNoise = 0.01;
    return std::floor(place + kNoise) + 0.5;
}

} // namespace

GPUImageCrosshairGenerator::GPUImageCrosshairGenerator()
    : MarkGenerator("any(lessThan(abs(place - vec2(0.5)), vec2(halfWidth)))")
{
    setCrosshairWidth(kWidth);
}

FilterDescription GPUImageCrosshairGenerator::describe()
{
    using Self = GPUImageCrosshairGenerator;
    return asGenerator(
        filterDescription<Self>("GPUImageCrosshairGenerator", "effect", 1, "Marks points with small crosses",
                                {filterProperty("crosshairWidth", &Self::setCrosshairWidth, kWidth, {1, 256}, "pixels",
                                                "Width of the crosses from end to end"),
                                 filterProperty("crosshairs", &Self::setCrosshairs, std::vector<CGPoint>(), {0, 1},
                                                "share of width and height", "The points that are marked")},
                                {colorOperation("setCrosshairColorRed:green:blue:")}));
}

void GPUImageCrosshairGenerator::setCrosshairWidth(float pixels)
{
    runSynchronouslyOnVideoProcessingQueue([&] {
        const float width = std::max(pixels, 1.0F);
        setWidth(width);
        setFloat(std::max(kShareOfArms, 1 / width) / 2, m_halfWidthUniform, m_filterProgram);
    });
}

std::vector<MarkGenerator::Mark> GPUImageCrosshairGenerator::marksForSize(CGSize size)
{
    const double half = static_cast<double>(m_width) / 2;
    std::vector<Mark> marks;
    for (const CGPoint& point : m_points) {
        // Farther away nothing shows.
        const double x = middleOfPixel(std::clamp(point.x, -1.0, 2.0) * size.width);
        const double y = middleOfPixel(std::clamp(point.y, -1.0, 2.0) * size.height);
        if (isFinite(point))
            marks.push_back(
                {{{{x - half, y - half}, {x + half, y - half}, {x - half, y + half}, {x + half, y + half}}}});
    }
    return marks;
}

} // namespace lamina
