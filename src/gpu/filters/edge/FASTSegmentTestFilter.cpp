// The segment test of Rosten and Drummond, Machine Learning for High-Speed Corner Detection, 2006: the circle of radius
// 3 after Bresenham, and for the strength the sum of what the points differ by beyond the threshold.

#include "gpu/filters/edge/FASTSegmentTestFilter.h"

#include <array>
#include <cstddef>
#include <string>
#include <utility>

namespace lamina {

namespace {

/// In steps to the right and downwards, in a row around.
constexpr std::array<std::pair<int, int>, 16> kCircle{{{0, -3},
                                                       {1, -3},
                                                       {2, -2},
                                                       {3, -1},
                                                       {3, 0},
                                                       {3, 1},
                                                       {2, 2},
                                                       {1, 3},
                                                       {0, 3},
                                                       {-1, 3},
                                                       {-2, 2},
                                                       {-3, 1},
                                                       {-3, 0},
                                                       {-3, -1},
                                                       {-2, -2},
                                                       {-1, -3}}};
constexpr std::size_t kInARow = 12;

// Each pair is one for brighter points and one for darker ones. Half a step of 8 bits parts what is above the threshold
// from what is at it.
constexpr const char* kHead = R"(precision highp float;

uniform highp sampler2D inputImageTexture;
uniform highp float threshold;

varying vec2 textureCoordinate;
varying vec2 texelStep;

vec2 beyondThreshold(float centre, float x, float y)
{
    float difference = texture2D(inputImageTexture, textureCoordinate + vec2(x, y) * texelStep).r - centre;
    return vec2(difference, -difference) - threshold;
}

vec2 is(vec2 beyond)
{
    return step(vec2(0.00196), beyond);
}

void main()
{
    float centre = texture2D(inputImageTexture, textureCoordinate).r;
    vec2 sum = vec2(0.0);
    vec2 row = vec2(0.0);
    vec2 longest = vec2(0.0);
)";

constexpr const char* kTail = R"(
    vec2 strength = step(vec2(11.5), longest) * (threshold + sum / 16.0);
    gl_FragColor = vec4(vec3(max(strength.x, strength.y)), 1.0);
}
)";

std::string fragmentShader()
{
    std::string text = kHead;
    const auto point = [](std::size_t i) { return "point" + std::to_string(i % kCircle.size()); };
    for (std::size_t i = 0; i < kCircle.size(); ++i) {
        const auto [x, y] = kCircle[i];
        text.append("    vec2 " + point(i) + " = beyondThreshold(centre, " + std::to_string(x) + ".0, ");
        text.append(std::to_string(y) + ".0);\n    sum += is(" + point(i) + ") * " + point(i) + ";\n");
    }
    // A row may go on past the last point.
    for (std::size_t i = 0; i < kCircle.size() + kInARow - 1; ++i)
        text.append("    row = (row + 1.0) * is(" + point(i) + ");\n    longest = max(longest, row);\n");
    return text + kTail;
}

} // namespace

FASTSegmentTestFilter::FASTSegmentTestFilter()
    : TexelSampling<GPUImageFilter>(kGPUImageTexelStepVertexShaderString, fragmentShader())
    , m_thresholdUniform(uniformIndex("threshold"))
{
    setThreshold(kStart);
}

void FASTSegmentTestFilter::setThreshold(float threshold)
{
    m_threshold = threshold;
    setFloat(threshold, m_thresholdUniform, m_filterProgram);
}

} // namespace lamina
