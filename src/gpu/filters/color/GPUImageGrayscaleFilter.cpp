// The luma of ITU-R BT.709 in the four digits in which Poynton's Color FAQ gives the weights.

#include "gpu/filters/color/GPUImageGrayscaleFilter.h"
#include "gpu/kernels/ColorKernels.h"

namespace lamina {

namespace {

constexpr const char* kGrayscaleFragmentShader = R"(
precision highp float;

varying vec2 textureCoordinate;
uniform highp sampler2D inputImageTexture;

const vec3 W = vec3(0.2125, 0.7154, 0.0721);

void main()
{
    vec4 color = texture2D(inputImageTexture, textureCoordinate);
    gl_FragColor = vec4(vec3(dot(color.rgb, W)), color.a);
}
)";

} // namespace

GPUImageGrayscaleFilter::GPUImageGrayscaleFilter()
    : GPUImageFilter(kGrayscaleFragmentShader)
{
}

FilterDescription GPUImageGrayscaleFilter::describe()
{
    return filterDescription<GPUImageGrayscaleFilter>("GPUImageGrayscaleFilter", "editor", 1, "Shades of grey");
}

void GPUImageGrayscaleFilter::renderToTextureWithVertices(const QuadCoordinates& vertices,
                                                          const QuadCoordinates& textureCoordinates)
{
    if (!currentlyReceivingMonochromeInput())
        GPUImageFilter::renderToTextureWithVertices(vertices, textureCoordinates);
}

FilterKernel GPUImageGrayscaleFilter::kernel() const
{
    constexpr kernels::ColorWeights kLuminance{0.2125F, 0.7154F, 0.0721F, 0, 0};
    return kernels::matrixKernel({kLuminance, kLuminance, kLuminance, kernels::kSameColors[3]});
}

} // namespace lamina
