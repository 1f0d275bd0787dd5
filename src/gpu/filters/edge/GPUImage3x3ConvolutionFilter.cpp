// Spatial filtering with a 3 x 3 mask that is not turned around: strictly a correlation (Gonzalez and Woods, Digital
// Image Processing, chapter 3).

#include "gpu/filters/edge/GPUImage3x3ConvolutionFilter.h"

#include <utility>
#include <vector>

namespace lamina {

namespace {

constexpr GPUMatrix3x3 kCentreAlone{{0, 0, 0}, {0, 1, 0}, {0, 0, 0}};

// A row of the kernel goes to a column of the matrix, and the first index is the column's: [r][c] reads as in the
// kernel. Sums are made at high precision: with weights of some size, the rounding of medium precision shows in 8 bits.
constexpr const char* kConvolutionFragmentShader = R"(precision highp float;

uniform highp sampler2D inputImageTexture;
uniform mediump mat3 convolutionMatrix;

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
    highp vec3 topLeft = texture2D(inputImageTexture, topLeftTextureCoordinate).rgb;
    highp vec3 top = texture2D(inputImageTexture, topTextureCoordinate).rgb;
    highp vec3 topRight = texture2D(inputImageTexture, topRightTextureCoordinate).rgb;
    highp vec3 left = texture2D(inputImageTexture, leftTextureCoordinate).rgb;
    highp vec4 centre = texture2D(inputImageTexture, textureCoordinate);
    highp vec3 right = texture2D(inputImageTexture, rightTextureCoordinate).rgb;
    highp vec3 bottomLeft = texture2D(inputImageTexture, bottomLeftTextureCoordinate).rgb;
    highp vec3 bottom = texture2D(inputImageTexture, bottomTextureCoordinate).rgb;
    highp vec3 bottomRight = texture2D(inputImageTexture, bottomRightTextureCoordinate).rgb;

    highp vec3 result = topLeft * convolutionMatrix[0][0] + top * convolutionMatrix[0][1]
                        + topRight * convolutionMatrix[0][2];
    result += left * convolutionMatrix[1][0] + centre.rgb * convolutionMatrix[1][1] + right * convolutionMatrix[1][2];
    result += bottomLeft * convolutionMatrix[2][0] + bottom * convolutionMatrix[2][1]
            + bottomRight * convolutionMatrix[2][2];

    gl_FragColor = vec4(result, centre.a);
}
)";

} // namespace

GPUImage3x3ConvolutionFilter::GPUImage3x3ConvolutionFilter()
    : GPUImage3x3TextureSamplingFilter(kConvolutionFragmentShader)
    , m_convolutionMatrixUniform(uniformIndex("convolutionMatrix"))
{
    setConvolutionKernel(kCentreAlone);
}

void GPUImage3x3ConvolutionFilter::setConvolutionKernel(const GPUMatrix3x3& kernel)
{
    m_convolutionKernel = kernel;
    setMatrix3f(kernel, m_convolutionMatrixUniform, m_filterProgram);
}

FilterDescription GPUImage3x3ConvolutionFilter::describe()
{
    std::vector<FilterProperty> properties = texelProperties();
    properties.insert(properties.begin(),
                      filterProperty("convolutionKernel", &GPUImage3x3ConvolutionFilter::setConvolutionKernel,
                                     kCentreAlone, {-8, 8}, "",
                                     "Weights of the rows above, at and below the pixel, each from left to right"));
    return filterDescription<GPUImage3x3ConvolutionFilter>("GPUImage3x3ConvolutionFilter", "editor", 1,
                                                           "Weighs a pixel and its neighbours by a matrix",
                                                           std::move(properties));
}

} // namespace lamina
