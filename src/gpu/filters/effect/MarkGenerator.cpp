#include "gpu/filters/effect/MarkGenerator.h"

#include "gpu/core/FilterProgram.h"
#include "gpu/core/VideoProcessingQueue.h"

#include <cstddef>
#include <utility>

namespace lamina {

namespace {

constexpr const char* kBeforeTest = R"(
precision highp float;

varying vec2 textureCoordinate;
uniform sampler2D inputImageTexture;
uniform vec3 markColor;
uniform float isMark;
uniform float halfWidth;

bool isMarked(vec2 place)
{
    return )";

constexpr const char* kAfterTest = R"(;
}

void main()
{
    if (isMark > 0.5 && !isMarked(textureCoordinate))
        discard;
    gl_FragColor = isMark > 0.5 ? vec4(markColor, 1.0) : texture2D(inputImageTexture, textureCoordinate);
}
)";

/// After the picture's.
constexpr int kMarkPass = 1;

constexpr GPUVector3 kGreen{0, 1, 0};

// The four corners' places within a rectangle, and how two triangles go round them.
constexpr std::array<CGPoint, 4> kPlaces{{{0, 0}, {1, 0}, {0, 1}, {1, 1}}};
constexpr std::array<std::size_t, 6> kTriangles{0, 1, 2, 2, 1, 3};

} // namespace

MarkGenerator::MarkGenerator(const std::string& isMarked)
    : GPUImageFilter(kBeforeTest + isMarked + kAfterTest)
    , m_halfWidthUniform(uniformIndex("halfWidth"))
    , m_colorUniform(uniformIndex("markColor"))
    , m_isMarkUniform(uniformIndex("isMark"))
{
    setColorRed(kGreen.one, kGreen.two, kGreen.three);
}

void MarkGenerator::setColorRed(float red, float green, float blue)
{
    setVec3({red, green, blue}, m_colorUniform, m_filterProgram);
}

FilterSelector MarkGenerator::colorOperation(std::string name)
{
    return filterOperation(std::move(name), &MarkGenerator::setColorRed, "The colour that is drawn in", kGreen.one,
                           kGreen.two, kGreen.three);
}

std::vector<CGPoint> MarkGenerator::points() const
{
    return valueFromVideoProcessingQueue([this] { return m_points; });
}

void MarkGenerator::setPoints(std::vector<CGPoint> points)
{
    runSynchronouslyOnVideoProcessingQueue([&] { m_points = std::move(points); });
}

void MarkGenerator::renderPoints(std::vector<CGPoint> points, const CMTime& frameTime)
{
    runSynchronouslyOnVideoProcessingQueue([&] {
        m_points = std::move(points);
        generateFrameAtTime(frameTime);
    });
}

float MarkGenerator::width() const
{
    return valueFromVideoProcessingQueue([this] { return m_width; });
}

void MarkGenerator::setWidth(float pixels)
{
    runSynchronouslyOnVideoProcessingQueue([&] { m_width = pixels; });
}

void MarkGenerator::setUniformsForProgramAtIndex(int programIndex)
{
    GPUImageFilter::setUniformsForProgramAtIndex(programIndex);
    glUniform1f(m_isMarkUniform, programIndex == kMarkPass ? 1.0F : 0.0F);
}

void MarkGenerator::drawMarks()
{
    const CGSize size = sizeOfFBO();
    std::vector<GLfloat> positions;
    std::vector<GLfloat> places;
    for (const Mark& mark : marksForSize(size)) {
        for (const std::size_t corner : kTriangles) {
            const CGPoint& at = mark.corners[corner];
            positions.push_back(static_cast<GLfloat>(2 * at.x / size.width - 1));
            positions.push_back(static_cast<GLfloat>(2 * at.y / size.height - 1));
            places.push_back(static_cast<GLfloat>(kPlaces[corner].x));
            places.push_back(static_cast<GLfloat>(kPlaces[corner].y));
        }
    }
    if (positions.empty())
        return;
    drawVertices(passAt(kMarkPass), nullptr,
                 {GL_TRIANGLES, static_cast<GLsizei>(positions.size() / 2), {positions.data()}, {places.data()}});
}

void MarkGenerator::renderToTextureWithVertices(const QuadCoordinates& vertices,
                                                const QuadCoordinates& textureCoordinates)
{
    if (preventRendering() || !canRender()) {
        dropFrame();
        return;
    }
    m_outputFramebuffer = beginOutput(m_backgroundColor);
    holdForCapture(*m_outputFramebuffer);
    if (m_firstInputFramebuffer)
        drawPass(firstPass(), m_firstInputFramebuffer, vertices, textureCoordinates);
    drawMarks();
    unlockInputs();
    signalCapture();
}

} // namespace lamina
