#include "gpu/filters/effect/GPUImageVoronoiConsumerFilter.h"

#include "gpu/core/GPUImageRotationMode.h"
#include "gpu/core/GPUVectors.h"
#include "gpu/core/VideoProcessingQueue.h"
#include "gpu/filters/effect/VoronoiCode.h"

namespace lamina {

namespace {

constexpr const char* kBody = R"(
varying vec2 textureCoordinate2;
uniform highp sampler2D inputImageTexture2;
uniform mat3 textureOfPicture;

void main()
{
    // Codes are exact at the middle of their pixels alone.
    vec4 code = texture2D(inputImageTexture2, middleOf(floor(textureCoordinate2 * size)));
    vec3 place = textureOfPicture * vec3(middleOf(pixelOf(code)), 1.0);
    gl_FragColor = isNone(code) ? vec4(0.0) : texture2D(inputImageTexture, place.xy);
}
)";

} // namespace

GPUImageVoronoiConsumerFilter::GPUImageVoronoiConsumerFilter()
    : GPUImageTwoInputFilter(voronoiShader("GPUImageVoronoiConsumerFilter", kBody))
    , m_sizeUniform(uniformIndex("size"))
    , m_uprightUniform(uniformIndex("textureOfPicture"))
{
    tellRotation();
}

FilterDescription GPUImageVoronoiConsumerFilter::describe()
{
    using Self = GPUImageVoronoiConsumerFilter;
    return filterDescription<Self>(
        "GPUImageVoronoiConsumerFilter", "effect", 2,
        "Fills the cells of a diagram by GPUImageJFAVoronoiFilter with the picture's colours at their points",
        {filterProperty("sizeInPixels", &Self::setSizeInPixels, CGSize(), {0, 65'535}, "pixels",
                        "Columns and rows of the diagram; 0x0: what it has")},
        {}, {"picture", "diagram"});
}

CGSize GPUImageVoronoiConsumerFilter::sizeInPixels() const
{
    return valueFromVideoProcessingQueue([this] { return m_sizeInPixels; });
}

void GPUImageVoronoiConsumerFilter::setSizeInPixels(CGSize size)
{
    runSynchronouslyOnVideoProcessingQueue([&] { m_sizeInPixels = size; });
}

void GPUImageVoronoiConsumerFilter::setInputSize(CGSize size, int textureIndex)
{
    GPUImageTwoInputFilter::setInputSize(size, textureIndex);
    if (textureIndex == 1)
        m_sizeOfDiagram = size;
}

void GPUImageVoronoiConsumerFilter::setInputRotation(GPUImageRotationMode rotation, int textureIndex)
{
    GPUImageTwoInputFilter::setInputRotation(rotation, textureIndex);
    tellRotation();
}

/// Where the picture's points lie in its texture: an affine map, as its columns.
void GPUImageVoronoiConsumerFilter::tellRotation()
{
    const auto place = [this](double x, double y) {
        const CGPoint p = rotatedPoint({x, y}, m_inputRotation);
        return GPUVector3{static_cast<float>(p.x), static_cast<float>(p.y), 1};
    };
    const GPUVector3 origin = place(0, 0);
    const auto fromOrigin = [&](const GPUVector3& p) { return GPUVector3{p.one - origin.one, p.two - origin.two, 0}; };
    setMatrix3f({fromOrigin(place(1, 0)), fromOrigin(place(0, 1)), origin}, m_uprightUniform, m_filterProgram);
}

void GPUImageVoronoiConsumerFilter::setUniformsForProgramAtIndex(int programIndex)
{
    GPUImageTwoInputFilter::setUniformsForProgramAtIndex(programIndex);
    const CGSize size = isMeasurable(m_sizeInPixels) ? m_sizeInPixels : m_sizeOfDiagram;
    glUniform2f(m_sizeUniform, static_cast<float>(size.width), static_cast<float>(size.height));
}

} // namespace lamina
