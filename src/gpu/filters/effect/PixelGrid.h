#pragma once

namespace lamina {

/// What shaders that draw large pixels have behind `kAspectRatioShader`: square cells, counted from the corner of the
/// input's texture, where the picture's top left is unless it lies turned.
///
///   uniform float fractionalWidthOfAPixel    side of a cell in widths; 0 and less: the picture's own pixels
///   vec2 cellMiddle(vec2 place)              c - mod(c, d) + d / 2,   d = (w, w / aspect ratio)
extern const char* const kPixelGridShader;

} // namespace lamina
