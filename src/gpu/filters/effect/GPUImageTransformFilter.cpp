#include "gpu/filters/effect/GPUImageTransformFilter.h"

#include "gpu/core/FilterProgram.h"
#include "gpu/core/VideoProcessingQueue.h"

#include <cstddef>

namespace lamina {

namespace {

constexpr const char* kVertexShader = R"(
attribute vec4 position;
attribute vec4 inputTextureCoordinate;

uniform mat4 transformMatrix;
uniform mat4 orthographicMatrix;

varying vec2 textureCoordinate;

void main()
{
    gl_Position = transformMatrix * vec4(position.xyz, 1.0) * orthographicMatrix;
    textureCoordinate = inputTextureCoordinate.xy;
}
)";

GPUMatrix4x4 inSpace(const CGAffineTransform& t)
{
    const auto number = [](double value) { return static_cast<float>(value); };
    return {{number(t.a), number(t.b), 0, 0},
            {number(t.c), number(t.d), 0, 0},
            {0, 0, 1, 0},
            {number(t.tx), number(t.ty), 0, 1}};
}

/// Takes the rectangle to clip space, by columns of what row vectors are multiplied with. Depth is flattened, so that
/// nothing is cut off in front or behind.
GPUMatrix4x4 orthographicMatrixOf(const CGRect& extent)
{
    const double across = 2 / extent.size.width;
    const double down = 2 / extent.size.height;
    return {{static_cast<float>(across), 0, 0, static_cast<float>(-across * extent.midX())},
            {0, static_cast<float>(down), 0, static_cast<float>(-down * extent.midY())},
            {0, 0, 0, 0},
            {0, 0, 0, 1}};
}

} // namespace

GPUImageTransformFilter::GPUImageTransformFilter()
    : GPUImageFilter(kVertexShader, kGPUImagePassthroughFragmentShaderString)
    , m_transformUniform(uniformIndex("transformMatrix"))
    , m_orthographicUniform(uniformIndex("orthographicMatrix"))
{
    setTransform3D(GPUMatrix4x4::identity());
    tellExtent();
}

FilterDescription GPUImageTransformFilter::describe()
{
    using Self = GPUImageTransformFilter;
    return filterDescription<Self>(
        "GPUImageTransformFilter", "effect", 1, "Moves, turns, scales and tilts the picture within its frame",
        {filterProperty("affineTransform", &Self::setAffineTransform, CGAffineTransform(), {}, "half widths",
                        "x' = A x + C y + TX, y' = B x + D y + TY about the middle; 0,1,-1,0,0,0: a quarter turn"),
         filterProperty("transform3D", &Self::setTransform3D, GPUMatrix4x4::identity(), {}, "half widths",
                        "The same in space, in place of affineTransform; the third row's last number gives depth"),
         filterProperty("ignoreAspectRatio", &Self::setIgnoreAspectRatio, false, {}, "",
                        "1: heights are measured in half heights, and turning distorts"),
         filterProperty("anchorTopLeft", &Self::setAnchorTopLeft, false, {}, "",
                        "1: about the top left corner, in whole widths")});
}

CGAffineTransform GPUImageTransformFilter::affineTransform() const
{
    const GPUMatrix4x4 m = transform3D();
    const auto number = [](float value) { return static_cast<double>(value); };
    return {number(m.one.one), number(m.one.two),  number(m.two.one),
            number(m.two.two), number(m.four.one), number(m.four.two)};
}

void GPUImageTransformFilter::setAffineTransform(const CGAffineTransform& transform)
{
    setTransform3D(inSpace(transform));
}

GPUMatrix4x4 GPUImageTransformFilter::transform3D() const
{
    return valueFromVideoProcessingQueue([this] { return m_transform3D; });
}

void GPUImageTransformFilter::setTransform3D(const GPUMatrix4x4& transform)
{
    runSynchronouslyOnVideoProcessingQueue([&] {
        m_transform3D = transform;
        setMatrix4f(transform, m_transformUniform, m_filterProgram);
    });
}

bool GPUImageTransformFilter::ignoreAspectRatio() const
{
    return valueFromVideoProcessingQueue([this] { return m_ignoreAspectRatio; });
}

void GPUImageTransformFilter::setIgnoreAspectRatio(bool ignore)
{
    runSynchronouslyOnVideoProcessingQueue([&] {
        m_ignoreAspectRatio = ignore;
        tellExtent();
    });
}

bool GPUImageTransformFilter::anchorTopLeft() const
{
    return valueFromVideoProcessingQueue([this] { return m_anchorTopLeft; });
}

void GPUImageTransformFilter::setAnchorTopLeft(bool anchor)
{
    runSynchronouslyOnVideoProcessingQueue([&] {
        m_anchorTopLeft = anchor;
        tellExtent();
    });
}

CGRect GPUImageTransformFilter::extent() const
{
    const double height = m_ignoreAspectRatio ? 1 : m_heightOverWidth;
    return m_anchorTopLeft ? CGRect{0, 0, 1, height} : CGRect{-1, -height, 2, 2 * height};
}

void GPUImageTransformFilter::tellExtent()
{
    setMatrix4f(orthographicMatrixOf(extent()), m_orthographicUniform, m_filterProgram);
}

void GPUImageTransformFilter::setupFilterForSize(CGSize filterFrameSize)
{
    // There is no size while there is no source.
    if (!isMeasurable(filterFrameSize))
        return;
    m_heightOverWidth = filterFrameSize.height / filterFrameSize.width;
    tellExtent();
}

void GPUImageTransformFilter::renderToTextureWithVertices(const QuadCoordinates& vertices,
                                                          const QuadCoordinates& textureCoordinates)
{
    const CGRect place = extent();
    QuadCoordinates corners = vertices;
    for (std::size_t i = 0; i < corners.size(); i += 2) {
        corners[i] = static_cast<GLfloat>(place.midX() + static_cast<double>(vertices[i]) * place.size.width / 2);
        corners[i + 1] =
            static_cast<GLfloat>(place.midY() + static_cast<double>(vertices[i + 1]) * place.size.height / 2);
    }
    GPUImageFilter::renderToTextureWithVertices(corners, textureCoordinates);
}

} // namespace lamina
