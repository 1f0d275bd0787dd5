#include "platform/image/ResampleKernels.h"

#include "platform/image/PixelArithmetic.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "platform/image/ResampleKernels.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace lamina::kernels {
namespace HWY_NAMESPACE {

inline std::uint8_t roundedByte(float value)
{
    return static_cast<std::uint8_t>(std::clamp(static_cast<int>(value + 0.5F), 0, 255));
}

// Every loop below ends in a plain one, which does the last samples, and all of them where there are no lanes.
#if HWY_TARGET != HWY_SCALAR

namespace hn = hwy::HWY_NAMESPACE;

using Pixel = hn::FixedTag<float, 4>;

template <class D>
HWY_INLINE hn::Vec<D> loadBytes(D d, const std::uint8_t* p)
{
    return hn::ConvertTo(d, hn::PromoteTo(hn::Rebind<std::int32_t, D>(), hn::LoadU(hn::Rebind<std::uint8_t, D>(), p)));
}

template <class D>
HWY_INLINE void storeBytes(D d, hn::Vec<D> value, std::uint8_t* p)
{
    const auto cut = hn::Min(hn::Max(hn::Add(value, hn::Set(d, 0.5F)), hn::Zero(d)), hn::Set(d, 255.0F));
    const auto whole = hn::BitCast(hn::Rebind<std::uint32_t, D>(), hn::ConvertTo(hn::Rebind<std::int32_t, D>(), cut));
    hn::StoreU(hn::U8FromU32(whole), hn::Rebind<std::uint8_t, D>(), p);
}

#endif

void WeighBytes(const std::uint8_t* const* rows, const float* weights, int taps, std::size_t samples, bool add,
                float* out)
{
    std::size_t i = 0;
#if HWY_TARGET != HWY_SCALAR
    const hn::ScalableTag<float> d;
    const std::size_t n = hn::Lanes(d);
    for (; i + 4 * n <= samples; i += 4 * n) {
        auto a0 = add ? hn::LoadU(d, out + i) : hn::Zero(d);
        auto a1 = add ? hn::LoadU(d, out + i + n) : hn::Zero(d);
        auto a2 = add ? hn::LoadU(d, out + i + 2 * n) : hn::Zero(d);
        auto a3 = add ? hn::LoadU(d, out + i + 3 * n) : hn::Zero(d);
        for (int t = 0; t < taps; ++t) {
            const auto w = hn::Set(d, weights[t]);
            const std::uint8_t* p = rows[t] + i;
            a0 = hn::Add(a0, hn::Mul(w, loadBytes(d, p)));
            a1 = hn::Add(a1, hn::Mul(w, loadBytes(d, p + n)));
            a2 = hn::Add(a2, hn::Mul(w, loadBytes(d, p + 2 * n)));
            a3 = hn::Add(a3, hn::Mul(w, loadBytes(d, p + 3 * n)));
        }
        hn::StoreU(a0, d, out + i);
        hn::StoreU(a1, d, out + i + n);
        hn::StoreU(a2, d, out + i + 2 * n);
        hn::StoreU(a3, d, out + i + 3 * n);
    }
#endif
    for (; i < samples; ++i) {
        float sum = add ? out[i] : 0.0F;
        for (int t = 0; t < taps; ++t)
            sum += weights[t] * static_cast<float>(rows[t][i]);
        out[i] = sum;
    }
}

/// `Taps` other than 0 is known beforehand: the loop over four taps, those of every enlargement, is then unrolled.
template <int Taps>
HWY_INLINE void weighFloatRows(const float* const* rows, const float* weights, int anyTaps, std::size_t samples,
                               std::uint8_t* out)
{
    const int taps = Taps != 0 ? Taps : anyTaps;
    std::size_t i = 0;
#if HWY_TARGET != HWY_SCALAR
    const hn::ScalableTag<float> d;
    const std::size_t n = hn::Lanes(d);
    for (; i + 4 * n <= samples; i += 4 * n) {
        auto a0 = hn::Zero(d);
        auto a1 = hn::Zero(d);
        auto a2 = hn::Zero(d);
        auto a3 = hn::Zero(d);
        for (int t = 0; t < taps; ++t) {
            const auto w = hn::Set(d, weights[t]);
            const float* p = rows[t] + i;
            a0 = hn::Add(a0, hn::Mul(w, hn::LoadU(d, p)));
            a1 = hn::Add(a1, hn::Mul(w, hn::LoadU(d, p + n)));
            a2 = hn::Add(a2, hn::Mul(w, hn::LoadU(d, p + 2 * n)));
            a3 = hn::Add(a3, hn::Mul(w, hn::LoadU(d, p + 3 * n)));
        }
        storeBytes(d, a0, out + i);
        storeBytes(d, a1, out + i + n);
        storeBytes(d, a2, out + i + 2 * n);
        storeBytes(d, a3, out + i + 3 * n);
    }
#endif
    for (; i < samples; ++i) {
        float sum = 0;
        for (int t = 0; t < taps; ++t)
            sum += weights[t] * rows[t][i];
        out[i] = roundedByte(sum);
    }
}

void WeighFloats(const float* const* rows, const float* weights, int taps, std::size_t samples, std::uint8_t* out)
{
    if (taps == 4)
        weighFloatRows<4>(rows, weights, taps, samples, out);
    else
        weighFloatRows<0>(rows, weights, taps, samples, out);
}

void BytesToFloats(const std::uint8_t* in, std::size_t samples, float* out)
{
    std::size_t i = 0;
#if HWY_TARGET != HWY_SCALAR
    const hn::ScalableTag<float> d;
    const std::size_t n = hn::Lanes(d);
    for (; i + n <= samples; i += n)
        hn::StoreU(loadBytes(d, in + i), d, out + i);
#endif
    for (; i < samples; ++i)
        out[i] = static_cast<float>(in[i]);
}

void FloatsToBytes(const float* in, std::size_t samples, std::uint8_t* out)
{
    std::size_t i = 0;
#if HWY_TARGET != HWY_SCALAR
    const hn::ScalableTag<float> d;
    const std::size_t n = hn::Lanes(d);
    for (; i + n <= samples; i += n)
        storeBytes(d, hn::LoadU(d, in + i), out + i);
#endif
    for (; i < samples; ++i)
        out[i] = roundedByte(in[i]);
}

template <int Taps>
HWY_INLINE void weighPixelRow(const float* in, int base, const int* first, const float* weights, int anyTaps, int count,
                              float* out)
{
    const int taps = Taps != 0 ? Taps : anyTaps;
    for (int i = 0; i < count; ++i) {
        const float* p = in + 4 * static_cast<std::ptrdiff_t>(first[i] - base);
#if HWY_TARGET != HWY_SCALAR
        const Pixel d;
        auto sum = hn::Zero(d);
        for (int t = 0; t < taps; ++t)
            sum = hn::Add(sum, hn::Mul(hn::Set(d, weights[t]), hn::LoadU(d, p + 4 * static_cast<std::ptrdiff_t>(t))));
        hn::StoreU(sum, d, out);
#else
        for (int c = 0; c < 4; ++c) {
            float sum = 0;
            for (int t = 0; t < taps; ++t)
                sum += weights[t] * p[4 * t + c];
            out[c] = sum;
        }
#endif
        out += 4;
        weights += taps;
    }
}

void WeighPixels(const float* in, int base, const int* first, const float* weights, int taps, int count, float* out)
{
    if (taps == 4)
        weighPixelRow<4>(in, base, first, weights, taps, count, out);
    else
        weighPixelRow<0>(in, base, first, weights, taps, count, out);
}

void WeighSamples(const float* in, int base, const int* first, const float* weights, int taps, int count, float* out)
{
    for (int i = 0; i < count; ++i) {
        const float* p = in + (first[i] - base);
        float sum = 0;
        for (int t = 0; t < taps; ++t)
            sum += weights[t] * p[t];
        out[i] = sum;
        weights += taps;
    }
}

void Premultiply(const std::uint8_t* in, std::size_t pixels, std::uint8_t* out)
{
    const std::size_t samples = 4 * pixels;
    std::size_t i = 0;
#if HWY_TARGET != HWY_SCALAR
    const hn::ScalableTag<std::uint16_t> d;
    const hn::Rebind<std::uint8_t, decltype(d)> bytes;
    const hn::Repartition<std::uint8_t, decltype(d)> whole;
    const hn::RebindToSigned<decltype(d)> ds;
    alignas(16) static constexpr std::uint8_t kAlpha[16] = {6, 7, 6, 7, 6, 7, 6, 7, 14, 15, 14, 15, 14, 15, 14, 15};
    alignas(16) static constexpr std::uint16_t kKeep[8] = {0, 0, 0, 255, 0, 0, 0, 255};
    const auto alphaLanes = hn::LoadDup128(whole, kAlpha);
    const auto keep = hn::LoadDup128(d, kKeep); // alpha itself is multiplied by 255
    const std::size_t n = hn::Lanes(d);
    for (; i + n <= samples; i += n) {
        const auto value = hn::PromoteTo(d, hn::LoadU(bytes, in + i));
        const auto alpha = hn::Or(hn::BitCast(d, hn::TableLookupBytes(hn::BitCast(whole, value), alphaLanes)), keep);
        const auto t = hn::Add(hn::Mul(value, alpha), hn::Set(d, std::uint16_t{128}));
        const auto scaled = hn::ShiftRight<8>(hn::Add(t, hn::ShiftRight<8>(t)));
        hn::StoreU(hn::DemoteTo(bytes, hn::BitCast(ds, scaled)), bytes, out + i);
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
    const hn::ScalableTag<std::uint8_t> d;
    alignas(16) static constexpr std::uint8_t kAlpha[16] = {3, 3, 3, 3, 7, 7, 7, 7, 11, 11, 11, 11, 15, 15, 15, 15};
    const auto lanes = hn::LoadDup128(d, kAlpha);
    const std::size_t n = hn::Lanes(d);
    for (; i + n <= samples; i += n) {
        const auto value = hn::LoadU(d, row + i);
        hn::StoreU(hn::Min(value, hn::TableLookupBytes(value, lanes)), d, row + i);
    }
#endif
    for (; i < samples; i += 4) {
        for (std::size_t c = 0; c < 3; ++c)
            row[i + c] = std::min(row[i + c], row[i + 3]);
    }
}

void SetOpaque(std::uint8_t* row, std::size_t pixels)
{
    const std::size_t samples = 4 * pixels;
    std::size_t i = 0;
#if HWY_TARGET != HWY_SCALAR
    const hn::ScalableTag<std::uint8_t> d;
    alignas(16) static constexpr std::uint8_t kAlpha[16] = {0, 0, 0, 255, 0, 0, 0, 255, 0, 0, 0, 255, 0, 0, 0, 255};
    const auto alpha = hn::LoadDup128(d, kAlpha);
    const std::size_t n = hn::Lanes(d);
    for (; i + n <= samples; i += n)
        hn::StoreU(hn::Or(hn::LoadU(d, row + i), alpha), d, row + i);
#endif
    for (; i < samples; i += 4)
        row[i + 3] = 255;
}

/// The four taps around a place on one axis.
struct Taps {
    int first;         ///< may lie outside, as may the three that follow
    float distance[4]; ///< of each from the place

    Taps(double place, int begin, int length)
    {
        // Far places only occur under pixels that are not covered; they must not overflow.
        const double centre = std::min(std::max(place, begin - 4.0), begin + length + 4.0) - 0.5;
        const int cut = static_cast<int>(centre);
        const int low = centre < cut ? cut - 1 : cut;
        const auto t = static_cast<float>(centre - low);
        first = low - 1 - begin;
        distance[0] = 1 + t;
        distance[1] = t;
        distance[2] = 1 - t;
        distance[3] = 2 - t;
    }

    bool isInside(int length) const { return first >= 0 && first + 4 <= length; }
};

/// Keys' kernel, ((a·x + b)·x + c)·x + d with the coefficients of the branch that a tap lies on.
alignas(16) constexpr float kCubed[4] = {-0.5F, 1.5F, 1.5F, -0.5F};
alignas(16) constexpr float kSquared[4] = {2.5F, -2.5F, -2.5F, 2.5F};
alignas(16) constexpr float kLinear[4] = {-4, 0, 0, -4};
alignas(16) constexpr float kConstant[4] = {2, 1, 1, 2};

HWY_INLINE void keysWeights(const Taps& taps, float* weights)
{
#if HWY_TARGET != HWY_SCALAR
    const Pixel d;
    const auto x = hn::LoadU(d, taps.distance);
    auto w = hn::Add(hn::Mul(hn::Load(d, kCubed), x), hn::Load(d, kSquared));
    w = hn::Add(hn::Mul(w, x), hn::Load(d, kLinear));
    hn::StoreU(hn::Add(hn::Mul(w, x), hn::Load(d, kConstant)), d, weights);
#else
    for (int k = 0; k < 4; ++k) {
        const float x = taps.distance[k];
        weights[k] = ((kCubed[k] * x + kSquared[k]) * x + kLinear[k]) * x + kConstant[k];
    }
#endif
}

/// `rows` are four runs of four pixels around the place: weighed down the columns first, then across.
template <int Channels>
HWY_INLINE void cubicPixel(const std::uint8_t* const* rows, const float* across, const float* down, std::uint8_t* out)
{
#if HWY_TARGET != HWY_SCALAR
    if constexpr (Channels == 4) {
        const hn::CappedTag<float, 16> wide;
        const std::size_t n = hn::Lanes(wide);
        alignas(64) float columns[16];
        for (std::size_t i = 0; i < 16; i += n) {
            auto sum = hn::Mul(hn::Set(wide, down[0]), loadBytes(wide, rows[0] + i));
            for (int k = 1; k < 4; ++k)
                sum = hn::Add(sum, hn::Mul(hn::Set(wide, down[k]), loadBytes(wide, rows[k] + i)));
            hn::Store(sum, wide, columns + i);
        }
        const Pixel d;
        auto sum = hn::Mul(hn::Set(d, across[0]), hn::Load(d, columns));
        for (std::size_t t = 1; t < 4; ++t)
            sum = hn::Add(sum, hn::Mul(hn::Set(d, across[t]), hn::Load(d, columns + 4 * t)));
        storeBytes(d, sum, out);
        return;
    }
#endif
    for (int c = 0; c < Channels; ++c) {
        float sum = 0;
        for (int t = 0; t < 4; ++t) {
            float column = down[0] * static_cast<float>(rows[0][Channels * t + c]);
            for (int k = 1; k < 4; ++k)
                column += down[k] * static_cast<float>(rows[k][Channels * t + c]);
            sum = t == 0 ? across[0] * column : sum + across[t] * column;
        }
        out[c] = roundedByte(sum);
    }
}

/// The four runs with the edge repeated where they leave the picture.
template <int Channels>
void gatherRuns(const Texels& source, int left, int top, std::uint8_t* out)
{
    for (int k = 0; k < 4; ++k) {
        const auto y = static_cast<std::size_t>(std::clamp(top + k, 0, source.height - 1));
        for (int t = 0; t < 4; ++t, out += Channels) {
            const auto x = static_cast<std::size_t>(std::clamp(left + t, 0, source.width - 1));
            std::memcpy(out, source.data + y * source.stride + x * Channels, Channels);
        }
    }
}

template <int Channels>
HWY_INLINE void sampleCubic(const Texels& source, const SamplePath& path, int count, std::uint8_t* out)
{
    alignas(16) float wx[4];
    alignas(16) float wy[4];
    std::uint8_t gathered[16 * Channels];
    for (int i = 0; i < count; ++i, out += Channels) {
        const int column = path.first + i;
        const Taps across(path.x + column * path.dx, source.left, source.width);
        const Taps down(path.y + column * path.dy, source.top, source.height);
        const std::uint8_t* run = gathered;
        std::size_t step = 4 * Channels;
        if (across.isInside(source.width) && down.isInside(source.height)) {
            run = source.data + static_cast<std::size_t>(down.first) * source.stride +
                  static_cast<std::size_t>(across.first) * Channels;
            step = source.stride;
        } else {
            gatherRuns<Channels>(source, across.first, down.first, gathered);
        }
        keysWeights(across, wx);
        keysWeights(down, wy);
        const std::uint8_t* const rows[4] = {run, run + step, run + 2 * step, run + 3 * step};
        cubicPixel<Channels>(rows, wx, wy, out);
    }
}

void SampleCubicPixels(const Texels& source, const SamplePath& path, int count, std::uint8_t* out)
{
    sampleCubic<4>(source, path, count, out);
}

void SampleCubicBytes(const Texels& source, const SamplePath& path, int count, std::uint8_t* out)
{
    sampleCubic<1>(source, path, count, out);
}

} // namespace HWY_NAMESPACE
} // namespace lamina::kernels
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace lamina::kernels {

HWY_EXPORT(WeighBytes);
HWY_EXPORT(WeighFloats);
HWY_EXPORT(BytesToFloats);
HWY_EXPORT(FloatsToBytes);
HWY_EXPORT(WeighPixels);
HWY_EXPORT(WeighSamples);
HWY_EXPORT(Premultiply);
HWY_EXPORT(CutToAlpha);
HWY_EXPORT(SetOpaque);
HWY_EXPORT(SampleCubicPixels);
HWY_EXPORT(SampleCubicBytes);

void weighBytes(const std::uint8_t* const* rows, const float* weights, int taps, std::size_t samples, bool add,
                float* out)
{
    HWY_DYNAMIC_DISPATCH(WeighBytes)(rows, weights, taps, samples, add, out);
}

void weighFloats(const float* const* rows, const float* weights, int taps, std::size_t samples, std::uint8_t* out)
{
    HWY_DYNAMIC_DISPATCH(WeighFloats)(rows, weights, taps, samples, out);
}

void bytesToFloats(const std::uint8_t* in, std::size_t samples, float* out)
{
    HWY_DYNAMIC_DISPATCH(BytesToFloats)(in, samples, out);
}

void floatsToBytes(const float* in, std::size_t samples, std::uint8_t* out)
{
    HWY_DYNAMIC_DISPATCH(FloatsToBytes)(in, samples, out);
}

void weighPixels(const float* in, int base, const int* first, const float* weights, int taps, int count, float* out)
{
    HWY_DYNAMIC_DISPATCH(WeighPixels)(in, base, first, weights, taps, count, out);
}

void weighSamples(const float* in, int base, const int* first, const float* weights, int taps, int count, float* out)
{
    HWY_DYNAMIC_DISPATCH(WeighSamples)(in, base, first, weights, taps, count, out);
}

void premultiply(const std::uint8_t* in, std::size_t pixels, std::uint8_t* out)
{
    HWY_DYNAMIC_DISPATCH(Premultiply)(in, pixels, out);
}

void cutToAlpha(std::uint8_t* row, std::size_t pixels)
{
    HWY_DYNAMIC_DISPATCH(CutToAlpha)(row, pixels);
}

void sampleCubicPixels(const Texels& source, const SamplePath& path, int count, std::uint8_t* out)
{
    HWY_DYNAMIC_DISPATCH(SampleCubicPixels)(source, path, count, out);
}

void sampleCubicBytes(const Texels& source, const SamplePath& path, int count, std::uint8_t* out)
{
    HWY_DYNAMIC_DISPATCH(SampleCubicBytes)(source, path, count, out);
}

void setOpaque(std::uint8_t* row, std::size_t pixels)
{
    HWY_DYNAMIC_DISPATCH(SetOpaque)(row, pixels);
}

void sampleNearest(const Texels& source, const SamplePath& path, int count, int channels, std::uint8_t* out)
{
    const auto bytes = static_cast<std::size_t>(channels);
    for (int i = 0; i < count; ++i) {
        const int column = path.first + i;
        const double left = path.x + column * path.dx;
        const double top = path.y + column * path.dy;
        const auto x = static_cast<std::size_t>(std::clamp(std::floor(left) - source.left, 0.0, source.width - 1.0));
        const auto y = static_cast<std::size_t>(std::clamp(std::floor(top) - source.top, 0.0, source.height - 1.0));
        std::memcpy(out + static_cast<std::size_t>(i) * bytes, source.data + y * source.stride + x * bytes, bytes);
    }
}

} // namespace lamina::kernels

#endif
