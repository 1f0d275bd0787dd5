#include "platform/image/pixels/YCbCrKernels.h"

#include <algorithm>
#include <cmath>
#include <utility>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "platform/image/pixels/YCbCrKernels.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

// Every product is that of a number times 128 and a weight times 8192, of which the upper half is kept: sixteenths.
// What the halves lose is given back with the rounding. Two pixels share their chroma, so that a lane of 16 bits stands
// for the two: the even one in its lower, the odd one in its upper byte. Each loop over lanes ends in a plain one,
// which does the last pixels, and all of them where there are no lanes.

HWY_BEFORE_NAMESPACE();
namespace lamina::kernels {
namespace HWY_NAMESPACE {

int weighedOne(int value, int weight)
{
    return (value * 128 * weight) >> 16;
}

std::uint8_t roundedOne(int sixteenths)
{
    return static_cast<std::uint8_t>(std::clamp((sixteenths + 9) >> 4, 0, 255));
}

#if HWY_TARGET != HWY_SCALAR

namespace hn = hwy::HWY_NAMESPACE;

using Bytes = hn::ScalableTag<std::uint8_t>;
using Pairs = hn::Repartition<std::uint16_t, Bytes>;
using Sums = hn::Repartition<std::int16_t, Bytes>;

HWY_INLINE hn::Vec<Sums> evenOf(hn::Vec<Bytes> bytes)
{
    return hn::BitCast(Sums(), hn::And(hn::BitCast(Pairs(), bytes), hn::Set(Pairs(), std::uint16_t{0xFF})));
}

HWY_INLINE hn::Vec<Sums> oddOf(hn::Vec<Bytes> bytes)
{
    return hn::BitCast(Sums(), hn::ShiftRight<8>(hn::BitCast(Pairs(), bytes)));
}

HWY_INLINE hn::Vec<Sums> all(int value)
{
    return hn::Set(Sums(), static_cast<std::int16_t>(value));
}

/// Sixteenths of value · weight / 8192.
HWY_INLINE hn::Vec<Sums> weighed(hn::Vec<Sums> value, std::int16_t weight)
{
    return hn::MulHigh(hn::ShiftLeft<7>(value), all(weight));
}

/// Sixteenths, rounded, as bytes in lanes of their own.
HWY_INLINE hn::Vec<Sums> rounded(hn::Vec<Sums> sixteenths)
{
    return hn::Min(hn::Max(hn::ShiftRight<4>(hn::Add(sixteenths, all(9))), all(0)), all(255));
}

HWY_INLINE hn::Vec<Bytes> joined(hn::Vec<Sums> even, hn::Vec<Sums> odd)
{
    return hn::BitCast(Bytes(), hn::Or(even, hn::ShiftLeft<8>(odd)));
}

HWY_INLINE void PixelsChunk(const std::uint8_t* luma, const std::uint8_t* chroma, const YCbCrWeights& weights,
                            bool redFirst, std::uint8_t* out)
{
    const auto y = hn::LoadU(Bytes(), luma);
    const auto c = hn::LoadU(Bytes(), chroma);
    const auto even = weighed(hn::Sub(evenOf(y), all(weights.black)), weights.y);
    const auto odd = weighed(hn::Sub(oddOf(y), all(weights.black)), weights.y);
    const auto cb = hn::Sub(evenOf(c), all(128));
    const auto cr = hn::Sub(oddOf(c), all(128));
    const auto with = [&](hn::Vec<Sums> more) {
        return joined(rounded(hn::Add(even, more)), rounded(hn::Add(odd, more)));
    };
    const auto red = with(weighed(cr, weights.redCr));
    const auto green = with(hn::Add(weighed(cb, weights.greenCb), weighed(cr, weights.greenCr)));
    const auto blue = with(weighed(cb, weights.blueCb));
    const auto opaque = hn::Set(Bytes(), std::uint8_t{255});
    if (redFirst)
        hn::StoreInterleaved4(red, green, blue, opaque, Bytes(), out);
    else
        hn::StoreInterleaved4(blue, green, red, opaque, Bytes(), out);
}

/// Blue, green and red of the pixels of a chunk.
struct Colors {
    hn::Vec<Bytes> blue;
    hn::Vec<Bytes> green;
    hn::Vec<Bytes> red;
};

HWY_INLINE Colors colorsOf(const std::uint8_t* in)
{
    Colors colors;
    hn::Vec<Bytes> alpha;
    hn::LoadInterleaved4(Bytes(), in, colors.blue, colors.green, colors.red, alpha);
    return colors;
}

HWY_INLINE hn::Vec<Sums> mixed(hn::Vec<Sums> red, hn::Vec<Sums> green, hn::Vec<Sums> blue,
                               const std::int16_t (&weights)[3], int offset)
{
    const auto sum = hn::Add(hn::MulHigh(red, all(weights[0])), hn::MulHigh(green, all(weights[1])));
    return rounded(hn::Add(hn::Add(sum, hn::MulHigh(blue, all(weights[2]))), all(16 * offset)));
}

HWY_INLINE void LumaChunk(const std::uint8_t* in, const YCbCrWeights& weights, std::uint8_t* luma)
{
    const Colors colors = colorsOf(in);
    const auto of = [&](auto half) {
        return mixed(hn::ShiftLeft<7>(half(colors.red)), hn::ShiftLeft<7>(half(colors.green)),
                     hn::ShiftLeft<7>(half(colors.blue)), weights.luma, weights.black);
    };
    const auto even = of([](hn::Vec<Bytes> bytes) { return evenOf(bytes); });
    const auto odd = of([](hn::Vec<Bytes> bytes) { return oddOf(bytes); });
    hn::StoreU(joined(even, odd), Bytes(), luma);
}

HWY_INLINE void ChromaChunk(const std::uint8_t* upper, const std::uint8_t* lower, const YCbCrWeights& weights,
                            std::uint8_t* chroma)
{
    const Colors above = colorsOf(upper);
    const Colors below = colorsOf(lower);
    const auto mean = [](hn::Vec<Bytes> one, hn::Vec<Bytes> other) {
        const auto sum = hn::Add(hn::Add(evenOf(one), oddOf(one)), hn::Add(evenOf(other), oddOf(other)));
        return hn::ShiftLeft<5>(sum); // a quarter of it, times 128
    };
    const auto red = mean(above.red, below.red);
    const auto green = mean(above.green, below.green);
    const auto blue = mean(above.blue, below.blue);
    const auto cb = mixed(red, green, blue, weights.cb, 128);
    const auto cr = mixed(red, green, blue, weights.cr, 128);
    hn::StoreU(joined(cb, cr), Bytes(), chroma);
}

HWY_INLINE void TriplesChunk(const std::uint8_t* in, bool swaps, std::uint8_t* out)
{
    hn::Vec<Bytes> first;
    hn::Vec<Bytes> second;
    hn::Vec<Bytes> third;
    hn::LoadInterleaved3(Bytes(), in, first, second, third);
    hn::StoreInterleaved4(swaps ? third : first, second, swaps ? first : third, hn::Set(Bytes(), std::uint8_t{255}),
                          Bytes(), out);
}

HWY_INLINE void LevelsChunk(const std::uint8_t* in, const LevelChange& change, std::uint8_t* out)
{
    const auto bytes = hn::LoadU(Bytes(), in);
    const auto changed = [&](hn::Vec<Sums> value) {
        return rounded(hn::Add(weighed(hn::Sub(value, all(change.from)), change.gain), all(16 * change.to)));
    };
    hn::StoreU(joined(changed(evenOf(bytes)), changed(oddOf(bytes))), Bytes(), out);
}

#endif

/// As `mixed`, of numbers times 128.
std::uint8_t mixedOne(int red, int green, int blue, const std::int16_t (&weights)[3], int offset)
{
    const auto part = [](int color, int weight) { return (color * weight) >> 16; };
    return roundedOne(part(red, weights[0]) + part(green, weights[1]) + part(blue, weights[2]) + 16 * offset);
}

void PixelsOfYCbCr(const std::uint8_t* luma, const std::uint8_t* chroma, std::size_t pixels,
                   const YCbCrWeights& weights, bool redFirst, std::uint8_t* out)
{
    std::size_t i = 0;
#if HWY_TARGET != HWY_SCALAR
    const std::size_t n = hn::Lanes(Bytes());
    for (; i + n <= pixels; i += n)
        PixelsChunk(luma + i, chroma + i, weights, redFirst, out + 4 * i);
#endif
    const auto put = [&](std::size_t at, int sixteenths) { out[at] = roundedOne(sixteenths); };
    for (; i < pixels; ++i) {
        const int y = weighedOne(luma[i] - weights.black, weights.y);
        const int cb = chroma[i / 2 * 2] - 128;
        const int cr = chroma[i / 2 * 2 + 1] - 128;
        put(4 * i + (redFirst ? 0 : 2), y + weighedOne(cr, weights.redCr));
        put(4 * i + 1, y + weighedOne(cb, weights.greenCb) + weighedOne(cr, weights.greenCr));
        put(4 * i + (redFirst ? 2 : 0), y + weighedOne(cb, weights.blueCb));
        out[4 * i + 3] = 255;
    }
}

void LumaOfPixels(const std::uint8_t* in, std::size_t pixels, const YCbCrWeights& weights, std::uint8_t* luma)
{
    std::size_t i = 0;
#if HWY_TARGET != HWY_SCALAR
    const std::size_t n = hn::Lanes(Bytes());
    for (; i + n <= pixels; i += n)
        LumaChunk(in + 4 * i, weights, luma + i);
#endif
    for (; i < pixels; ++i)
        luma[i] = mixedOne(in[4 * i + 2] * 128, in[4 * i + 1] * 128, in[4 * i] * 128, weights.luma, weights.black);
}

void ChromaOfPixels(const std::uint8_t* upper, const std::uint8_t* lower, std::size_t pixels,
                    const YCbCrWeights& weights, std::uint8_t* chroma)
{
    std::size_t i = 0;
#if HWY_TARGET != HWY_SCALAR
    const std::size_t n = hn::Lanes(Bytes());
    for (; i + n <= pixels; i += n)
        ChromaChunk(upper + 4 * i, lower + 4 * i, weights, chroma + i);
#endif
    for (; i < pixels; i += 2) {
        const std::size_t next = i + 1 < pixels ? i + 1 : i; // of an odd number the last one counts twice
        const auto mean = [&](std::size_t color) {
            const auto sum = [&](const std::uint8_t* row) { return row[4 * i + color] + row[4 * next + color]; };
            return (sum(upper) + sum(lower)) * 32; // a quarter of it, times 128
        };
        chroma[i] = mixedOne(mean(2), mean(1), mean(0), weights.cb, 128);
        chroma[i + 1] = mixedOne(mean(2), mean(1), mean(0), weights.cr, 128);
    }
}

void PixelsOfTriples(const std::uint8_t* in, std::size_t pixels, bool swaps, std::uint8_t* out)
{
    std::size_t i = 0;
#if HWY_TARGET != HWY_SCALAR
    const std::size_t n = hn::Lanes(Bytes());
    for (; i + n <= pixels; i += n)
        TriplesChunk(in + 3 * i, swaps, out + 4 * i);
#endif
    for (; i < pixels; ++i) {
        out[4 * i] = in[3 * i + (swaps ? 2 : 0)];
        out[4 * i + 1] = in[3 * i + 1];
        out[4 * i + 2] = in[3 * i + (swaps ? 0 : 2)];
        out[4 * i + 3] = 255;
    }
}

void ChangeLevels(const std::uint8_t* in, std::size_t count, const LevelChange& change, std::uint8_t* out)
{
    std::size_t i = 0;
#if HWY_TARGET != HWY_SCALAR
    const std::size_t n = hn::Lanes(Bytes());
    for (; i + n <= count; i += n)
        LevelsChunk(in + i, change, out + i);
#endif
    for (; i < count; ++i)
        out[i] = roundedOne(weighedOne(in[i] - change.from, change.gain) + 16 * change.to);
}

// Plain loops, which the compiler turns into lanes.

void SplitPairs(const std::uint8_t* in, std::size_t pixels, bool chromaFirst, std::uint8_t* luma, std::uint8_t* chroma)
{
    const std::uint8_t* const lumaIn = in + (chromaFirst ? 1 : 0);
    const std::uint8_t* const chromaIn = in + (chromaFirst ? 0 : 1);
    for (std::size_t i = 0; i < pixels; ++i)
        luma[i] = lumaIn[2 * i];
    for (std::size_t i = 0; i < (pixels + 1) / 2 * 2; ++i)
        chroma[i] = chromaIn[2 * i];
}

void Interleave(const std::uint8_t* cb, const std::uint8_t* cr, std::size_t count, std::uint8_t* out)
{
    for (std::size_t i = 0; i < count; ++i) {
        out[2 * i] = cb[i];
        out[2 * i + 1] = cr[i];
    }
}

void AverageInto(const std::uint8_t* in, std::size_t count, std::uint8_t* out)
{
    for (std::size_t i = 0; i < count; ++i)
        out[i] = static_cast<std::uint8_t>((in[i] + out[i] + 1) >> 1);
}

} // namespace HWY_NAMESPACE
} // namespace lamina::kernels
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace lamina {

namespace {

std::int16_t fixed(double weight)
{
    return static_cast<std::int16_t>(std::lround(weight * 8192));
}

} // namespace

YCbCrWeights::YCbCrWeights(double red, double blue, bool isFullRange)
    : black(isFullRange ? 0 : 16)
{
    const double green = 1 - red - blue;
    const double lumaSteps = isFullRange ? 1 : 219.0 / 255;
    const double chromaSteps = isFullRange ? 1 : 224.0 / 255;
    y = fixed(1 / lumaSteps);
    redCr = fixed(2 * (1 - red) / chromaSteps);
    greenCb = fixed(-2 * (1 - blue) * blue / green / chromaSteps);
    greenCr = fixed(-2 * (1 - red) * red / green / chromaSteps);
    blueCb = fixed(2 * (1 - blue) / chromaSteps);
    // What is left for green makes greys come out as greys.
    const auto set = [](std::int16_t(&weights)[3], double ofRed, double ofBlue, double sum) {
        weights[0] = fixed(ofRed);
        weights[2] = fixed(ofBlue);
        weights[1] = static_cast<std::int16_t>(fixed(sum) - weights[0] - weights[2]);
    };
    set(luma, red * lumaSteps, blue * lumaSteps, lumaSteps);
    set(cb, -red / (2 * (1 - blue)) * chromaSteps, chromaSteps / 2, 0);
    set(cr, chromaSteps / 2, -blue / (2 * (1 - red)) * chromaSteps, 0);
}

namespace kernels {

HWY_EXPORT(PixelsOfYCbCr);
HWY_EXPORT(LumaOfPixels);
HWY_EXPORT(ChromaOfPixels);
HWY_EXPORT(PixelsOfTriples);
HWY_EXPORT(ChangeLevels);
HWY_EXPORT(SplitPairs);
HWY_EXPORT(Interleave);
HWY_EXPORT(AverageInto);

void pixelsOfYCbCr(const std::uint8_t* luma, const std::uint8_t* chroma, std::size_t pixels,
                   const YCbCrWeights& weights, bool redFirst, std::uint8_t* out)
{
    HWY_DYNAMIC_DISPATCH(PixelsOfYCbCr)(luma, chroma, pixels, weights, redFirst, out);
}

void lumaOfPixels(const std::uint8_t* in, std::size_t pixels, const YCbCrWeights& weights, std::uint8_t* luma)
{
    HWY_DYNAMIC_DISPATCH(LumaOfPixels)(in, pixels, weights, luma);
}

void chromaOfPixels(const std::uint8_t* upper, const std::uint8_t* lower, std::size_t pixels,
                    const YCbCrWeights& weights, std::uint8_t* chroma)
{
    HWY_DYNAMIC_DISPATCH(ChromaOfPixels)(upper, lower, pixels, weights, chroma);
}

void pixelsOfTriples(const std::uint8_t* in, std::size_t pixels, bool swaps, std::uint8_t* out)
{
    HWY_DYNAMIC_DISPATCH(PixelsOfTriples)(in, pixels, swaps, out);
}

void changeLevels(const std::uint8_t* in, std::size_t count, const LevelChange& change, std::uint8_t* out)
{
    HWY_DYNAMIC_DISPATCH(ChangeLevels)(in, count, change, out);
}

void splitPairs(const std::uint8_t* in, std::size_t pixels, bool chromaFirst, std::uint8_t* luma, std::uint8_t* chroma)
{
    HWY_DYNAMIC_DISPATCH(SplitPairs)(in, pixels, chromaFirst, luma, chroma);
}

void interleave(const std::uint8_t* cb, const std::uint8_t* cr, std::size_t count, std::uint8_t* out)
{
    HWY_DYNAMIC_DISPATCH(Interleave)(cb, cr, count, out);
}

void averageInto(const std::uint8_t* in, std::size_t count, std::uint8_t* out)
{
    HWY_DYNAMIC_DISPATCH(AverageInto)(in, count, out);
}

} // namespace kernels

} // namespace lamina

#endif
