#include "gpu/filters/analysis/GPUImageParallelCoordinateLineTransformFilter.h"

#include "gpu/core/FilterProgram.h"
#include "gpu/core/GPUImageFramebuffer.h"
#include "gpu/core/VideoProcessingQueue.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace lamina {

namespace {

constexpr int kLeastSide = 64;
constexpr int kMostSide = 512;
constexpr int kMostVotes = 255;
constexpr std::size_t kMostVoters = 65'536;
constexpr std::uint8_t kLit = 128;

constexpr const char* kVertexShader = R"(
attribute vec4 position;

void main()
{
    gl_Position = position;
}
)";

// Summed by blending.
constexpr const char* kVoteShader = R"(
precision highp float;

void main()
{
    gl_FragColor = vec4(0.004, 0.004, 0.004, 1.0);
}
)";

constexpr const char* kPackedVoteShader = R"(#extension GL_EXT_shader_framebuffer_fetch : require

precision highp float;

void main()
{
    vec3 count = floor(gl_LastFragData[0].rgb * 255.0 + 0.5);
    count.r += 1.0;
    count.g += step(256.0, count.r);
    count.b += step(256.0, count.g);
    gl_FragColor = vec4(mod(count, 256.0) / 255.0, 1.0);
}
)";

int cellsFor(double side)
{
    return std::clamp(static_cast<int>(side), kLeastSide, kMostSide);
}

/// The middle of a pixel, from -1 to 1.
double centreOf(std::size_t pixel, int side)
{
    return (2.0 * static_cast<double>(pixel) + 1) / side - 1;
}

std::vector<std::size_t> litPixels(std::span<const std::uint8_t> pixels)
{
    std::vector<std::size_t> lit;
    for (std::size_t i = 0; i < pixels.size(); i += 4) {
        if (pixels[i] >= kLit)
            lit.push_back(i / 4);
    }
    return lit;
}

} // namespace

GPUImageParallelCoordinateLineTransformFilter::GPUImageParallelCoordinateLineTransformFilter(bool packedColorspace)
    : m_isPacked(packedColorspace)
{
    setBackgroundColorRed(0, 0, 0, 1);
    runSynchronouslyOnVideoProcessingQueue(
        [&] { buildProgram(linesPass(), kVertexShader, m_isPacked ? kPackedVoteShader : kVoteShader); });
}

GPUImageFilter::Pass GPUImageParallelCoordinateLineTransformFilter::linesPass()
{
    return {1, m_linesProgram, m_linesPositionAttribute, m_linesTextureCoordinateAttribute, m_linesInputTextureUniform};
}

CGSize GPUImageParallelCoordinateLineTransformFilter::sizeOfFBO() const
{
    return {static_cast<double>(cellsFor(m_inputTextureSize.width) | 1),
            static_cast<double>(cellsFor(m_inputTextureSize.height))};
}

/// The end of a line is left out by GL: no place on the middle axis gets two votes of one pixel.
void GPUImageParallelCoordinateLineTransformFilter::addLines(double x, double y, double right)
{
    const auto left = static_cast<GLfloat>(-right);
    const auto start = static_cast<GLfloat>(x);
    const auto middle = static_cast<GLfloat>(y);
    m_lineCoordinates.insert(m_lineCoordinates.end(), {left, start, 0, middle, 0, middle, -left, -start});
}

void GPUImageParallelCoordinateLineTransformFilter::generateLineCoordinates(GPUImageFramebuffer& edges)
{
    const IntSize size = edges.pixelSize();
    const std::vector<std::size_t> lit = litPixels(m_reading.read(edges));
    const auto side = static_cast<std::size_t>(std::max(size.width, size.height));
    const std::size_t step =
        std::max({(side + kMostVotes - 1) / kMostVotes, (lit.size() + kMostVoters - 1) / kMostVoters, std::size_t{1}});
    const double cells = sizeOfFBO().width;
    const double right = (cells - 1) / cells; // the middle of the last column
    const auto width = static_cast<std::size_t>(size.width);
    m_lineCoordinates.clear();
    for (std::size_t i = 0; i < lit.size(); i += step)
        addLines(centreOf(lit[i] % width, size.width), centreOf(lit[i] / width, size.height), right);
}

void GPUImageParallelCoordinateLineTransformFilter::renderToTextureWithVertices(
    const QuadCoordinates& vertices, const QuadCoordinates& textureCoordinates)
{
    if (preventRendering() || !canRender()) {
        dropFrame();
        return;
    }
    // What comes in may be a texture only, which can't be read.
    const std::shared_ptr<GPUImageFramebuffer> edges = drawPasses(vertices, textureCoordinates);
    generateLineCoordinates(*edges);
    edges->unlock();
    m_outputFramebuffer = beginOutput(m_backgroundColor);
    holdForCapture(*m_outputFramebuffer);
    drawVertices(linesPass(), nullptr,
                 {.primitive = GL_LINES,
                  .count = static_cast<GLsizei>(m_lineCoordinates.size() / 2),
                  .positions = {.data = m_lineCoordinates.data()},
                  .addsToWhatIsThere = !m_isPacked});
    signalCapture();
}

FilterDescription GPUImageParallelCoordinateLineTransformFilter::describe()
{
    using Self = GPUImageParallelCoordinateLineTransformFilter;
    return filterDescription<Self>("GPUImageParallelCoordinateLineTransformFilter", "detection", 1,
                                   "Turns lines of white pixels into points, one for each direction and place");
}

} // namespace lamina
