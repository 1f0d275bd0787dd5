// Edges are where the gradient by Sobel's operator is steep (Sobel and Feldman, 1968; Gonzalez and Woods, Digital Image
// Processing, chapter 10); the rest is rounded to evenly spaced levels.

#include "gpu/filters/edge/PosterizedEdgesFilter.h"

#include <utility>

namespace lamina {

namespace {

constexpr float kQuantizationLevels = 10;

// The sampler's own precision, low if nothing is said, is that of what is read: at a threshold it decides between ink
// and paper.
constexpr const char* kPosterizedEdgesFragmentShader = R"(precision highp float;

uniform highp sampler2D inputImageTexture;
uniform highp float threshold;
uniform highp float quantizationLevels;

varying vec2 textureCoordinate;
varying vec2 leftTextureCoordinate;
varying vec2 rightTextureCoordinate;
varying vec2 topTextureCoordinate;
varying vec2 topLeftTextureCoordinate;
varying vec2 topRightTextureCoordinate;
varying vec2 bottomTextureCoordinate;
varying vec2 bottomLeftTextureCoordinate;
varying vec2 bottomRightTextureCoordinate;

void main()
{
    vec4 centre = texture2D(inputImageTexture, textureCoordinate);

    float topLeft = texture2D(inputImageTexture, topLeftTextureCoordinate).r;
    float top = texture2D(inputImageTexture, topTextureCoordinate).r;
    float topRight = texture2D(inputImageTexture, topRightTextureCoordinate).r;
    float left = texture2D(inputImageTexture, leftTextureCoordinate).r;
    float right = texture2D(inputImageTexture, rightTextureCoordinate).r;
    float bottomLeft = texture2D(inputImageTexture, bottomLeftTextureCoordinate).r;
    float bottom = texture2D(inputImageTexture, bottomTextureCoordinate).r;
    float bottomRight = texture2D(inputImageTexture, bottomRightTextureCoordinate).r;

    float h = -topLeft - 2.0 * top - topRight + bottomLeft + 2.0 * bottom + bottomRight;
    float v = -bottomLeft - 2.0 * left - topLeft + bottomRight + 2.0 * right + topRight;
    float mag = length(vec2(h, v));

    vec3 posterized = floor(centre.rgb * quantizationLevels + 0.5) / quantizationLevels;
    float test = 1.0 - step(threshold, mag);

    gl_FragColor = vec4(posterized * test, centre.a);
}
)";

} // namespace

PosterizedEdgesFilter::PosterizedEdgesFilter(float threshold)
    : GPUImage3x3TextureSamplingFilter(kPosterizedEdgesFragmentShader)
    , m_thresholdUniform(uniformIndex("threshold"))
    , m_quantizationLevelsUniform(uniformIndex("quantizationLevels"))
{
    setThreshold(threshold);
    setQuantizationLevels(kQuantizationLevels);
}

void PosterizedEdgesFilter::setThreshold(float threshold)
{
    m_threshold = threshold;
    setFloat(threshold, m_thresholdUniform, m_filterProgram);
}

void PosterizedEdgesFilter::setQuantizationLevels(float levels)
{
    m_quantizationLevels = levels;
    setFloat(levels, m_quantizationLevelsUniform, m_filterProgram);
}

std::vector<FilterProperty> PosterizedEdgesFilter::properties(float threshold)
{
    std::vector<FilterProperty> properties{
        filterProperty("threshold", &PosterizedEdgesFilter::setThreshold, threshold, {0, 4.5}, "",
                       "From which steepness on an edge goes black"),
        filterProperty("quantizationLevels", &PosterizedEdgesFilter::setQuantizationLevels, kQuantizationLevels,
                       {1, 255}, "steps", "Steps from black to white"),
    };
    for (FilterProperty& property : texelProperties())
        properties.push_back(std::move(property));
    return properties;
}

} // namespace lamina
