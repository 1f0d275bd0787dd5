// Nineteen exchanges bring the middle of nine to its place, and no fewer would (Smith, Implementing Median Filters in
// XC4000E FPGAs, Xilinx XCell 23, 1996; Knuth, The Art of Computer Programming, volume 3, 5.3.3 and 5.3.4).

#include "gpu/filters/blur/GPUImageMedianFilter.h"

#include <array>
#include <string>
#include <utility>

namespace lamina {

namespace {

constexpr const char* kHead = R"(precision highp float;

uniform highp sampler2D inputImageTexture;

varying vec2 textureCoordinate;
varying vec2 leftTextureCoordinate;
varying vec2 rightTextureCoordinate;
varying vec2 topTextureCoordinate;
varying vec2 topLeftTextureCoordinate;
varying vec2 topRightTextureCoordinate;
varying vec2 bottomTextureCoordinate;
varying vec2 bottomLeftTextureCoordinate;
varying vec2 bottomRightTextureCoordinate;

void exchange(inout vec4 less, inout vec4 more)
{
    vec4 least = min(less, more);
    more = max(less, more);
    less = least;
}

void main()
{
    vec4 p0 = texture2D(inputImageTexture, topLeftTextureCoordinate);
    vec4 p1 = texture2D(inputImageTexture, topTextureCoordinate);
    vec4 p2 = texture2D(inputImageTexture, topRightTextureCoordinate);
    vec4 p3 = texture2D(inputImageTexture, leftTextureCoordinate);
    vec4 p4 = texture2D(inputImageTexture, textureCoordinate);
    vec4 p5 = texture2D(inputImageTexture, rightTextureCoordinate);
    vec4 p6 = texture2D(inputImageTexture, bottomLeftTextureCoordinate);
    vec4 p7 = texture2D(inputImageTexture, bottomTextureCoordinate);
    vec4 p8 = texture2D(inputImageTexture, bottomRightTextureCoordinate);

)";

/// Rows of three are sorted, then columns as far as they reach the middle, then the diagonal.
constexpr std::array<std::pair<int, int>, 19> kExchanges{{{1, 2},
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
    std::string text = kHead;
    for (const auto& [less, more] : kExchanges)
        text += "    exchange(p" + std::to_string(less) + ", p" + std::to_string(more) + ");\n";
    return text + "\n    gl_FragColor = p4;\n}\n";
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
