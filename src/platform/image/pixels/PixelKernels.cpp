#include "platform/image/pixels/PixelKernels.h"

#include "platform/image/pixels/PixelArithmetic.h"

#include <algorithm>
#include <bit>
#include <cstring>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "platform/image/pixels/PixelKernels.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace lamina::kernels {
namespace HWY_NAMESPACE {

// Every loop below ends in a plain one, which does the last pixels, and all of them where there are no lanes. A lane
// holds one pixel as a number whose lowest byte comes first in memory: lanes exist on little-endian processors alone.
#if HWY_TARGET != HWY_SCALAR

namespace hn = hwy::HWY_NAMESPACE;

using Bytes = hn::ScalableTag<std::uint8_t>;
using Pairs = hn::Repartition<std::uint16_t, Bytes>;
using Pixels = hn::Repartition<std::uint32_t, Bytes>;
using Ints = hn::Repartition<std::int32_t, Bytes>;
using Floats = hn::Repartition<float, Bytes>;

HWY_INLINE hn::Vec<Pixels> loadPixels(const std::uint8_t* p)
{
    return hn::BitCast(Pixels(), hn::LoadU(Bytes(), p));
}

/// t/255 of the products of two bytes, rounded, times 256 and with a rest below.
HWY_INLINE hn::Vec<Pairs> dividedBy255(hn::Vec<Pairs> product)
{
    const auto t = hn::Add(product, hn::Set(Pairs(), std::uint16_t{128}));
    return hn::Add(t, hn::ShiftRight<8>(t));
}

template <int Place>
HWY_INLINE hn::Vec<Pixels> colorOf(hn::Vec<Pixels> rgba)
{
    return hn::And(hn::ShiftRight<8 * Place>(rgba), hn::Set(Pixels(), 0xFF));
}

/// A premultiplied colour as it is without its alpha of 1 or more.
HWY_INLINE hn::Vec<Pixels> straightColor(hn::Vec<Pixels> color, hn::Vec<Pixels> alpha, hn::Vec<Floats> divisor)
{
    // Whole numbers below 2^24: the quotient's fraction is never rounded up to a whole one.
    const auto scaled = hn::Add(hn::Mul(color, hn::Set(Pixels(), 255)), hn::ShiftRight<1>(alpha));
    const auto quotient = hn::Div(hn::ConvertTo(Floats(), hn::BitCast(Ints(), scaled)), divisor);
    const auto cut = hn::Min(quotient, hn::Set(Floats(), 255.0F));
    return hn::BitCast(Pixels(), hn::ConvertTo(Ints(), cut));
}

#endif

void Premultiply(const std::uint8_t* in, std::size_t pixels, std::uint8_t* out)
{
    const std::size_t samples = 4 * pixels;
    std::size_t i = 0;
#if HWY_TARGET != HWY_SCALAR
    // Red and blue are the lower bytes of a pixel's two pairs; green and alpha the upper ones, where alpha times 255
    // stays.
    alignas(16) static constexpr std::uint8_t kAlpha[16] = {3,  0x80, 3,  0x80, 7,  0x80, 7,  0x80,
                                                            11, 0x80, 11, 0x80, 15, 0x80, 15, 0x80};
    const auto alphaLanes = hn::LoadDup128(Bytes(), kAlpha);
    const auto keep = hn::BitCast(Pairs(), hn::Set(Pixels(), 0x00FF0000));
    const auto low = hn::Set(Pairs(), std::uint16_t{0x00FF});
    const std::size_t n = hn::Lanes(Bytes());
    for (; i + n <= samples; i += n) {
        const auto value = hn::LoadU(Bytes(), in + i);
        const auto pairs = hn::BitCast(Pairs(), value);
        const auto alpha = hn::BitCast(Pairs(), hn::TableLookupBytesOr0(value, alphaLanes));
        const auto redBlue = dividedBy255(hn::Mul(hn::And(pairs, low), alpha));
        const auto greenAlpha = dividedBy255(hn::Mul(hn::ShiftRight<8>(pairs), hn::Or(alpha, keep)));
        const auto joined = hn::Or(hn::ShiftRight<8>(redBlue), hn::AndNot(low, greenAlpha));
        hn::StoreU(hn::BitCast(Bytes(), joined), Bytes(), out + i);
    }
#endif
    for (; i < samples; i += 4) {
        const std::uint8_t alpha = in[i + 3];
        for (std::size_t c = 0; c < 3; ++c)
            out[i + c] = mul255(in[i + c], alpha);
        out[i + 3] = alpha;
    }
}

void CutToAlpha(std::uint8_t* row, std::size_t pixels)
{
    const std::size_t samples = 4 * pixels;
    std::size_t i = 0;
#if HWY_TARGET != HWY_SCALAR
    alignas(16) static constexpr std::uint8_t kAlpha[16] = {3, 3, 3, 3, 7, 7, 7, 7, 11, 11, 11, 11, 15, 15, 15, 15};
    const auto lanes = hn::LoadDup128(Bytes(), kAlpha);
    const std::size_t n = hn::Lanes(Bytes());
    for (; i + n <= samples; i += n) {
        const auto value = hn::LoadU(Bytes(), row + i);
        hn::StoreU(hn::Min(value, hn::TableLookupBytes(value, lanes)), Bytes(), row + i);
    }
#endif
    for (; i < samples; i += 4) {
        for (std::size_t c = 0; c < 3; ++c)
            row[i + c] = std::min(row[i + c], row[i + 3]);
    }
}

void Reorder(const std::uint8_t* in, std::size_t pixels, ByteOrder order, std::uint32_t filled, std::uint8_t* out)
{
    const std::size_t samples = 4 * pixels;
    std::size_t i = 0;
#if HWY_TARGET != HWY_SCALAR
    alignas(16) std::uint8_t places[16];
    for (std::size_t k = 0; k < 16; ++k)
        places[k] = static_cast<std::uint8_t>(order[k % 4] + k / 4 * 4);
    const auto lanes = hn::LoadDup128(Bytes(), places);
    const auto bits = hn::BitCast(Bytes(), hn::Set(Pixels(), filled));
    const std::size_t n = hn::Lanes(Bytes());
    for (; i + n <= samples; i += n) {
        const auto moved = hn::TableLookupBytes(hn::LoadU(Bytes(), in + i), lanes);
        hn::StoreU(hn::Or(moved, bits), Bytes(), out + i);
    }
#endif
    for (; i < samples; i += 4) {
        const std::uint8_t bytes[4] = {in[i + order[0]], in[i + order[1]], in[i + order[2]], in[i + order[3]]};
        const std::uint32_t pixel = std::bit_cast<std::uint32_t>(bytes) | filled;
        std::memcpy(out + i, &pixel, sizeof pixel);
    }
}

void GrayOf(const std::uint8_t* in, std::size_t pixels, std::uint8_t* gray, std::uint8_t* alphas)
{
    std::size_t i = 0;
#if HWY_TARGET != HWY_SCALAR
    using Luma = FixedLuma<24>;
    const hn::Rebind<std::uint8_t, Pixels> bytes;
    const auto all = hn::Set(Pixels(), 255);
    const auto half = hn::Set(Pixels(), kLumaHalf);
    const std::size_t n = hn::Lanes(Pixels());
    for (; i + n <= pixels; i += n) {
        const auto rgba = loadPixels(in + 4 * i);
        const auto alpha = hn::ShiftRight<24>(rgba);
        auto r = colorOf<0>(rgba);
        auto g = colorOf<1>(rgba);
        auto b = colorOf<2>(rgba);
        const bool isOpaque = hn::AllTrue(Pixels(), hn::Eq(alpha, all));
        if (!isOpaque) {
            const auto atLeastOne = hn::Max(alpha, hn::Set(Pixels(), 1));
            const auto divisor = hn::ConvertTo(Floats(), hn::BitCast(Ints(), atLeastOne));
            r = straightColor(r, alpha, divisor);
            g = straightColor(g, alpha, divisor);
            b = straightColor(b, alpha, divisor);
        }
        const auto rg = hn::Add(hn::Mul(r, hn::Set(Pixels(), Luma::kRed)), hn::Mul(g, hn::Set(Pixels(), Luma::kGreen)));
        auto luma = hn::ShiftRight<24>(hn::Add(rg, hn::Add(hn::Mul(b, hn::Set(Pixels(), Luma::kBlue)), half)));
        if (!isOpaque) {
            const auto t = hn::Add(hn::Mul(luma, alpha), hn::Set(Pixels(), 128));
            luma = hn::ShiftRight<8>(hn::Add(t, hn::ShiftRight<8>(t)));
        }
        hn::StoreU(hn::U8FromU32(luma), bytes, gray + i);
        hn::StoreU(hn::U8FromU32(alpha), bytes, alphas + i);
    }
#endif
    for (; i < pixels; ++i) {
        const std::uint8_t* p = in + 4 * i;
        const std::uint8_t a = p[3];
        gray[i] = mul255(lumaOf(unpremultiplied(p[0], a), unpremultiplied(p[1], a), unpremultiplied(p[2], a)), a);
        alphas[i] = a;
    }
}

} // namespace HWY_NAMESPACE
} // namespace lamina::kernels
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace lamina::kernels {

HWY_EXPORT(Premultiply);
HWY_EXPORT(CutToAlpha);
HWY_EXPORT(Reorder);
HWY_EXPORT(GrayOf);

void premultiply(const std::uint8_t* in, std::size_t pixels, std::uint8_t* out)
{
    HWY_DYNAMIC_DISPATCH(Premultiply)(in, pixels, out);
}

void unpremultiply(std::uint8_t* row, std::size_t pixels)
{
    for (std::uint8_t* const end = row + 4 * pixels; row != end; row += 4) {
        if (row[3] == 255)
            continue;
        for (int c = 0; c < 3; ++c)
            row[c] = unpremultiplied(row[c], row[3]);
    }
}

bool isOpaque(const std::uint8_t* row, std::size_t pixels)
{
    std::uint8_t all = 255;
    for (std::size_t i = 0; i < pixels; ++i)
        all &= row[4 * i + 3];
    return all == 255;
}

void cutToAlpha(std::uint8_t* row, std::size_t pixels)
{
    HWY_DYNAMIC_DISPATCH(CutToAlpha)(row, pixels);
}

void setOpaque(std::uint8_t* row, std::size_t pixels)
{
    constexpr std::array<std::uint8_t, 4> kAlpha{0, 0, 0, 255};
    reorder(row, pixels, {0, 1, 2, 3}, std::bit_cast<std::uint32_t>(kAlpha), row);
}

void reorder(const std::uint8_t* in, std::size_t pixels, ByteOrder order, std::uint32_t filled, std::uint8_t* out)
{
    HWY_DYNAMIC_DISPATCH(Reorder)(in, pixels, order, filled, out);
}

void grayOf(const std::uint8_t* in, std::size_t pixels, std::uint8_t* gray, std::uint8_t* alphas)
{
    HWY_DYNAMIC_DISPATCH(GrayOf)(in, pixels, gray, alphas);
}

} // namespace lamina::kernels

#endif
