#include "gpu/filters/effect/PixelGrid.h"

namespace lamina {

const char* const kPixelGridShader = R"(
uniform float fractionalWidthOfAPixel;

vec2 cellMiddle(vec2 place)
{
    vec2 cell = max(fractionalWidthOfAPixel, 0.00001) / aspect;
    return place - mod(place, cell) + 0.5 * cell;
}
)";

} // namespace lamina
