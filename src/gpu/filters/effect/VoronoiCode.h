#pragma once

#include <string>

namespace lamina {

// A diagram by Voronoi as a picture: each pixel holds the place of the marked point that is nearest to it. Columns and
// rows count from the top left corner, from 0; each is written as two bytes, the higher first: the column in red and
// green, the row in blue and alpha. White, all 255, says that there is no such point.

/// A fragment shader that reads or writes such codes: `body` behind a head with high precision and
///
///   uniform vec2 size                      of the diagram in pixels
///   vec4 codeOf(vec2 pixel)                of whole numbers from 0 to 65534
///   vec2 pixelOf(vec4 code)
///   bool isNone(vec4 code)
///   vec2 middleOf(vec2 pixel)              its place in texture coordinates
///
/// Low precision can't count pixels: on a device that has no other in fragment shaders it doesn't build, and the log
/// names `className`.
std::string voronoiShader(const std::string& className, const std::string& body);

} // namespace lamina
