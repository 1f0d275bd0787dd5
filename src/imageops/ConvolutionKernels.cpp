#include "imageops/ConvolutionKernels_p.h"

#include <algorithm>
#include <array>
#include <bit>
#include <utility>

// Kernels of 3 × 3 as in R. C. Gonzalez, R. E. Woods, "Digital Image Processing": the Laplacian with diagonals finds
// edges, and added to the picture sharpens it; a difference along one diagonal embosses. The blur is the binomial
// kernel of 5 × 5, which comes near the Gaussian.

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imageops/ConvolutionKernels.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace lamina::filters {
namespace HWY_NAMESPACE {

/// Three by three.
struct Kernel {
    int divisor;                ///< 1 or 9
    bool keepsAlpha;            ///< and has no bias
    std::array<int, 9> weights; ///< row by row
};

constexpr Kernel kEmboss{1, false, {-2, 0, 0, 0, 1, 0, 0, 0, 2}};
constexpr Kernel kSharpen{1, false, {-1, -1, -1, -1, 9, -1, -1, -1, -1}};
constexpr Kernel kUnsharpen{9, false, {-1, -1, -1, -1, 17, -1, -1, -1, -1}};
constexpr Kernel kEdges{1, true, {-1, -1, -1, -1, 8, -1, -1, -1, -1}};

/// 2^16 / 9, rounded up: the high half of a product with it is the quotient rounded down, less 1 for negative
/// multiples.
constexpr int kNinth = 7282;

constexpr bool ninthIsExact()
{
    for (int sum = -8 * 255; sum <= 17 * 255; ++sum) {
        if ((sum * kNinth >> 16) + (sum < 0 ? 1 : 0) != sum / 9)
            return false;
    }
    return true;
}
static_assert(ninthIsExact());

#if HWY_TARGET != HWY_SCALAR

namespace hn = hwy::HWY_NAMESPACE;

using Sums = hn::ScalableTag<std::int16_t>;
using Bytes = hn::Rebind<std::uint8_t, Sums>;
using Pixels = hn::Repartition<std::uint32_t, Bytes>;

/// Adds what one pixel of the kernel weighs.
template <const Kernel& K, std::size_t Index>
HWY_INLINE hn::Vec<Sums> weigh(hn::Vec<Sums> sum, const std::uint8_t* const* rows, std::size_t at)
{
    constexpr int weight = K.weights[Index];
    if constexpr (weight == 0) {
        return sum;
    } else {
        const auto in = hn::PromoteTo(Sums(), hn::LoadU(Bytes(), rows[Index / 3] + at + 4 * (Index % 3)));
        if constexpr (weight == 1)
            return hn::Add(sum, in);
        else if constexpr (weight == -1)
            return hn::Sub(sum, in);
        else
            return hn::Add(sum, hn::Mul(in, hn::Set(Sums(), weight)));
    }
}

/// The sum divided, at a place that counts from the left end of the kernel.
template <const Kernel& K, std::size_t... Index>
HWY_INLINE hn::Vec<Sums> quotient(const std::uint8_t* const* rows, std::size_t at, std::index_sequence<Index...>)
{
    auto sum = hn::Zero(Sums());
    ((sum = weigh<K, Index>(sum, rows, at)), ...);
    if constexpr (K.divisor == 9)
        return hn::Sub(hn::MulHigh(sum, hn::Set(Sums(), kNinth)), hn::ShiftRight<15>(sum));
    else
        return sum;
}

/// The last two steps: the bias and the clip.
HWY_INLINE hn::Vec<Bytes> clipped(hn::Vec<Sums> value, const ConvolutionRow& row)
{
    const auto bytes = hn::DemoteTo(Bytes(), hn::Add(value, hn::Set(Sums(), static_cast<std::int16_t>(row.bias))));
    const auto filled =
        hn::Set(Pixels(), std::bit_cast<std::uint32_t>(std::array<std::uint8_t, 4>{row.filled, 0, 0, 0}));
    return hn::Or(bytes, hn::BitCast(Bytes(), filled));
}

#endif

std::uint8_t clippedSample(int value, std::size_t at, const ConvolutionRow& row)
{
    const int byte = std::clamp(value + row.bias, 0, 255);
    return static_cast<std::uint8_t>(at % 4 == 0 ? byte | row.filled : byte);
}

template <const Kernel& K>
void convolve(const ConvolutionRow& row, std::uint8_t* HWY_RESTRICT out)
{
    const std::array<const std::uint8_t*, 3> rows{row.rows[0], row.rows[1], row.rows[2]};
    const std::size_t samples = 4 * row.pixels - 8;
    std::size_t i = 0;
#if HWY_TARGET != HWY_SCALAR
    constexpr std::make_index_sequence<9> indices;
    const auto first = hn::Set(Pixels(), std::bit_cast<std::uint32_t>(std::array<std::uint8_t, 4>{255, 0, 0, 0}));
    const std::size_t n = hn::Lanes(Sums());
    for (; i + n <= samples; i += n) {
        const auto value = quotient<K>(rows.data(), i, indices);
        if constexpr (K.keepsAlpha) {
            const auto mask = hn::MaskFromVec(hn::BitCast(Bytes(), first));
            const auto middle = hn::LoadU(Bytes(), rows[1] + i + 4);
            hn::StoreU(hn::IfThenElse(mask, middle, hn::DemoteTo(Bytes(), value)), Bytes(), out + 4 + i);
        } else {
            hn::StoreU(clipped(value, row), Bytes(), out + 4 + i);
        }
    }
#endif
    for (; i < samples; ++i) {
        int sum = 0;
        for (std::size_t k = 0; k < 9; ++k)
            sum += K.weights[k] * rows[k / 3][i + 4 * (k % 3)];
        if (K.keepsAlpha)
            out[4 + i] = i % 4 == 0 ? rows[1][4 + i] : static_cast<std::uint8_t>(std::clamp(sum, 0, 255));
        else
            out[4 + i] = clippedSample(sum / K.divisor, i, row);
    }
}

#if HWY_TARGET != HWY_SCALAR

using Columns = hn::RebindToUnsigned<Sums>;

/// 1 4 6 4 1
HWY_INLINE hn::Vec<Columns> binomial(hn::Vec<Columns> a, hn::Vec<Columns> b, hn::Vec<Columns> c, hn::Vec<Columns> d,
                                     hn::Vec<Columns> e)
{
    const auto quadruple = hn::ShiftLeft<2>(hn::Add(hn::Add(b, d), c));
    return hn::Add(hn::Add(quadruple, hn::Add(c, c)), hn::Add(a, e));
}

#endif

constexpr int binomial(int a, int b, int c, int d, int e)
{
    return a + 4 * b + 6 * c + 4 * d + e;
}

/// Sums of five rows, at most 16 · 255.
void sumColumns(const std::array<const std::uint8_t*, 5>& r, std::size_t at, std::size_t count,
                std::uint16_t* HWY_RESTRICT columns)
{
    std::size_t i = 0;
#if HWY_TARGET != HWY_SCALAR
    const auto load = [&](std::size_t row) { return hn::PromoteTo(Columns(), hn::LoadU(Bytes(), r[row] + at + i)); };
    for (const std::size_t n = hn::Lanes(Columns()); i + n <= count; i += n)
        hn::StoreU(binomial(load(0), load(1), load(2), load(3), load(4)), Columns(), columns + i);
#endif
    for (; i < count; ++i) {
        const std::size_t k = at + i;
        columns[i] = static_cast<std::uint16_t>(binomial(r[0][k], r[1][k], r[2][k], r[3][k], r[4][k]));
    }
}

/// First down the columns, a stretch that stays near the processor at a time, then along the row: sums of at most
/// 2^16 - 256.
void blur(const ConvolutionRow& row, std::uint8_t* HWY_RESTRICT out)
{
    constexpr std::size_t kStretch = 1024;
    std::array<std::uint16_t, kStretch + 16> columns;
    std::array<const std::uint8_t*, 5> rows;
    std::copy_n(row.rows, rows.size(), rows.begin());
    const std::size_t samples = 4 * row.pixels - 16;
    for (std::size_t at = 0; at < samples; at += kStretch) {
        const std::size_t count = std::min(kStretch, samples - at);
        sumColumns(rows, at, count + 16, columns.data());
        std::uint8_t* stretch = out + 8 + at;
        std::size_t i = 0;
#if HWY_TARGET != HWY_SCALAR
        const auto load = [&](std::size_t pixel) { return hn::LoadU(Columns(), columns.data() + i + 4 * pixel); };
        for (const std::size_t n = hn::Lanes(Columns()); i + n <= count; i += n) {
            const auto sum = binomial(load(0), load(1), load(2), load(3), load(4));
            hn::StoreU(clipped(hn::BitCast(Sums(), hn::ShiftRight<8>(sum)), row), Bytes(), stretch + i);
        }
#endif
        for (; i < count; ++i) {
            const std::uint16_t* c = &columns[i];
            stretch[i] = clippedSample(binomial(c[0], c[4], c[8], c[12], c[16]) / 256, i, row);
        }
    }
}

void ConvolveRow(Convolution kind, const ConvolutionRow& row, std::uint8_t* HWY_RESTRICT out)
{
    switch (kind) {
    case Convolution::Emboss:
        return convolve<kEmboss>(row, out);
    case Convolution::Sharpen:
        return convolve<kSharpen>(row, out);
    case Convolution::Unsharpen:
        return convolve<kUnsharpen>(row, out);
    case Convolution::GaussianBlur:
        return blur(row, out);
    case Convolution::EdgeDetection:
        return convolve<kEdges>(row, out);
    }
}

} // namespace HWY_NAMESPACE
} // namespace lamina::filters
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace lamina::filters {

HWY_EXPORT(ConvolveRow);

void convolveRow(Convolution kind, const ConvolutionRow& row, std::uint8_t* out)
{
    HWY_DYNAMIC_DISPATCH(ConvolveRow)(kind, row, out);
}

} // namespace lamina::filters

#endif
