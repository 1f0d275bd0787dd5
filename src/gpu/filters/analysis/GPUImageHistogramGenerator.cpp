#include "gpu/filters/analysis/GPUImageHistogramGenerator.h"

namespace lamina {

namespace {

constexpr GPUVector4 kBlack{0, 0, 0, 1};

constexpr const char* kFragmentShader = R"(
precision highp float;

varying vec2 textureCoordinate;

uniform highp sampler2D inputImageTexture;
uniform vec4 backgroundColor;

void main()
{
    float height = 1.0 - textureCoordinate.y;
    vec3 bins = texture2D(inputImageTexture, vec2(textureCoordinate.x, 0.5)).rgb;
    vec3 lit = step(height, bins);
    float any = max(lit.r, max(lit.g, lit.b));
    gl_FragColor = mix(backgroundColor, vec4(lit, 1.0), any);
}
)";

} // namespace

GPUImageHistogramGenerator::GPUImageHistogramGenerator()
    : GPUImageFilter(kFragmentShader)
    , m_backgroundColorUniform(uniformIndex("backgroundColor"))
{
    setBackgroundColor(kBlack);
}

void GPUImageHistogramGenerator::setBackgroundColor(const GPUVector4& color)
{
    m_background = color;
    setVec4(color, m_backgroundColorUniform, m_filterProgram);
}

void GPUImageHistogramGenerator::setInputSize(CGSize size, int textureIndex)
{
    const bool isThere = size.width > 0 && size.height > 0;
    GPUImageFilter::setInputSize(isThere ? CGSize{size.width, kHeight} : size, textureIndex);
}

FilterDescription GPUImageHistogramGenerator::describe()
{
    using Self = GPUImageHistogramGenerator;
    return filterDescription<Self>(
        "GPUImageHistogramGenerator", "detection", 1,
        "Draws a histogram's bins as bars: behind GPUImageHistogramFilter in a pipeline",
        {filterProperty("backgroundColor", &Self::setBackgroundColor, kBlack, {0, 1}, "", "Behind the bars")});
}

} // namespace lamina
