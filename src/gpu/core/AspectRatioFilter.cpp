#include "gpu/core/AspectRatioFilter.h"

namespace lamina {

const char* const kAspectRatioShader = R"(
uniform highp vec2 center;
uniform highp vec2 aspect;

vec2 wayFromCenter(vec2 place)
{
    return (place - center) * aspect;
}

float distanceFromCenter(vec2 place)
{
    return length(wayFromCenter(place));
}
)";

} // namespace lamina
