// Nineteen exchanges bring the middle of nine to its place, and no fewer would (Smith, Implementing Median Filters in
// XC4000E FPGAs, Xilinx XCell 23, 1996; Knuth, The Art of Computer Programming, volume 3, 5.3.3 and 5.3.4).

#include "gpu/filters/blur/GPUImageMedianFilter.h"

#include <array>
#include <cstddef>
#include <string>
#include <utility>

namespace lamina {

namespace {

constexpr const char* kDeclarations = R"(
void exchange(inout vec4 less, inout vec4 more)
{
    vec4 least = min(less, more);
    more = max(less, more);
    less = least;
}
)";

/// Row by row.
constexpr std::array<const char*, 9> kPixels{"topLeft", "top",        "topRight", "left",       "color",
                                             "right",   "bottomLeft", "bottom",   "bottomRight"};

/// Rows of three are sorted, then columns as far as they reach the middle, then the diagonal.
constexpr std::array<std::pair<std::size_t, std::size_t>, 19> kExchanges{{{1, 2},
                                                                          {4, 5},
                                                                          {7, 8},
                                                                          {0, 1},
                                                                          {3, 4},
                                                                          {6, 7},
                                                                          {1, 2},
                                                                          {4, 5},
                                                                          {7, 8},
                                                                          {0, 3},
                                                                          {5, 8},
                                                                          {4, 7},
                                                                          {3, 6},
                                                                          {1, 4},
                                                                          {2, 5},
                                                                          {4, 7},
                                                                          {4, 2},
                                                                          {6, 4},
                                                                          {4, 2}}};

std::string fragmentShader()
{
    std::string statements;
    for (const auto& [less, more] : kExchanges)
        statements.append("    exchange(").append(kPixels[less]).append(", ").append(kPixels[more]).append(");\n");
    return neighbourhoodShader(NeighbourValue::Rgba, kDeclarations, statements + "\n    gl_FragColor = color;\n");
}

} // namespace

GPUImageMedianFilter::GPUImageMedianFilter()
    : GPUImage3x3TextureSamplingFilter(fragmentShader())
{
}

FilterDescription GPUImageMedianFilter::describe()
{
    return filterDescription<GPUImageMedianFilter>("GPUImageMedianFilter", "blur", 1,
                                                   "Takes specks away and leaves edges", texelProperties());
}

} // namespace lamina
