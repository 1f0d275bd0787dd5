// The colour differences of Rec. ITU-R BT.601, Cr = (R - Y) / 1.402 and Cb = (B - Y) / 1.772.

#include "gpu/filters/color/ChromaKeying.h"

namespace lamina {

// By hand instead of smoothstep(), which may give anything where its ends meet.
const char* const kChromaKeyFunctions = R"(
uniform float thresholdSensitivity;
uniform float smoothing;
uniform vec3 colorToReplace;

vec2 chroma(vec3 color)
{
    float y = dot(color, vec3(0.2989, 0.5866, 0.1145));
    return vec2(0.7132 * (color.r - y), 0.5647 * (color.b - y));
}

float keptShare(vec3 color)
{
    float beyond = distance(chroma(color), chroma(colorToReplace)) - thresholdSensitivity;
    float share = clamp(beyond / max(smoothing, 0.0001), 0.0, 1.0);
    return share * share * (3.0 - 2.0 * share);
}
)";

} // namespace lamina
