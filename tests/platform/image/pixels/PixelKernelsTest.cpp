#include "platform/image/pixels/PixelKernels.h"

#include "EveryProcessor.h"
#include "platform/image/pixels/PixelMoveKernels_p.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <random>
#include <vector>

namespace lamina {
namespace {

using Bytes = std::vector<std::uint8_t>;

/// Random bytes with guards behind them; alpha is often 0, 1, 254 or 255.
Bytes noisePixels(std::size_t pixels)
{
    std::mt19937 random(11);
    Bytes bytes(4 * pixels);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const std::uint8_t value = static_cast<std::uint8_t>(random());
        constexpr std::uint8_t kEnds[] = {0, 1, 254, 255};
        bytes[i] = i % 4 == 3 && value % 2 == 0 ? kEnds[value / 2 % 4] : value;
    }
    return bytes;
}

/// Runs of pixels shorter, as long and longer than lanes.
constexpr std::size_t kLengths[] = {1, 3, 4, 15, 16, 17, 64, 131};

TEST(PixelKernels, LumaIsExactForEveryColour)
{
    int wrong = 0;
    for (int r = 0; r < 256; ++r) {
        for (int g = 0; g < 256; ++g) {
            for (int b = 0; b < 256; ++b) {
                const int wanted = (2126 * r + 7152 * g + 722 * b + 5000) / 10000;
                const auto byte = [](int v) { return static_cast<std::uint8_t>(v); };
                wrong += kernels::lumaOf(byte(r), byte(g), byte(b)) != wanted ? 1 : 0;
            }
        }
    }
    EXPECT_EQ(wrong, 0);
}

TEST(PixelKernels, AgreeWithTheirFormulasOnEveryProcessor)
{
    constexpr kernels::ByteOrder kOrder{3, 0, 2, 1};
    constexpr std::array<std::uint8_t, 4> kFilled{0, 0x0F, 0, 0x80};
    test::onEveryProcessor([&](const std::string& processor) {
        for (const std::size_t pixels : kLengths) {
            const Bytes in = noisePixels(pixels);
            Bytes multiplied(in.size() + 1, 0xAB);
            Bytes ordered(in.size() + 1, 0xAB);
            Bytes gray(pixels + 1, 0xAB);
            Bytes alphas(pixels + 1, 0xAB);
            kernels::premultiply(in.data(), pixels, multiplied.data());
            kernels::reorder(in.data(), pixels, kOrder, std::bit_cast<std::uint32_t>(kFilled), ordered.data());
            kernels::grayOf(multiplied.data(), pixels, gray.data(), alphas.data());
            int wrong = 0;
            for (std::size_t i = 0; i < in.size(); ++i) {
                const int alpha = in[i | 3];
                wrong += multiplied[i] != (i % 4 == 3 ? alpha : std::lround(in[i] * alpha / 255.0)) ? 1 : 0;
                wrong += ordered[i] != (in[i / 4 * 4 + kOrder[i % 4]] | kFilled[i % 4]) ? 1 : 0;
            }
            for (std::size_t i = 0; i < pixels; ++i) {
                const std::uint8_t* p = &multiplied[4 * i];
                const int alpha = p[3];
                const auto straight = [&](int c) {
                    return alpha == 0 ? 0 : std::min(255L, std::lround(c * 255.0 / alpha));
                };
                const long luma = (2126 * straight(p[0]) + 7152 * straight(p[1]) + 722 * straight(p[2]) + 5000) / 10000;
                wrong += gray[i] != std::lround(static_cast<double>(luma * alpha) / 255) ? 1 : 0;
                wrong += alphas[i] != alpha ? 1 : 0;
            }
            EXPECT_EQ(wrong, 0) << processor << ", " << pixels << " pixels";
            for (const Bytes* out : {&multiplied, &ordered, &gray, &alphas})
                EXPECT_EQ(out->back(), 0xAB) << processor;
        }
    });
}

TEST(PixelKernels, MovesPixelsAlikeOnEveryProcessor)
{
    constexpr std::array<std::uint8_t, 4> kFilled{0, 0, 0x80, 0};
    test::onEveryProcessor([&](const std::string& processor) {
        for (const std::size_t pixels : kLengths) {
            const Bytes in = noisePixels(pixels);
            Bytes copied(in.size() + 1, 0xAB);
            Bytes mirrored(in.size() + 1, 0xAB);
            const auto filled = std::bit_cast<std::uint32_t>(kFilled);
            kernels::copyPixels(in.data(), pixels, filled, copied.data());
            kernels::mirrorPixels(in.data(), pixels, filled, mirrored.data());
            int wrong = 0;
            for (std::size_t i = 0; i < in.size(); ++i) {
                const std::uint8_t wanted = in[i] | kFilled[i % 4];
                wrong += copied[i] != wanted ? 1 : 0;
                wrong += mirrored[4 * (pixels - 1 - i / 4) + i % 4] != wanted ? 1 : 0;
            }
            EXPECT_EQ(wrong, 0) << processor << ", " << pixels << " pixels";
            EXPECT_EQ(copied.back(), 0xAB);
            EXPECT_EQ(mirrored.back(), 0xAB);
        }
        // 29 of 41 columns of 70 rows: whole squares and rests on both sides, more rows than a tile has.
        constexpr int kWidth = 41;
        constexpr int kHeight = 70;
        constexpr int kEnd = 31;
        const Bytes in = noisePixels(kWidth * kHeight);
        Bytes out(4 * kWidth * kHeight, 0xAB);
        kernels::transposeColumns({in.data(), 4 * kWidth, {kWidth, kHeight}, out.data(), 4 * kHeight}, 2, kEnd, 0);
        int wrong = 0;
        for (int x = 0; x < kWidth; ++x) {
            for (int y = 0; y < kHeight; ++y) {
                const std::uint8_t* moved = &out[static_cast<std::size_t>(4 * (x * kHeight + y))];
                const std::uint8_t* from = &in[static_cast<std::size_t>(4 * (y * kWidth + x))];
                const bool isMoved = x >= 2 && x < kEnd;
                wrong += isMoved ? std::memcmp(moved, from, 4) != 0 : moved[0] != 0xAB || moved[3] != 0xAB;
            }
        }
        EXPECT_EQ(wrong, 0) << processor;
    });
}

} // namespace
} // namespace lamina
