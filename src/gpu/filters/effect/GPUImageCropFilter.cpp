#include "gpu/filters/effect/GPUImageCropFilter.h"

#include "gpu/core/FilterProgram.h"
#include "gpu/core/TypedValue.h"
#include "gpu/core/VideoProcessingQueue.h"
#include "platform/base/Result.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <variant>

namespace lamina {

namespace {

constexpr CGRect kWhole{0, 0, 1, 1};

/// Whole pixels from `start`, `length` long, of a side of so many: as a share of the side.
struct Share {
    double start;
    double length;
};

Share inWholePixels(double start, double length, double pixels)
{
    const double first = std::clamp(std::floor(start * pixels + kPixelNoise), 0.0, pixels - 1);
    const double count = std::clamp(std::floor(length * pixels + kPixelNoise), 1.0, pixels - first);
    return {first / pixels, count / pixels};
}

} // namespace

FilterDescription GPUImageCropFilter::describe()
{
    FilterProperty region = filterProperty("cropRegion", &GPUImageCropFilter::setCropRegion, kWhole, {0, 1},
                                           "share of width and height", "Left and top edge, width and height");
    region.check = [](const TypedValue& value) { return checkCropRegion(std::get<CGRect>(value)); };
    return filterDescription<GPUImageCropFilter>("GPUImageCropFilter", "effect", 1, "Cuts a part out of the picture",
                                                 {std::move(region)});
}

Outcome GPUImageCropFilter::checkCropRegion(const CGRect& region)
{
    // What follows from fractions such as a third and two thirds is within.
    const CGRect within = kWhole.insetBy(-kPixelNoise, -kPixelNoise);
    const bool isInside = region.isMeasurable() && region.minX() >= within.minX() && region.minY() >= within.minY() &&
                          region.maxX() <= within.maxX() && region.maxY() <= within.maxY();
    if (isInside)
        return success();
    return Error{"cropRegion", "must have a width and a height and lie within 0 to 1"};
}

CGRect GPUImageCropFilter::cropRegion() const
{
    return valueFromVideoProcessingQueue([this] { return m_cropRegion; });
}

void GPUImageCropFilter::setCropRegion(const CGRect& region)
{
    if (checkCropRegion(region))
        runSynchronouslyOnVideoProcessingQueue([&] { m_cropRegion = region; });
}

CGRect GPUImageCropFilter::regionInPixelsOf(CGSize size) const
{
    const Share across = inWholePixels(m_cropRegion.minX(), m_cropRegion.size.width, size.width);
    const Share down = inWholePixels(m_cropRegion.minY(), m_cropRegion.size.height, size.height);
    return {across.start, down.start, across.length, down.length};
}

void GPUImageCropFilter::setInputSize(CGSize size, int textureIndex)
{
    const CGSize whole = rotatedSize(size, textureIndex);
    if (!isMeasurable(whole)) {
        GPUImageFilter::setInputSize(size, textureIndex);
        return;
    }
    m_drawnRegion = regionInPixelsOf(whole);
    const CGSize part{std::round(m_drawnRegion.size.width * whole.width),
                      std::round(m_drawnRegion.size.height * whole.height)};
    GPUImageFilter::setInputSize(rotatedSize(part, textureIndex), textureIndex);
}

void GPUImageCropFilter::renderToTextureWithVertices(const QuadCoordinates& vertices, const QuadCoordinates&)
{
    QuadCoordinates part{};
    const QuadCoordinates& upright = textureCoordinatesForRotation(kGPUImageNoRotation);
    for (std::size_t i = 0; i < part.size(); i += 2) {
        const CGPoint corner{m_drawnRegion.minX() + static_cast<double>(upright[i]) * m_drawnRegion.size.width,
                             m_drawnRegion.minY() + static_cast<double>(upright[i + 1]) * m_drawnRegion.size.height};
        const CGPoint place = rotatedPoint(corner, m_inputRotation);
        part[i] = static_cast<GLfloat>(place.x);
        part[i + 1] = static_cast<GLfloat>(place.y);
    }
    GPUImageFilter::renderToTextureWithVertices(vertices, part);
}

} // namespace lamina
