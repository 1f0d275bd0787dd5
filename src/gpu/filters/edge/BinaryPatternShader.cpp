// Ojala, Pietikainen and Maenpaa, Multiresolution Gray-Scale and Rotation Invariant Texture Classification with Local
// Binary Patterns, IEEE Transactions on Pattern Analysis and Machine Intelligence 24, 2002: eight neighbours, counted
// from the right one counter-clockwise.

#include "gpu/filters/edge/BinaryPatternShader.h"

#include <initializer_list>

namespace lamina {

std::string binaryPatternShader(NeighbourValue value)
{
    const bool red = value == NeighbourValue::Red;
    std::string statements = red ? "    float least = color.r - 0.00196;\n    float sum = 0.0;\n"
                                 : "    vec3 least = color.rgb - 0.00196;\n    vec3 sum = vec3(0.0);\n";
    int bit = 1;
    for (const char* name : {"right", "topRight", "top", "topLeft", "left", "bottomLeft", "bottom", "bottomRight"}) {
        statements.append("    sum += ").append(std::to_string(bit)).append(".0 * step(least, ");
        statements.append(name).append(");\n");
        bit *= 2;
    }
    return neighbourhoodShader(value, "", statements + "    gl_FragColor = vec4(vec3(sum / 255.0), 1.0);\n");
}

} // namespace lamina
