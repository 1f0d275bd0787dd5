// Sobel and Feldman, 1968; Prewitt, Object Enhancement and Extraction, 1970; both in Gonzalez and Woods, Digital Image
// Processing, chapter 10.

#include "gpu/filters/edge/GradientShader.h"

#include "gpu/core/GPUImage3x3TextureSamplingFilter.h"

namespace lamina {

std::string gradientShader(EdgeOperator edgeOperator, const std::string& declarations, const std::string& statements)
{
    const std::string middle = edgeOperator == EdgeOperator::Sobel ? "2.0" : "1.0";
    const std::string gradient = "    vec2 gradient = vec2(topRight - topLeft + " + middle +
                                 " * (right - left) + bottomRight - bottomLeft,\n"
                                 "                         bottomLeft - topLeft + " +
                                 middle + " * (bottom - top) + bottomRight - topRight);\n";
    return neighbourhoodShader(NeighbourValue::Red, declarations, gradient + statements);
}

} // namespace lamina
