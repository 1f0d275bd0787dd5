#include "gpu/filters/analysis/GPUImageAverageColor.h"

#include "gpu/core/GPUImageContext.h"
#include "gpu/core/VideoProcessingQueue.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>

namespace lamina {

namespace {

constexpr int kMostPasses = 2;
constexpr int kLeastSide = 64; // below it, what a pass adds beyond an odd side would weigh too much

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
    : GPUImageFilter(kReductionFragmentShader)
    , m_halfTexelUniform(uniformIndex("halfTexel"))
{
}

void GPUImageAverageColor::setColorAverageProcessingFinishedBlock(ColorAverageBlock block)
{
    runSynchronouslyOnVideoProcessingQueue([&] { m_finishedBlock.swap(block); });
}

std::shared_ptr<GPUImageFramebuffer> GPUImageAverageColor::reduced(const std::shared_ptr<GPUImageFramebuffer>& input,
                                                                   IntSize size, int step)
{
    const auto stepsIn = [step](int side) { return static_cast<double>((side + step - 1) / step); };
    const CGSize drawn{stepsIn(size.width), stepsIn(size.height)};
    auto output =
        GPUImageContext::sharedFramebufferCache().fetchFramebufferForSize(drawn, outputTextureOptions(), false);
    output->activateFramebuffer();
    // The texels below the pixels that are drawn, in shares of the input; one more than there are of an odd side.
    const auto right = static_cast<float>(drawn.width * step / size.width);
    const auto bottom = static_cast<float>(drawn.height * step / size.height);
    const double half = 0.5 * (step - 1);
    setPoint({half / size.width, half / size.height}, m_halfTexelUniform, m_filterProgram);
    drawPass(firstPass(), input, kGPUImageQuadVertices, {0, 0, right, 0, 0, bottom, right, bottom});
    return output;
}

GPUImageAverageColor::Average GPUImageAverageColor::averageOfInput()
{
    const IntSize whole = m_firstInputFramebuffer->pixelSize();
    if (whole.isEmpty())
        return {};
    std::shared_ptr<GPUImageFramebuffer> frame;
    double weight = 1.0 / (255.0 * whole.width * whole.height);
    for (int pass = 0; pass == 0 || pass < kMostPasses; ++pass) {
        const IntSize size = frame ? frame->pixelSize() : whole;
        const bool halve = std::min(size.width, size.height) >= kLeastSide;
        if (!halve && frame)
            break;
        auto next = reduced(frame ? frame : m_firstInputFramebuffer, size, halve ? 2 : 1);
        if (frame)
            frame->unlock();
        frame = std::move(next);
        weight *= halve ? 4 : 1;
    }
    const std::array<std::uint64_t, 4> sums = sumOf(m_reading.read(*frame));
    frame->unlock();
    const auto mean = [&](std::size_t channel) { return std::min(1.0, static_cast<double>(sums[channel]) * weight); };
    return {mean(0), mean(1), mean(2), mean(3)};
}

void GPUImageAverageColor::renderToTextureWithVertices(const QuadCoordinates&, const QuadCoordinates&)
{
    if (preventRendering() || !canRender() || !m_firstInputFramebuffer) {
        dropFrame();
        return;
    }
    m_average = averageOfInput();
    unlockInputs();
    m_outputFramebuffer =
        GPUImageContext::sharedFramebufferCache().fetchFramebufferForSize({1, 1}, outputTextureOptions(), false);
    m_outputFramebuffer->activateFramebuffer();
    const GPUVector4 color = outputColor(m_average);
    glClearColor(color.one, color.two, color.three, color.four);
    glClear(GL_COLOR_BUFFER_BIT);
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
