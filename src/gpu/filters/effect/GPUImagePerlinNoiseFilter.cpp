#include "gpu/filters/effect/GPUImagePerlinNoiseFilter.h"

#include "gpu/core/HighPrecision.h"

namespace lamina {

namespace {

constexpr GPUVector4 kBlack{0, 0, 0, 1};
constexpr GPUVector4 kWhite{1, 1, 1, 1};
constexpr float kScale = 8;

constexpr const char* kPerlinNoiseFragmentShader = R"(
precision highp float;

varying vec2 textureCoordinate;
uniform vec4 colorStart;
uniform vec4 colorFinish;
uniform float scale;

// Of whole numbers: the half keeps a quotient that is rounded down from the next multiple.
vec4 mod289(vec4 x)
{
    return x - 289.0 * floor((x + 0.5) / 289.0);
}

vec4 permuted(vec4 x)
{
    return mod289((34.0 * x + 1.0) * x);
}

float noise(vec2 place)
{
    // The square's corners: left, top, right, bottom.
    vec4 corners = mod289(floor(place.xyxy) + vec4(0.0, 0.0, 1.0, 1.0));
    vec4 ways = fract(place.xyxy) - vec4(0.0, 0.0, 1.0, 1.0);
    vec4 x = ways.xzxz;
    vec4 y = ways.yyww;

    // Gradients at top left, top right, bottom left, bottom right: points on a diamond, drawn out towards a circle by
    // the tangent of the inverse root.
    vec4 drawn = permuted(permuted(corners.xzxz) + corners.yyww);
    vec4 gradientX = 2.0 * fract(drawn / 41.0) - 1.0;
    vec4 gradientY = abs(gradientX) - 0.5;
    gradientX -= floor(gradientX + 0.5);
    vec4 stretch = 1.79284291400159 - 0.85373472095314 * (gradientX * gradientX + gradientY * gradientY);

    vec4 heights = stretch * (gradientX * x + gradientY * y);
    vec2 t = ways.xy;
    vec2 share = t * t * t * (t * (6.0 * t - 15.0) + 10.0);
    vec2 row = mix(heights.xz, heights.yw, share.x);
    return 2.3 * mix(row.x, row.y, share.y);
}

void main()
{
    gl_FragColor = mix(colorStart, colorFinish, (noise(textureCoordinate * scale) + 1.0) / 2.0);
}
)";

} // namespace

GPUImagePerlinNoiseFilter::GPUImagePerlinNoiseFilter()
    : GPUImageFilter(needingHighPrecision("GPUImagePerlinNoiseFilter", kPerlinNoiseFragmentShader))
    , m_colorStartUniform(uniformIndex("colorStart"))
    , m_colorFinishUniform(uniformIndex("colorFinish"))
    , m_scaleUniform(uniformIndex("scale"))
{
    setColorStart(kBlack);
    setColorFinish(kWhite);
    setScale(kScale);
}

FilterDescription GPUImagePerlinNoiseFilter::describe()
{
    using Self = GPUImagePerlinNoiseFilter;
    return asGenerator(filterDescription<Self>(
        "GPUImagePerlinNoiseFilter", "effect", 1, "Clouds of one colour in another",
        {filterProperty("colorStart", &Self::setColorStart, kBlack, {0, 1}, "", "The one, with its alpha"),
         filterProperty("colorFinish", &Self::setColorFinish, kWhite, {0, 1}, "", "The other, with its alpha"),
         filterProperty("scale", &Self::setScale, kScale, {0, 40}, "squares", "How many hills and valleys across")}));
}

void GPUImagePerlinNoiseFilter::setColorStart(const GPUVector4& color)
{
    m_colorStart = color;
    setVec4(color, m_colorStartUniform, m_filterProgram);
}

void GPUImagePerlinNoiseFilter::setColorFinish(const GPUVector4& color)
{
    m_colorFinish = color;
    setVec4(color, m_colorFinishUniform, m_filterProgram);
}

void GPUImagePerlinNoiseFilter::setScale(float squares)
{
    m_scale = squares;
    setFloat(squares, m_scaleUniform, m_filterProgram);
}

} // namespace lamina
