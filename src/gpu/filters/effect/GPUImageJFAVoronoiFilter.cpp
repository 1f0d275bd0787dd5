#include "gpu/filters/effect/GPUImageJFAVoronoiFilter.h"

#include "gpu/core/VideoProcessingQueue.h"
#include "gpu/filters/effect/VoronoiCode.h"

#include <algorithm>
#include <cmath>

namespace lamina {

namespace {

constexpr const char* kBody = R"(
uniform float sampleStep;

vec4 marked(vec4 color, vec2 own)
{
    float light = max(max(color.r, color.g), color.b) * color.a;
    return light >= 0.5 ? codeOf(own) : vec4(1.0);
}

vec4 nearest(vec2 own)
{
    vec4 best = vec4(1.0);
    float least = 1.0e20;
    for (int row = -1; row <= 1; row++) {
        for (int column = -1; column <= 1; column++) {
            vec2 there = own + sampleStep * vec2(float(column), float(row));
            bool isInside = all(greaterThanEqual(there, vec2(0.0))) && all(lessThan(there, size));
            vec4 code = isInside ? texture2D(inputImageTexture, middleOf(there)) : vec4(1.0);
            vec2 way = pixelOf(code) - own;
            float squared = isNone(code) ? least : dot(way, way);
            if (squared < least) {
                least = squared;
                best = code;
            }
        }
    }
    return best;
}

void main()
{
    vec2 own = floor(gl_FragCoord.xy);
    if (sampleStep > 0.5)
        gl_FragColor = nearest(own);
    else
        gl_FragColor = marked(texture2D(inputImageTexture, textureCoordinate), own);
}
)";

bool isUnset(CGSize size)
{
    return !isMeasurable(size);
}

} // namespace

GPUImageJFAVoronoiFilter::GPUImageJFAVoronoiFilter()
    : GPUImageFilter(voronoiShader("GPUImageJFAVoronoiFilter", kBody))
    , m_sizeUniform(uniformIndex("size"))
    , m_stepUniform(uniformIndex("sampleStep"))
{
}

FilterDescription GPUImageJFAVoronoiFilter::describe()
{
    using Self = GPUImageJFAVoronoiFilter;
    return filterDescription<Self>(
        "GPUImageJFAVoronoiFilter", "effect", 1,
        "Tells which of the bright points is nearest to each pixel, as a code for GPUImageVoronoiConsumerFilter",
        {filterProperty("sizeInPixels", &Self::setSizeInPixels, CGSize(), {0, 65'535}, "pixels",
                        "Columns and rows of the diagram; 0x0: the picture's")});
}

CGSize GPUImageJFAVoronoiFilter::sizeInPixels() const
{
    return valueFromVideoProcessingQueue([this] { return m_sizeInPixels; });
}

void GPUImageJFAVoronoiFilter::setSizeInPixels(CGSize size)
{
    runSynchronouslyOnVideoProcessingQueue([&] { m_sizeInPixels = {std::floor(size.width), std::floor(size.height)}; });
}

CGSize GPUImageJFAVoronoiFilter::sizeOfFBO() const
{
    return isUnset(m_sizeInPixels) ? GPUImageFilter::sizeOfFBO() : m_sizeInPixels;
}

int GPUImageJFAVoronoiFilter::passCount() const
{
    constexpr int kMarkingAndLast = 2;
    const CGSize size = sizeOfFBO();
    const double side = std::max({size.width, size.height, 1.0});
    return kMarkingAndLast + static_cast<int>(std::ceil(std::log2(side)));
}

int GPUImageJFAVoronoiFilter::stepOfPass(int index) const
{
    const int beforeLast = passCount() - 2;
    return index == 0 ? 0 : 1 << std::max(beforeLast - index, 0);
}

void GPUImageJFAVoronoiFilter::setUniformsForProgramAtIndex(int programIndex)
{
    GPUImageFilter::setUniformsForProgramAtIndex(programIndex);
    const CGSize size = sizeOfFBO();
    glUniform2f(m_sizeUniform, static_cast<float>(size.width), static_cast<float>(size.height));
    glUniform1f(m_stepUniform, static_cast<float>(stepOfPass(programIndex)));
}

} // namespace lamina
