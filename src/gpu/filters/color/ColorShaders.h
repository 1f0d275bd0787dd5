#pragma once

#include <string>

namespace lamina {

/// The fragment shader of a filter that computes each pixel from that pixel alone.
///
/// `statements` find the pixel as `vec4 color`, straight, as stored, and write `gl_FragColor`. `declarations` are their
/// uniforms and functions. Both may call
///
///   float luminanceOf(vec3 c)          0.2125 red + 0.7154 green + 0.0721 blue (Rec. ITU-R BT.709, on stored values)
///   vec3 power(vec3 base, vec3 e)      base^e for base and e from 0; 0 where the base is, for e = 0 too
std::string colorShader(const std::string& declarations, const std::string& statements);

/// The same of a filter that computes each pixel from one that lies elsewhere: `placing` finds the pixel's own place as
/// `vec2 place` and changes it; `color` is what the picture has there. Beyond the border its outermost pixels go on.
std::string placedColorShader(const std::string& declarations, const std::string& placing,
                              const std::string& statements = "    gl_FragColor = color;");

} // namespace lamina
