#include "gpu/filters/blur/StepVertexShader.h"

namespace lamina {

const char* const kStepVertexShader = R"(attribute vec4 position;
attribute vec4 inputTextureCoordinate;

uniform float texelWidthOffset;
uniform float texelHeightOffset;

varying vec2 textureCoordinate;
varying vec2 singleStepOffset;

void main()
{
    gl_Position = position;
    textureCoordinate = inputTextureCoordinate.xy;
    singleStepOffset = vec2(texelWidthOffset, texelHeightOffset);
}
)";

} // namespace lamina
