#include "gpu/filters/blur/GPUImageMotionBlurFilter.h"

#include "gpu/core/VideoProcessingQueue.h"
#include "gpu/filters/blur/NineSampleShader.h"
#include "platform/base/CGGeometry.h"

#include <cmath>
#include <numbers>

namespace lamina {

namespace {

constexpr float kBlurSize = 2.5F;
constexpr float kAngle = 0;

} // namespace

GPUImageMotionBlurFilter::GPUImageMotionBlurFilter()
    : GPUImageFilter(nineSampleShader({"directionalTexelStep", "uniform highp vec2 directionalTexelStep;\n"}))
    , m_stepUniform(uniformIndex("directionalTexelStep"))
    , m_blurSize(kBlurSize)
    , m_blurAngle(kAngle)
{
}

float GPUImageMotionBlurFilter::blurSize() const
{
    return valueFromVideoProcessingQueue([this] { return m_blurSize; });
}

void GPUImageMotionBlurFilter::setBlurSize(float pixels)
{
    runSynchronouslyOnVideoProcessingQueue([&] { m_blurSize = pixels; });
}

float GPUImageMotionBlurFilter::blurAngle() const
{
    return valueFromVideoProcessingQueue([this] { return m_blurAngle; });
}

void GPUImageMotionBlurFilter::setBlurAngle(float degrees)
{
    runSynchronouslyOnVideoProcessingQueue([&] { m_blurAngle = degrees; });
}

/// The direction is the picture's: where the input lies turned, it is turned along.
void GPUImageMotionBlurFilter::setUniformsForProgramAtIndex(int programIndex)
{
    GPUImageFilter::setUniformsForProgramAtIndex(programIndex);
    const CGSize size = sizeOfFBO();
    const double angle = static_cast<double>(m_blurAngle) * std::numbers::pi / 180;
    const auto pixels = static_cast<double>(m_blurSize);
    const CGPoint from = rotatedPoint({0, 0}, m_inputRotation);
    const CGPoint to =
        rotatedPoint({pixels * std::cos(angle) / size.width, pixels * std::sin(angle) / size.height}, m_inputRotation);
    glUniform2f(m_stepUniform, static_cast<float>(to.x - from.x), static_cast<float>(to.y - from.y));
}

FilterDescription GPUImageMotionBlurFilter::describe()
{
    using Self = GPUImageMotionBlurFilter;
    return filterDescription<Self>(
        "GPUImageMotionBlurFilter", "blur", 1, "Blurs along a direction, as a moving camera",
        {filterProperty("blurSize", &Self::setBlurSize, kBlurSize, {0, 8}, "pixels",
                        "Distance of the nine samples; more blurs further"),
         filterProperty("blurAngle", &Self::setBlurAngle, kAngle, {-90, 90}, "degrees",
                        "Direction: 0 along the rows, 45 from the top left to the bottom right")});
}

} // namespace lamina
