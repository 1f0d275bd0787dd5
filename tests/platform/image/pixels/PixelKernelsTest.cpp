#include "platform/image/pixels/PixelKernels.h"

#include "EveryProcessor.h"
#include "platform/image/pixels/PixelArithmetic.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <random>
#include <vector>

namespace lamina::test {
namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint8_t kGuard = 0xAB;

/// Every colour under every alpha: 65536 pixels whose three colours are the same but for two in every 256.
Bytes everyColorAndAlpha()
{
    Bytes bytes;
    for (unsigned i = 0; i < 65536; ++i) {
        const auto color = static_cast<std::uint8_t>(i >> 8);
        const auto other = static_cast<std::uint8_t>(255 - color);
        bytes.insert(bytes.end(),
                     {color, i % 256 == 7 ? other : color, i % 256 == 9 ? other : color, static_cast<std::uint8_t>(i)});
    }
    return bytes;
}

TEST(PixelArithmetic, LumaIsExactForEveryColour)
{
    int wrong = 0;
    for (int i = 0; i < 1 << 24; ++i) {
        const int r = i >> 16;
        const int g = i >> 8 & 255;
        const int b = i & 255;
        const auto byte = [](int v) { return static_cast<std::uint8_t>(v); };
        wrong += lumaOf(byte(r), byte(g), byte(b)) != (2126 * r + 7152 * g + 722 * b + 5000) / 10000 ? 1 : 0;
    }
    EXPECT_EQ(wrong, 0);
}

TEST(PixelKernels, FollowTheirFormulas)
{
    const Bytes in = everyColorAndAlpha();
    const std::size_t pixels = in.size() / 4;
    Bytes multiplied(in.size());
    Bytes straight = in;
    Bytes cut = in;
    Bytes gray(pixels);
    Bytes alphas(pixels);
    kernels::premultiply(in.data(), pixels, multiplied.data());
    kernels::unpremultiply(straight.data(), pixels);
    kernels::cutToAlpha(cut.data(), pixels);
    kernels::grayOf(in.data(), pixels, gray.data(), alphas.data());
    int wrong = 0;
    for (std::size_t i = 0; i < in.size(); ++i) {
        const int alpha = in[i | 3];
        const bool isAlpha = i % 4 == 3;
        const long divided = alpha == 0 ? 0 : std::min(255L, std::lround(in[i] * 255.0 / alpha));
        wrong += multiplied[i] != (isAlpha ? alpha : std::lround(in[i] * alpha / 255.0)) ? 1 : 0;
        wrong += straight[i] != (isAlpha ? alpha : divided) ? 1 : 0;
        wrong += cut[i] != std::min<int>(in[i], alpha) ? 1 : 0;
    }
    for (std::size_t i = 0; i < pixels; ++i) {
        const std::uint8_t* p = &straight[4 * i];
        wrong += gray[i] != std::lround(lumaOf(p[0], p[1], p[2]) * p[3] / 255.0) ? 1 : 0;
        wrong += alphas[i] != p[3] ? 1 : 0;
    }
    EXPECT_EQ(wrong, 0);
}

TEST(PixelKernels, FindTheOnePixelThatIsNotOpaque)
{
    for (std::size_t pixels = 1; pixels < 70; ++pixels) {
        Bytes row(4 * pixels, 0);
        kernels::setOpaque(row.data(), pixels);
        EXPECT_TRUE(kernels::isOpaque(row.data(), pixels));
        EXPECT_EQ(std::ranges::count(row, 255), static_cast<std::ptrdiff_t>(pixels));
        row[4 * (pixels / 3) + 3] = 254;
        EXPECT_FALSE(kernels::isOpaque(row.data(), pixels)) << pixels;
    }
}

/// What all kernels make of runs of pixels shorter, as long and longer than lanes, with a guard behind each.
Bytes everyKernel(const Bytes& noise)
{
    constexpr kernels::ByteOrder kOrder{3, 0, 2, 1};
    constexpr std::array<std::uint8_t, 4> kFilled{0, 0x0F, 0, 0x80};
    Bytes all;
    for (const std::size_t pixels : {1, 3, 4, 15, 16, 17, 64, 131}) {
        Bytes multiplied(4 * pixels + 1, kGuard);
        Bytes ordered = multiplied;
        Bytes cut(noise.begin(), noise.begin() + static_cast<std::ptrdiff_t>(4 * pixels));
        cut.push_back(kGuard);
        Bytes gray(pixels + 1, kGuard);
        Bytes alphas = gray;
        kernels::premultiply(noise.data(), pixels, multiplied.data());
        kernels::reorder(noise.data(), pixels, kOrder, std::bit_cast<std::uint32_t>(kFilled), ordered.data());
        kernels::cutToAlpha(cut.data(), pixels);
        kernels::grayOf(multiplied.data(), pixels, gray.data(), alphas.data());
        for (const Bytes& out : {multiplied, ordered, cut, gray, alphas}) {
            EXPECT_EQ(out.back(), kGuard) << pixels;
            all.insert(all.end(), out.begin(), out.end());
        }
    }
    return all;
}

TEST(PixelKernels, GiveTheSameBytesOnEveryProcessor)
{
    std::mt19937 random(11);
    Bytes noise(4 * 131);
    std::ranges::generate(noise, [&] { return static_cast<std::uint8_t>(random()); });
    const Bytes wanted = everyKernel(noise);
    onEveryProcessor([&](const std::string& processor) { EXPECT_TRUE(everyKernel(noise) == wanted) << processor; });
    // The first run is one pixel: what each byte of it is.
    EXPECT_EQ(wanted[5], noise[3]);
    EXPECT_EQ(wanted[6], noise[0] | 0x0F);
    EXPECT_EQ(wanted[7], noise[2]);
    EXPECT_EQ(wanted[8], noise[1] | 0x80);
}

} // namespace
} // namespace lamina::test
