// The weights are the density of the normal distribution at whole distances, scaled to the sum of 1. A bell in two
// dimensions is the product of one down and one across, so two passes along lines do (Gonzalez and Woods, Digital Image
// Processing, chapter 3). Reading two neighbours at once rests on a t1 + b t2 = (a + b) mix(t1, t2, b / (a + b)), which
// the texture unit works out (Sigg and Hadwiger, Fast Third-Order Texture Filtering, GPU Gems 2, chapter 20).

#include "gpu/filters/blur/BlurShaders.h"

#include "gpu/core/FilterProgram.h"
#include "gpu/core/GPUImageContext.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>

namespace lamina {

namespace {

/// Pairs on each side whose places travel in varyings. An array takes a vector of four for each place, and the step one
/// more; seven pairs make sixteen. Every device has eight.
std::size_t pairsInVaryings()
{
    constexpr std::size_t kMost = 7;
    constexpr int kPixelAndStep = 2;
    constexpr int kLeastVectors = 8;
    const int vectors = std::max(GPUImageContext::maximumVaryingVectorsForThisDevice(), kLeastVectors);
    return std::min(kMost, static_cast<std::size_t>(vectors - kPixelAndStep) / 2);
}

/// Six decimals with a point, whatever the locale.
std::string decimal(double value)
{
    std::array<char, 64> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed, 6);
    return {text.data(), end.ptr};
}

/// Two neighbours that are read at once: `weight` is that of both, `offset` the place between them in steps.
struct Pair {
    double offset;
    double weight;
};

std::vector<Pair> pairsOf(const BlurWeights& weights)
{
    std::vector<Pair> pairs;
    for (std::size_t i = 1; i < weights.size(); i += 2) {
        const double near = weights[i];
        const double far = i + 1 < weights.size() ? weights[i + 1] : 0.0;
        const double sum = near + far;
        const auto step = static_cast<double>(i);
        pairs.push_back({sum > 0 ? (near * step + far * (step + 1)) / sum : step, sum});
    }
    return pairs;
}

std::string place(std::size_t index)
{
    return "blurCoordinates[" + std::to_string(index) + "]";
}

/// "+ singleStepOffset * 1.500000", or with a minus.
std::string stepsAway(double steps)
{
    return std::string(steps < 0 ? "- " : "+ ") + "singleStepOffset * " + decimal(std::abs(steps));
}

/// `steps[k]` is how far entry k lies from the pixel. `handsOutStep` for a fragment shader that computes places of its
/// own: it could not declare the offsets itself where its best precision is below the vertex shader's, as a uniform of
/// both must have the same precision in both.
std::string vertexShader(const std::vector<double>& steps, bool handsOutStep)
{
    std::string text = R"(attribute vec4 position;
attribute vec4 inputTextureCoordinate;

uniform float texelWidthOffset;
uniform float texelHeightOffset;

varying vec2 blurCoordinates[)" +
                       std::to_string(steps.size()) + "];\n";
    if (handsOutStep)
        text += "varying vec2 singleStepOffset;\n";
    text += "\nvoid main()\n{\n    gl_Position = position;\n\n";
    text += handsOutStep ? "    " : "    vec2 ";
    text += "singleStepOffset = vec2(texelWidthOffset, texelHeightOffset);\n";
    for (std::size_t k = 0; k < steps.size(); ++k) {
        text += "    " + place(k) + " = inputTextureCoordinate.xy";
        text += steps[k] == 0 ? ";\n" : " " + stepsAway(steps[k]) + ";\n";
    }
    return text + "}\n";
}

/// What differs between the sums: their type and start, what of a read is added, and what is written.
struct Sum {
    const char* declaration;
    const char* component;
    const char* result;
};

constexpr Sum sumOf(BlurChannels channels)
{
    return channels == BlurChannels::All ? Sum{"highp vec4 sum = vec4(0.0)", "", "sum"}
                                         : Sum{"highp float sum = 0.0", ".r", "vec4(vec3(sum), 1.0)"};
}

/// Everything before the sum. The step is declared where the sum computes places of its own.
std::string fragmentShaderHead(const Sum& sum, std::size_t places, bool needsStep)
{
    std::string text = "precision highp float;\n\nuniform highp sampler2D inputImageTexture;\n";
    text += "\nvarying highp vec2 blurCoordinates[" + std::to_string(places) + "];\n";
    if (needsStep)
        text += "varying highp vec2 singleStepOffset;\n";
    text += "\nvoid main()\n{\n";
    return text + "    " + sum.declaration + ";\n";
}

std::string fragmentShaderTail(const Sum& sum)
{
    return std::string("    gl_FragColor = ") + sum.result + ";\n}\n";
}

std::string addend(const Sum& sum, const std::string& where, double weight)
{
    return "    sum += texture2D(inputImageTexture, " + where + ")" + sum.component + " * " + decimal(weight) + ";\n";
}

} // namespace

BlurWeights normalisedBlurWeights(const std::vector<double>& line)
{
    double total = -line.front();
    for (const double weight : line)
        total += 2 * weight;
    BlurWeights weights;
    weights.reserve(line.size());
    for (const double weight : line)
        weights.push_back(static_cast<float>(weight / total));
    return weights;
}

BlurWeights gaussianBlurWeights(unsigned radius, double sigma)
{
    if (radius < 1 || !(sigma > 0))
        return {1.0F};
    std::vector<double> bell(radius + std::size_t{1});
    for (std::size_t i = 0; i < bell.size(); ++i) {
        const double distance = static_cast<double>(i) / sigma;
        bell[i] = std::exp(-distance * distance / 2);
    }
    return normalisedBlurWeights(bell);
}

BlurWeights boxBlurWeights(unsigned radius)
{
    return normalisedBlurWeights(std::vector<double>(radius + std::size_t{1}, 1.0));
}

std::string standardBlurVertexShader(const BlurWeights& weights)
{
    if (weights.size() < 2)
        return kGPUImageVertexShaderString;
    const auto radius = static_cast<int>(weights.size() - 1);
    std::vector<double> steps;
    for (int step = -radius; step <= radius; ++step)
        steps.push_back(step);
    return vertexShader(steps, false);
}

std::string standardBlurFragmentShader(const BlurWeights& weights, BlurChannels channels)
{
    if (weights.size() < 2)
        return kGPUImagePassthroughFragmentShaderString;
    const Sum sum = sumOf(channels);
    const std::size_t radius = weights.size() - 1;
    const std::size_t places = 2 * radius + 1;
    std::string text = fragmentShaderHead(sum, places, false);
    for (std::size_t k = 0; k < places; ++k)
        text += addend(sum, place(k), weights[k < radius ? radius - k : k - radius]);
    return text + fragmentShaderTail(sum);
}

std::string optimizedBlurVertexShader(const BlurWeights& weights)
{
    if (weights.size() < 2)
        return kGPUImageVertexShaderString;
    const std::vector<Pair> pairs = pairsOf(weights);
    std::vector<double> steps{0};
    const std::size_t handedOut = std::min(pairs.size(), pairsInVaryings());
    for (std::size_t j = 0; j < handedOut; ++j) {
        steps.push_back(pairs[j].offset);
        steps.push_back(-pairs[j].offset);
    }
    return vertexShader(steps, pairs.size() > handedOut);
}

std::string optimizedBlurFragmentShader(const BlurWeights& weights, BlurChannels channels)
{
    if (weights.size() < 2)
        return kGPUImagePassthroughFragmentShaderString;
    const Sum sum = sumOf(channels);
    const std::vector<Pair> pairs = pairsOf(weights);
    const std::size_t handedOut = std::min(pairs.size(), pairsInVaryings());

    std::string text = fragmentShaderHead(sum, 1 + 2 * handedOut, pairs.size() > handedOut);
    text += addend(sum, place(0), weights[0]);
    for (std::size_t j = 0; j < handedOut; ++j) {
        text += addend(sum, place(2 * j + 1), pairs[j].weight);
        text += addend(sum, place(2 * j + 2), pairs[j].weight);
    }
    for (std::size_t j = handedOut; j < pairs.size(); ++j) {
        text += addend(sum, place(0) + " " + stepsAway(pairs[j].offset), pairs[j].weight);
        text += addend(sum, place(0) + " " + stepsAway(-pairs[j].offset), pairs[j].weight);
    }
    return text + fragmentShaderTail(sum);
}

std::string blurVertexShader(const BlurWeights& weights, BlurReads reads)
{
    if (weights.size() < 2 || reads == BlurReads::Pairs)
        return optimizedBlurVertexShader(weights);
    return vertexShader({0}, true);
}

/// Places are computed one coordinate at a time: the other one leads to the same row or column for all, which is then
/// looked for once.
std::string blurFragmentShader(const BlurWeights& weights, BlurChannels channels, BlurReads reads)
{
    if (weights.size() < 2 || reads == BlurReads::Pairs)
        return optimizedBlurFragmentShader(weights, channels);
    const Sum sum = sumOf(channels);
    const auto away = [&](const char* sign, std::size_t steps) {
        const std::string way = std::string(" ") + sign + " " + decimal(static_cast<double>(steps)) + " * step";
        return reads == BlurReads::EachDown ? "vec2(pixel.x, pixel.y" + way + ")" : "vec2(pixel.x" + way + ", pixel.y)";
    };
    std::string text = fragmentShaderHead(sum, 1, true);
    text += "    highp vec2 pixel = blurCoordinates[0];\n    highp float step = singleStepOffset.";
    text += reads == BlurReads::EachDown ? "y;\n" : "x;\n";
    text += addend(sum, "pixel", weights[0]);
    for (std::size_t i = 1; i < weights.size(); ++i) {
        text += "    sum += (texture2D(inputImageTexture, " + away("+", i) + ")" + sum.component;
        text += " + texture2D(inputImageTexture, " + away("-", i) + ")" + sum.component;
        text += ") * " + decimal(static_cast<double>(weights[i])) + ";\n";
    }
    return text + fragmentShaderTail(sum);
}

} // namespace lamina
