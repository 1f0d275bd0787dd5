#include "platform/image/drawing/Compositing_p.h"

#include "platform/image/pixels/PixelArithmetic.h"

#include <algorithm>
#include <cstring>

// Source-over of T. Porter and T. Duff, "Compositing Digital Images", SIGGRAPH 1984.

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "platform/image/drawing/Compositing.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace lamina {
namespace HWY_NAMESPACE {

// Every loop below ends in a plain one, which does the last pixels, and all of them where there are no lanes.
#if HWY_TARGET != HWY_SCALAR

namespace hn = hwy::HWY_NAMESPACE;

using D16 = hn::ScalableTag<std::uint16_t>;
using V16 = hn::Vec<D16>;

HWY_INLINE V16 loadSamples(const std::uint8_t* p)
{
    return hn::PromoteTo(D16(), hn::LoadU(hn::Rebind<std::uint8_t, D16>(), p));
}

HWY_INLINE void storeSamples(V16 value, std::uint8_t* p)
{
    const hn::Rebind<std::uint8_t, D16> bytes;
    hn::StoreU(hn::DemoteTo(bytes, hn::BitCast(hn::RebindToSigned<D16>(), value)), bytes, p);
}

/// Every pixel's alpha in all its four lanes.
HWY_INLINE V16 alphaOf(V16 pixels)
{
    const hn::Repartition<std::uint8_t, D16> bytes;
    alignas(16) static constexpr std::uint8_t kLanes[16] = {6, 7, 6, 7, 6, 7, 6, 7, 14, 15, 14, 15, 14, 15, 14, 15};
    return hn::BitCast(D16(), hn::TableLookupBytes(hn::BitCast(bytes, pixels), hn::LoadDup128(bytes, kLanes)));
}

/// One byte a pixel, spread to the pixel's four lanes and to both their halves: the value on 16 bits.
HWY_INLINE V16 spreadCoverage(const std::uint8_t* coverage)
{
    const hn::Repartition<std::uint8_t, D16> bytes;
    const hn::Repartition<std::uint64_t, D16> d64;
    const hn::Rebind<std::uint32_t, decltype(d64)> d32;
    const hn::Rebind<std::uint8_t, decltype(d64)> narrow;
    alignas(16) static constexpr std::uint8_t kLanes[16] = {0, 0, 0, 0, 0, 0, 0, 0, 8, 8, 8, 8, 8, 8, 8, 8};
    const auto wide = hn::PromoteTo(d64, hn::PromoteTo(d32, hn::LoadU(narrow, coverage)));
    return hn::BitCast(D16(), hn::TableLookupBytes(hn::BitCast(bytes, wide), hn::LoadDup128(bytes, kLanes)));
}

HWY_INLINE V16 widen(V16 value)
{
    return hn::Or(value, hn::ShiftLeft<8>(value));
}

HWY_INLINE V16 narrow(V16 value)
{
    const D16 d;
    return hn::ShiftRight<8>(hn::Add(hn::Sub(value, hn::ShiftRight<8>(value)), hn::Set(d, std::uint16_t{128})));
}

/// Lanes of `over` in PixelArithmetic.h.
HWY_INLINE V16 overLanes(V16 source, V16 alpha, V16 backdrop)
{
    const V16 kept = hn::MulHigh(widen(backdrop), hn::Sub(hn::Set(D16(), std::uint16_t{65535}), alpha));
    return narrow(hn::SaturatedAdd(source, kept));
}

/// What exact rounding on 8 bits gives where nothing scales the source.
HWY_INLINE V16 plainLanes(V16 source, V16 backdrop)
{
    const D16 d;
    const V16 kept = hn::Sub(hn::Set(d, std::uint16_t{255}), alphaOf(source));
    const V16 t = hn::Add(hn::Mul(backdrop, kept), hn::Set(d, std::uint16_t{128}));
    return hn::Add(source, hn::ShiftRight<8>(hn::Add(t, hn::ShiftRight<8>(t))));
}

#endif

constexpr std::uint16_t kAll = 65535;

HWY_INLINE void plainPixel(std::uint8_t* dst, const std::uint8_t* src)
{
    const unsigned kept = 255u - src[3];
    for (std::size_t c = 0; c < 4; ++c)
        dst[c] = static_cast<std::uint8_t>(std::min(255u, src[c] + unsigned{mul255(dst[c], kept)}));
}

/// Nothing scales the source: exact rounding on 8 bits.
void CompositePlain(std::uint8_t* dst, const std::uint8_t* src, std::size_t pixels)
{
    const std::size_t samples = 4 * pixels;
    std::size_t i = 0;
#if HWY_TARGET != HWY_SCALAR
    const D16 d;
    const std::size_t n = hn::Lanes(d);
    for (; i + n <= samples; i += n) {
        storeSamples(plainLanes(loadSamples(src + i), loadSamples(dst + i)), dst + i);
    }
#endif
    for (; i < samples; i += 4)
        plainPixel(dst + i, src + i);
}

// A pixel that is covered wholly gets the same bytes whether its row has coverage or not: a row that is drawn in part
// may have none where the whole row has some.

template <bool Covered>
HWY_INLINE void compositeScaled(std::uint8_t* dst, const std::uint8_t* src, const std::uint8_t* coverage,
                                std::uint16_t alpha, std::size_t pixels)
{
    const std::size_t samples = 4 * pixels;
    std::size_t i = 0;
#if HWY_TARGET != HWY_SCALAR
    const D16 d;
    const std::size_t n = hn::Lanes(d);
    const V16 all = hn::Set(d, alpha);
    for (; i + n <= samples; i += n) {
        V16 scale = all;
        if constexpr (Covered) {
            scale = spreadCoverage(coverage + i / 4);
            if (alpha != kAll)
                scale = hn::MulHigh(scale, hn::Add(all, hn::Set(d, std::uint16_t{1})));
        }
        const V16 plain = loadSamples(src + i);
        const V16 backdrop = loadSamples(dst + i);
        const V16 source = hn::MulHigh(widen(plain), scale);
        V16 out = overLanes(source, alphaOf(source), backdrop);
        if (Covered && alpha == kAll)
            out = hn::IfThenElse(hn::Eq(scale, all), plainLanes(plain, backdrop), out);
        storeSamples(out, dst + i);
    }
#endif
    for (; i < samples; i += 4) {
        std::uint16_t scale = alpha;
        if constexpr (Covered)
            scale = alpha != kAll ? mulHigh(widened(coverage[i / 4]), alpha + 1u) : widened(coverage[i / 4]);
        if (scale == kAll) {
            plainPixel(dst + i, src + i);
            continue;
        }
        const std::uint16_t a = mulHigh(widened(src[i + 3]), scale);
        for (std::size_t c = 0; c < 4; ++c)
            dst[i + c] = over(mulHigh(widened(src[i + c]), scale), a, dst[i + c]);
    }
}

void CompositeScaled(std::uint8_t* dst, const std::uint8_t* src, const std::uint8_t* coverage, std::uint16_t alpha,
                     std::size_t pixels)
{
    if (coverage)
        compositeScaled<true>(dst, src, coverage, alpha, pixels);
    else
        compositeScaled<false>(dst, src, nullptr, alpha, pixels);
}

/// Four bytes a pixel.
void CompositeInk(std::uint8_t* dst, const Ink& ink, const std::uint8_t* coverage, std::size_t pixels)
{
    const std::size_t samples = 4 * pixels;
    std::size_t i = 0;
#if HWY_TARGET != HWY_SCALAR
    const D16 d;
    const std::size_t n = hn::Lanes(d);
    alignas(16) std::uint16_t twice[8];
    for (std::size_t c = 0; c < 8; ++c)
        twice[c] = ink.component[c % 4];
    const V16 colour = hn::LoadDup128(d, twice);
    const V16 alpha = hn::Set(d, ink.alpha);
    for (; i + n <= samples; i += n) {
        V16 source = colour;
        V16 a = alpha;
        if (coverage) {
            const V16 scale = spreadCoverage(coverage + i / 4);
            const auto covered = hn::Eq(scale, hn::Set(d, kAll));
            source = hn::IfThenElse(covered, source, hn::MulHigh(source, scale));
            a = hn::IfThenElse(covered, a, hn::MulHigh(a, scale));
        }
        storeSamples(overLanes(source, a, loadSamples(dst + i)), dst + i);
    }
#endif
    for (; i < samples; i += 4) {
        const unsigned scale = coverage ? widened(coverage[i / 4]) : kAll;
        const unsigned a = scale != kAll ? mulHigh(ink.alpha, scale) : ink.alpha;
        for (std::size_t c = 0; c < 4; ++c)
            dst[i + c] = over(scale != kAll ? mulHigh(ink.component[c], scale) : ink.component[c], a, dst[i + c]);
    }
}

void MultiplyCoverage(std::uint8_t* a, const std::uint8_t* b, std::size_t count)
{
    std::size_t i = 0;
#if HWY_TARGET != HWY_SCALAR
    const D16 d;
    const std::size_t n = hn::Lanes(d);
    for (; i + n <= count; i += n) {
        const V16 t = hn::Add(hn::Mul(loadSamples(a + i), loadSamples(b + i)), hn::Set(d, std::uint16_t{128}));
        storeSamples(hn::ShiftRight<8>(hn::Add(t, hn::ShiftRight<8>(t))), a + i);
    }
#endif
    for (; i < count; ++i)
        a[i] = mul255(a[i], b[i]);
}

} // namespace HWY_NAMESPACE
} // namespace lamina
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace lamina {

HWY_EXPORT(CompositePlain);
HWY_EXPORT(CompositeScaled);
HWY_EXPORT(CompositeInk);
HWY_EXPORT(MultiplyCoverage);

namespace {

template <std::size_t Channels>
void compositeRow(std::uint8_t* dst, const std::uint8_t* src, const std::uint8_t* alphas, const std::uint8_t* coverage,
                  std::uint16_t alpha, std::size_t pixels)
{
    for (std::size_t i = 0; i < pixels; ++i) {
        const std::uint16_t scale = coverage ? mulHigh(widened(coverage[i]), alpha + 1u) : alpha;
        const std::uint16_t a = mulHigh(widened(alphas ? alphas[i] : std::uint8_t{255}), scale + 1u);
        for (std::size_t c = 0; c < Channels; ++c) {
            std::uint8_t& d = dst[i * Channels + c];
            d = over(mulHigh(widened(src[i * Channels + c]), scale + 1u), a, d);
        }
    }
}

} // namespace

void compositePixels(std::uint8_t* dst, const std::uint8_t* src, const std::uint8_t* coverage, std::uint16_t alpha,
                     std::size_t pixels)
{
    if (!coverage && alpha == 65535)
        HWY_DYNAMIC_DISPATCH(CompositePlain)(dst, src, pixels);
    else
        HWY_DYNAMIC_DISPATCH(CompositeScaled)(dst, src, coverage, alpha, pixels);
}

void compositeComponents(int channels, std::uint8_t* dst, const std::uint8_t* src, const std::uint8_t* alphas,
                         const std::uint8_t* coverage, std::uint16_t alpha, std::size_t pixels)
{
    if (!alphas && !coverage && alpha == 65535)
        std::memcpy(dst, src, pixels * static_cast<std::size_t>(channels));
    else if (channels == 1)
        compositeRow<1>(dst, src, alphas, coverage, alpha, pixels);
    else
        compositeRow<4>(dst, src, alphas, coverage, alpha, pixels);
}

void compositeInk(int channels, std::uint8_t* dst, const Ink& ink, const std::uint8_t* coverage, std::size_t pixels)
{
    if (channels == 4) {
        HWY_DYNAMIC_DISPATCH(CompositeInk)(dst, ink, coverage, pixels);
        return;
    }
    for (std::size_t i = 0; i < pixels; ++i) {
        const unsigned scale = coverage ? widened(coverage[i]) + 1u : 65536u;
        dst[i] = over((ink.component[0] * scale) >> 16, (ink.alpha * scale) >> 16, dst[i]);
    }
}

void eraseBytes(int channels, std::uint8_t* dst, const std::uint8_t* coverage, std::size_t pixels)
{
    const auto n = static_cast<std::size_t>(channels);
    if (!coverage) {
        std::memset(dst, 0, pixels * n);
        return;
    }
    for (std::size_t i = 0; i < pixels; ++i) {
        for (std::size_t c = 0; c < n; ++c)
            dst[i * n + c] = mul255(dst[i * n + c], 255u - coverage[i]);
    }
}

void multiplyCoverage(std::uint8_t* a, const std::uint8_t* b, std::size_t count)
{
    HWY_DYNAMIC_DISPATCH(MultiplyCoverage)(a, b, count);
}

} // namespace lamina

#endif
