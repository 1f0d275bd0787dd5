#pragma once

namespace lamina {

/// Hands out `textureCoordinate` and, for fragment shaders that compute places of their own, `singleStepOffset`: the
/// step of `texelWidthOffset` and `texelHeightOffset` from one pixel to the next.
extern const char* const kStepVertexShader;

} // namespace lamina
