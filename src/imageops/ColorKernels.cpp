#include "imageops/ColorKernels_p.h"

#include <algorithm>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imageops/ColorKernels.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace lamina::filters {
namespace HWY_NAMESPACE {

inline std::uint8_t cutByte(float value)
{
    return static_cast<std::uint8_t>(std::clamp(value, 0.0F, 255.0F));
}

/// One pixel, all of it read before any is written.
template <class Change>
void putPixel(const ColorRow& row, std::size_t index, const Change& change)
{
    const std::uint8_t* in = row.rgba + 4 * index;
    const std::uint8_t red = change(in[0]);
    const std::uint8_t green = change(in[1]);
    const std::uint8_t blue = change(in[2]);
    const auto alpha = static_cast<std::uint8_t>(in[3] | row.filledAlpha);
    std::uint8_t* out = row.argb + 4 * index;
    out[0] = alpha;
    out[1] = red;
    out[2] = green;
    out[3] = blue;
}

// Every loop below ends in a plain one, which does the last pixels, and all of them where there are no lanes. A lane
// holds one pixel as a number whose lowest byte comes first in memory: lanes exist on little-endian processors alone.
#if HWY_TARGET != HWY_SCALAR

namespace hn = hwy::HWY_NAMESPACE;

using Floats = hn::ScalableTag<float>;
using Ints = hn::Rebind<std::int32_t, Floats>;
using Pixels = hn::Rebind<std::uint32_t, Floats>;
using Bytes = hn::Repartition<std::uint8_t, Pixels>;

HWY_INLINE hn::Vec<Pixels> loadPixels(const std::uint8_t* p)
{
    return hn::BitCast(Pixels(), hn::LoadU(Bytes(), p));
}

HWY_INLINE void storePixels(hn::Vec<Pixels> pixels, std::uint8_t* p)
{
    hn::StoreU(hn::BitCast(Bytes(), pixels), Bytes(), p);
}

/// The colour in byte `Place` of R G B A.
template <int Place>
HWY_INLINE hn::Vec<Floats> colorOf(hn::Vec<Pixels> rgba)
{
    const auto value = hn::And(hn::ShiftRight<8 * Place>(rgba), hn::Set(Pixels(), 0xFF));
    return hn::ConvertTo(Floats(), hn::BitCast(Ints(), value));
}

/// The value as byte `Place` of A R G B.
template <int Place>
HWY_INLINE hn::Vec<Pixels> cutColor(hn::Vec<Floats> value)
{
    const auto cut = hn::Min(hn::Max(value, hn::Zero(Floats())), hn::Set(Floats(), 255.0F));
    return hn::ShiftLeft<8 * Place>(hn::BitCast(Pixels(), hn::ConvertTo(Ints(), cut)));
}

HWY_INLINE hn::Vec<Pixels> alphaFirst(hn::Vec<Pixels> rgba, std::uint8_t filled)
{
    return hn::Or(hn::ShiftRight<24>(rgba), hn::Set(Pixels(), filled));
}

/// From byte `Place` of R G B A to the next one of A R G B.
template <int Place>
HWY_INLINE hn::Vec<Pixels> mapped(hn::Vec<Pixels> rgba, const LinearMap& map)
{
    const auto moved = hn::Add(colorOf<Place>(rgba), hn::Set(Floats(), map.before));
    return cutColor<Place + 1>(hn::Add(hn::Mul(moved, hn::Set(Floats(), map.factor)), hn::Set(Floats(), map.after)));
}

HWY_INLINE hn::Vec<Floats> dot(const std::array<float, 3>& weights, hn::Vec<Floats> r, hn::Vec<Floats> g,
                               hn::Vec<Floats> b)
{
    const auto rg = hn::Add(hn::Mul(r, hn::Set(Floats(), weights[0])), hn::Mul(g, hn::Set(Floats(), weights[1])));
    return hn::Add(rg, hn::Mul(b, hn::Set(Floats(), weights[2])));
}

#endif

// Maps and rows are copied: bytes that are written might lie anywhere, also in what is referred to.

void MapColors(const LinearMap& givenMap, const ColorRow& givenRow)
{
    const LinearMap map = givenMap;
    const ColorRow row = givenRow;
    std::size_t i = 0;
#if HWY_TARGET != HWY_SCALAR
    const std::size_t n = hn::Lanes(Pixels());
    for (; i + n <= row.pixels; i += n) {
        const auto in = loadPixels(row.rgba + 4 * i);
        const auto alphaRed = hn::Or(alphaFirst(in, row.filledAlpha), mapped<0>(in, map));
        storePixels(hn::Or(alphaRed, hn::Or(mapped<1>(in, map), mapped<2>(in, map))), row.argb + 4 * i);
    }
#endif
    const auto mapOne = [&](std::uint8_t in) {
        return cutByte((static_cast<float>(in) + map.before) * map.factor + map.after);
    };
    for (; i < row.pixels; ++i)
        putPixel(row, i, mapOne);
}

void MixColors(const ColorMatrix& given, const ColorRow& givenRow)
{
    const ColorMatrix m = given;
    const ColorRow row = givenRow;
    std::size_t i = 0;
#if HWY_TARGET != HWY_SCALAR
    const std::size_t n = hn::Lanes(Pixels());
    for (; i + n <= row.pixels; i += n) {
        const auto in = loadPixels(row.rgba + 4 * i);
        const auto r = colorOf<0>(in);
        const auto g = colorOf<1>(in);
        const auto b = colorOf<2>(in);
        const auto alphaRed = hn::Or(alphaFirst(in, row.filledAlpha), cutColor<1>(dot(m[0], r, g, b)));
        const auto greenBlue = hn::Or(cutColor<2>(dot(m[1], r, g, b)), cutColor<3>(dot(m[2], r, g, b)));
        storePixels(hn::Or(alphaRed, greenBlue), row.argb + 4 * i);
    }
#endif
    for (; i < row.pixels; ++i) {
        const std::uint8_t* in = row.rgba + 4 * i;
        const float r = in[0];
        const float g = in[1];
        const float b = in[2];
        const auto alpha = static_cast<std::uint8_t>(in[3] | row.filledAlpha);
        for (std::size_t c = 0; c < 3; ++c)
            row.argb[4 * i + 1 + c] = cutByte(r * m[c][0] + g * m[c][1] + b * m[c][2]);
        row.argb[4 * i] = alpha;
    }
}

} // namespace HWY_NAMESPACE
} // namespace lamina::filters
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace lamina::filters {

HWY_EXPORT(MapColors);
HWY_EXPORT(MixColors);

void mapColors(const LinearMap& map, const ColorRow& row)
{
    HWY_DYNAMIC_DISPATCH(MapColors)(map, row);
}

void mixColors(const ColorMatrix& matrix, const ColorRow& row)
{
    HWY_DYNAMIC_DISPATCH(MixColors)(matrix, row);
}

} // namespace lamina::filters

#endif
