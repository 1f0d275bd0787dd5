#include "gpu/filters/analysis/GPUImageAverageColor.h"

#include "gpu/core/FilterProgram.h"
#include "gpu/core/FilterResults.h"
#include "gpu/core/VideoProcessingQueue.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>

namespace lamina {

namespace {

constexpr int kLeastSide = 64; // below it, what a pass adds beyond an odd side would weigh too much

constexpr const char* kReductionVertexShader = R"(
attribute vec4 position;
attribute vec4 inputTextureCoordinate;

uniform vec2 extent;

varying vec2 textureCoordinate;

void main()
{
    gl_Position = position;
    textureCoordinate = inputTextureCoordinate.xy * extent;
}
)";

// Where half a texel is 0, four times the same: the picture as it is.
constexpr const char* kReductionFragmentShader = R"(
precision highp float;

varying vec2 textureCoordinate;

uniform highp sampler2D inputImageTexture;
uniform vec2 halfTexel;

vec4 sampleAt(vec2 place)
{
    vec2 inside = step(place, vec2(1.0));
    return texture2D(inputImageTexture, place) * (inside.x * inside.y);
}

void main()
{
    vec2 opposite = vec2(halfTexel.x, -halfTexel.y);
    gl_FragColor = 0.25 * sampleAt(textureCoordinate - halfTexel) + 0.25 * sampleAt(textureCoordinate + opposite)
        + 0.25 * sampleAt(textureCoordinate - opposite) + 0.25 * sampleAt(textureCoordinate + halfTexel);
}
)";

std::array<std::uint64_t, 4> sumOf(std::span<const std::uint8_t> pixels)
{
    std::array<std::uint64_t, 4> sums{};
    for (std::size_t i = 0; i < pixels.size(); ++i)
        sums[i % 4] += pixels[i];
    return sums;
}

} // namespace

GPUImageAverageColor::GPUImageAverageColor()
    : GPUImageFilter(kReductionVertexShader, kReductionFragmentShader)
    , m_extentUniform(uniformIndex("extent"))
    , m_halfTexelUniform(uniformIndex("halfTexel"))
{
}

void GPUImageAverageColor::setColorAverageProcessingFinishedBlock(ColorAverageBlock block)
{
    runSynchronouslyOnVideoProcessingQueue([&] { m_finishedBlock.swap(block); });
}

int GPUImageAverageColor::halvings() const
{
    const int side = std::min(m_inputPixels.width, m_inputPixels.height);
    return side < kLeastSide ? 0 : (side + 1) / 2 < kLeastSide ? 1 : 2;
}

/// The picture's size after so many halvings.
IntSize GPUImageAverageColor::sizeAfter(int halvings) const
{
    IntSize size = m_inputPixels;
    for (int i = 0; i < halvings; ++i)
        size = {(size.width + 1) / 2, (size.height + 1) / 2};
    return size;
}

CGSize GPUImageAverageColor::sizeOfPass(int index) const
{
    const IntSize size = sizeAfter(std::min(index + 1, halvings()));
    return {static_cast<double>(size.width), static_cast<double>(size.height)};
}

void GPUImageAverageColor::setUniformsForProgramAtIndex(int programIndex)
{
    GPUImageFilter::setUniformsForProgramAtIndex(programIndex);
    const IntSize size = sizeAfter(programIndex);
    const CGSize drawn = sizeOfPass(programIndex);
    const double step = halvings() == 0 ? 1 : 2;
    const auto share = [](double part, int whole) { return static_cast<float>(part / whole); };
    // What lies below the pixels that are drawn; of an odd side a texel more than there is.
    glUniform2f(m_extentUniform, share(drawn.width * step, size.width), share(drawn.height * step, size.height));
    glUniform2f(m_halfTexelUniform, share((step - 1) / 2, size.width), share((step - 1) / 2, size.height));
}

GPUImageAverageColor::Average GPUImageAverageColor::averageOfInput()
{
    m_inputPixels = m_firstInputFramebuffer->pixelSize();
    if (m_inputPixels.isEmpty()) {
        unlockInputs();
        return {};
    }
    const double pixels = static_cast<double>(m_inputPixels.width) * m_inputPixels.height;
    const double weight = std::pow(4, halvings()); // of what was read, in pixels of the input
    const auto reduced = drawPasses(kGPUImageQuadVertices, textureCoordinatesForRotation(kGPUImageNoRotation));
    const std::array<std::uint64_t, 4> sums = sumOf(m_reading.read(*reduced));
    reduced->unlock();
    const auto mean = [&](std::size_t channel) {
        return std::min(1.0, static_cast<double>(sums[channel]) * weight / (255 * pixels));
    };
    return {mean(0), mean(1), mean(2), mean(3)};
}

void GPUImageAverageColor::renderToTextureWithVertices(const QuadCoordinates&, const QuadCoordinates&)
{
    if (preventRendering() || !canRender() || !m_firstInputFramebuffer) {
        dropFrame();
        return;
    }
    m_average = averageOfInput();
    m_outputFramebuffer = beginOutput(outputColor(m_average));
    holdForCapture(*m_outputFramebuffer);
    signalCapture();
}

void GPUImageAverageColor::newFrameReadyAtTime(const CMTime& frameTime, int)
{
    renderToTextureWithVertices(kGPUImageQuadVertices, kGPUImageQuadVertices);
    if (framebufferForOutput() && !preventRendering())
        tell(m_average, frameTime);
    informTargetsAboutNewFrameAtTime(frameTime);
}

void GPUImageAverageColor::tell(const Average& average, const CMTime& frameTime) const
{
    if (m_finishedBlock)
        m_finishedBlock(average.red, average.green, average.blue, average.alpha, frameTime);
}

GPUVector4 GPUImageAverageColor::outputColor(const Average& average) const
{
    return {static_cast<float>(average.red), static_cast<float>(average.green), static_cast<float>(average.blue),
            static_cast<float>(average.alpha)};
}

FilterDescription GPUImageAverageColor::describe()
{
    FilterDescription description = filterDescription<GPUImageAverageColor>(
        "GPUImageAverageColor", "detection", 1, "The average colour, as numbers and as a picture of one pixel");
    description.reporting = filterReporting<GPUImageAverageColor>(
        {{"averageColor", {"red", "green", "blue", "alpha"}, false, "", "The average of each channel, from 0 to 1"}},
        [](GPUImageAverageColor& filter, const FilterReportBlock& block) {
            filter.setColorAverageProcessingFinishedBlock(
                [block](double red, double green, double blue, double alpha, CMTime) {
                    block({{red, green, blue, alpha}});
                });
        });
    return description;
}

} // namespace lamina
