#include "gpu/filters/blur/KuwaharaShaders.h"

#include <array>
#include <cstdlib>

namespace lamina {

namespace {

constexpr const char* kHead = R"(precision highp float;

varying highp vec2 textureCoordinate;
varying highp vec2 singleStepOffset;
uniform highp sampler2D inputImageTexture;

vec4 center;
vec4 best;
float leastVariance;
)";

// Colours are told from the pixel's own: squares of what is small keep their digits.
constexpr const char* kConsider = R"(
vec4 readAt(float right, float down)
{
    return texture2D(inputImageTexture, textureCoordinate + vec2(right, down) * singleStepOffset) - center;
}

void consider(vec4 sum, vec4 squares)
{
    vec4 mean = sum / kSamples;
    float variance = dot(squares / kSamples - mean * mean, vec4(1.0));
    if (variance < leastVariance) {
        leastVariance = variance;
        best = center + mean;
    }
}
)";

constexpr const char* kMain = R"(
void main()
{
    center = texture2D(inputImageTexture, textureCoordinate);
    best = center;
    leastVariance = 5.0;
)";

constexpr const char* kTail = "    gl_FragColor = best;\n}\n";

constexpr const char* kQuadrant = R"(
void considerQuadrant(float toRight, float toBottom)
{
    vec4 sum = vec4(0.0);
    vec4 squares = vec4(0.0);
    for (int down = 0; down <= kRadius; down++) {
        for (int right = 0; right <= kRadius; right++) {
            vec4 color = readAt(float(right) * toRight, float(down) * toBottom);
            sum += color;
            squares += color * color;
        }
    }
    consider(sum, squares);
}
)";

std::string head(unsigned radius)
{
    return kHead + ("\nconst float kSamples = " + std::to_string((radius + 1) * (radius + 1))) + ".0;\n" + kConsider;
}

/// A corner of the square around the pixel, as the signs of the ways there.
struct Quadrant {
    int toRight;
    int toBottom;

    bool holds(int right, int down) const { return right * toRight >= 0 && down * toBottom >= 0; }
};

constexpr std::array<Quadrant, 4> kQuadrants{{{-1, -1}, {1, -1}, {1, 1}, {-1, 1}}};

std::string numbered(const char* name, std::size_t number)
{
    return name + std::to_string(number);
}

} // namespace

std::string kuwaharaShader(unsigned radius)
{
    std::string text = head(radius) + "\nconst int kRadius = " + std::to_string(radius) + ";\n" + kQuadrant + kMain;
    for (const Quadrant& quadrant : kQuadrants)
        text += "    considerQuadrant(" + std::to_string(quadrant.toRight) + ".0, " +
                std::to_string(quadrant.toBottom) + ".0);\n";
    return text + kTail;
}

std::string unrolledKuwaharaShader(unsigned radius)
{
    std::string text = head(radius) + kMain + "    vec4 color;\n    vec4 square;\n";
    for (std::size_t i = 0; i < kQuadrants.size(); ++i)
        text += "    vec4 " + numbered("sum", i) + " = vec4(0.0), " + numbered("squares", i) + " = vec4(0.0);\n";
    const auto reach = static_cast<int>(radius);
    for (int down = -reach; down <= reach; ++down) {
        for (int right = -reach; right <= reach; ++right) {
            text += "    color = readAt(" + std::to_string(right) + ".0, " + std::to_string(down) + ".0);\n";
            text += "    square = color * color;\n";
            for (std::size_t i = 0; i < kQuadrants.size(); ++i) {
                if (kQuadrants[i].holds(right, down))
                    text += "    " + numbered("sum", i) + " += color; " + numbered("squares", i) + " += square;\n";
            }
        }
    }
    for (std::size_t i = 0; i < kQuadrants.size(); ++i)
        text += "    consider(" + numbered("sum", i) + ", " + numbered("squares", i) + ");\n";
    return text + kTail;
}

} // namespace lamina
