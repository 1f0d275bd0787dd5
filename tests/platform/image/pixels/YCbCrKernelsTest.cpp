#include "platform/image/pixels/YCbCrKernels.h"

#include "EveryProcessor.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace lamina::test {

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint8_t kGuard = 0xAB;

Bytes randomBytes(std::size_t count)
{
    std::mt19937 random(static_cast<unsigned>(count));
    Bytes bytes(count);
    for (std::uint8_t& byte : bytes)
        byte = random() % 4 == 0 ? static_cast<std::uint8_t>(random() % 2 * 255) : static_cast<std::uint8_t>(random());
    return bytes;
}

/// The formulas in real numbers.
struct Exact {
    double red;
    double blue;
    bool isFull;

    double lumaSteps() const { return isFull ? 1 : 219.0 / 255; }
    double chromaSteps() const { return isFull ? 1 : 224.0 / 255; }
    double black() const { return isFull ? 0 : 16; }
    std::array<double, 3> rgb(double y, double cb, double cr) const
    {
        const double luma = (y - black()) / lumaSteps();
        const double r = luma + 2 * (1 - red) * (cr - 128) / chromaSteps();
        const double b = luma + 2 * (1 - blue) * (cb - 128) / chromaSteps();
        return {r, (luma - red * r - blue * b) / (1 - red - blue), b};
    }
    std::array<double, 3> yCbCr(double r, double g, double b) const
    {
        const double luma = red * r + (1 - red - blue) * g + blue * b;
        return {black() + luma * lumaSteps(), 128 + (b - luma) / (2 * (1 - blue)) * chromaSteps(),
                128 + (r - luma) / (2 * (1 - red)) * chromaSteps()};
    }
};

/// How many bytes are further than a step from what they should be.
class Misses {
public:
    void compare(std::uint8_t got, double exact)
    {
        m_count += std::abs(got - std::clamp(exact, 0.0, 255.0)) > 1 ? 1 : 0;
    }
    void compare(bool isRight) { m_count += isRight ? 0 : 1; }
    int count() const { return m_count; }

private:
    int m_count = 0;
};

int missesOfColors(std::size_t pixels, const Exact& exact, const YCbCrWeights& weights)
{
    Misses misses;
    const std::size_t chromaBytes = (pixels + 1) / 2 * 2;
    const Bytes in = randomBytes(4 * pixels);
    const Bytes lower = randomBytes(4 * pixels + 1);
    Bytes luma(pixels + 1, kGuard);
    Bytes chroma(chromaBytes + 1, kGuard);
    kernels::lumaOfPixels(in.data(), pixels, weights, luma.data());
    kernels::chromaOfPixels(in.data(), lower.data(), pixels, weights, chroma.data());
    for (std::size_t i = 0; i < pixels; ++i)
        misses.compare(luma[i], exact.yCbCr(in[4 * i + 2], in[4 * i + 1], in[4 * i])[0]);
    for (std::size_t i = 0; i < pixels; i += 2) {
        const auto mean = [&](std::size_t c) {
            const std::size_t a = 4 * i + c;
            const std::size_t b = i + 1 < pixels ? a + 4 : a;
            return (in[a] + in[b] + lower[a] + lower[b]) / 4.0;
        };
        const auto of = exact.yCbCr(mean(2), mean(1), mean(0));
        misses.compare(chroma[i], of[1]);
        misses.compare(chroma[i + 1], of[2]);
    }
    misses.compare(luma[pixels] == kGuard && chroma[chromaBytes] == kGuard);

    for (const bool redFirst : {false, true}) {
        Bytes out(4 * pixels + 1, kGuard);
        kernels::pixelsOfYCbCr(luma.data(), lower.data(), pixels, weights, redFirst, out.data());
        for (std::size_t i = 0; i < pixels; ++i) {
            const auto of = exact.rgb(luma[i], lower[i / 2 * 2], lower[i / 2 * 2 + 1]);
            for (std::size_t c = 0; c < 3; ++c)
                misses.compare(out[4 * i + c], of[redFirst ? c : 2 - c]);
            misses.compare(out[4 * i + 3] == 255);
        }
        misses.compare(out[4 * pixels] == kGuard);
    }
    return misses.count();
}

int missesOfMoves(std::size_t pixels)
{
    Misses misses;
    const std::size_t chromaBytes = (pixels + 1) / 2 * 2;
    const Bytes in = randomBytes(4 * pixels + 4);
    Bytes luma(pixels + 1, kGuard);
    Bytes chroma(chromaBytes + 1, kGuard);
    Bytes out(4 * pixels + 1, kGuard);
    for (const bool flag : {false, true}) {
        kernels::splitPairs(in.data(), pixels, flag, luma.data(), chroma.data());
        kernels::pixelsOfTriples(in.data(), pixels, flag, out.data());
        for (std::size_t i = 0; i < pixels; ++i) {
            misses.compare(luma[i] == in[2 * i + (flag ? 1 : 0)]);
            misses.compare(chroma[i] == in[2 * i + (flag ? 0 : 1)]);
            for (std::size_t c = 0; c < 3; ++c)
                misses.compare(out[4 * i + c] == in[3 * i + (flag ? 2 - c : c)]);
        }
        misses.compare(chroma[chromaBytes - 1] == in[2 * chromaBytes - (flag ? 2 : 1)]);
    }
    Bytes pairs(2 * pixels + 1, kGuard);
    kernels::interleave(in.data(), in.data() + pixels, pixels, pairs.data());
    Bytes mean(in.begin(), in.begin() + static_cast<std::ptrdiff_t>(pixels));
    mean.push_back(kGuard);
    kernels::averageInto(in.data() + pixels, pixels, mean.data());
    Bytes levels(pixels + 1, kGuard);
    kernels::changeLevels(in.data(), pixels, {16, 9539, 0}, levels.data());
    for (std::size_t i = 0; i < pixels; ++i) {
        misses.compare(pairs[2 * i] == in[i] && pairs[2 * i + 1] == in[pixels + i]);
        misses.compare(mean[i] == (in[i] + in[pixels + i] + 1) / 2);
        misses.compare(levels[i], (in[i] - 16) * 255.0 / 219);
    }
    misses.compare(luma[pixels] == kGuard && chroma[chromaBytes] == kGuard && out[4 * pixels] == kGuard &&
                   pairs[2 * pixels] == kGuard && mean[pixels] == kGuard && levels[pixels] == kGuard);
    return misses.count();
}

TEST(YCbCrKernels, FollowTheirFormulasOnEveryProcessor)
{
    onEveryProcessor([](const std::string& what) {
        for (const std::size_t pixels : {1, 2, 31, 64, 1001}) {
            for (const bool isFull : {false, true}) {
                for (const auto& [red, blue] : {std::pair(0.299, 0.114), std::pair(0.2627, 0.0593)}) {
                    EXPECT_EQ(missesOfColors(pixels, {red, blue, isFull}, {red, blue, isFull}), 0)
                        << what << ", " << pixels << " pixels, full range " << isFull << ", red " << red;
                }
            }
            EXPECT_EQ(missesOfMoves(pixels), 0) << what << ", " << pixels << " pixels";
        }
    });
}

TEST(YCbCrKernels, GreysStayGreys)
{
    Bytes greys;
    for (int i = 0; i < 256; ++i)
        greys.insert(greys.end(), 4, static_cast<std::uint8_t>(i));
    const YCbCrWeights weights(0.299, 0.114, true);
    Bytes luma(256);
    Bytes chroma(256);
    Bytes back(4 * 256);
    kernels::lumaOfPixels(greys.data(), 256, weights, luma.data());
    kernels::chromaOfPixels(greys.data(), greys.data(), 256, weights, chroma.data());
    kernels::pixelsOfYCbCr(luma.data(), chroma.data(), 256, weights, true, back.data());
    EXPECT_EQ(chroma, Bytes(256, 128));
    for (std::size_t i = 3; i < greys.size(); i += 4)
        greys[i] = 255;
    EXPECT_EQ(back, greys);
}

} // namespace

} // namespace lamina::test
