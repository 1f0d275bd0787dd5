#include "gpu/endpoints/YUVConversion.h"

namespace lamina {

const char* const kGPUImageYUVVideoRangeConversionForLAFragmentShaderString = R"(
varying highp vec2 textureCoordinate;

uniform sampler2D luminanceTexture;
uniform sampler2D chrominanceTexture;
uniform mediump mat3 colorConversionMatrix;

void main()
{
    mediump vec3 yuv;
    lowp vec3 rgb;

    yuv.x = texture2D(luminanceTexture, textureCoordinate).r - (16.0 / 255.0);
    yuv.yz = texture2D(chrominanceTexture, textureCoordinate).ra - vec2(0.5, 0.5);
    rgb = colorConversionMatrix * yuv;

    gl_FragColor = vec4(rgb, 1.0);
}
)";

const char* const kGPUImageYUVFullRangeConversionForLAFragmentShaderString = R"(
varying highp vec2 textureCoordinate;

uniform sampler2D luminanceTexture;
uniform sampler2D chrominanceTexture;
uniform mediump mat3 colorConversionMatrix;

void main()
{
    mediump vec3 yuv;
    lowp vec3 rgb;

    yuv.x = texture2D(luminanceTexture, textureCoordinate).r;
    yuv.yz = texture2D(chrominanceTexture, textureCoordinate).ra - vec2(0.5, 0.5);
    rgb = colorConversionMatrix * yuv;

    gl_FragColor = vec4(rgb, 1.0);
}
)";

const GPUMatrix3x3& colorConversionMatrix(YCbCrMatrix tag, bool fullRange)
{
    const bool is709 = tag != YCbCrMatrix::None && tag != YCbCrMatrix::ITU_R_601_4;
    if (is709)
        return fullRange ? kColorConversionMatrix709FullRange : kColorConversionMatrix709;
    return fullRange ? kColorConversionMatrix601FullRange : kColorConversionMatrix601;
}

} // namespace lamina
