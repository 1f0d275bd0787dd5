#include "platform/image/drawing/ResampleKernels_p.h"

#include "platform/image/pixels/PixelArithmetic.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "platform/image/drawing/ResampleKernels.cpp"
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

} // namespace lamina::kernels

#endif
