#include "platform/image/drawing/CubicSampling_p.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

// R. G. Keys, "Cubic convolution interpolation for digital image processing", IEEE Transactions on Acoustics, Speech
// and Signal Processing 29, 1981.

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "platform/image/drawing/CubicSampling.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace lamina::kernels {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

/// Output pixels that are made ready together: what is known of them stays in the nearest cache.
constexpr int kRun = 64;

/// Keys' kernel, ((a·x + b)·x + c)·x + d with the coefficients of the branch that each of the four taps lies on.
constexpr std::array<float, 4> kCubed{-0.5F, 1.5F, 1.5F, -0.5F};
constexpr std::array<float, 4> kSquared{2.5F, -2.5F, -2.5F, 2.5F};
constexpr std::array<float, 4> kLinear{-4, 0, 0, -4};
constexpr std::array<float, 4> kConstant{2, 1, 1, 2};

/// The places of a run on one axis: that of column 0, and the step to the next.
struct AxisPath {
    double place;
    double step;
    int begin; ///< of the texels
    int length;

    // Far places only occur under pixels that are not covered; they must not overflow.
    double lowest() const { return begin - 4.0; }
    double highest() const { return begin + length + 4.0; }
};

/// The four taps around each place of a run, on one axis.
struct AxisTaps {
    alignas(64) std::array<std::int32_t, kRun> first; ///< counted in texels; may lie outside, as may the three after it
    alignas(64) std::array<std::array<float, kRun>, 4> weights;

    bool isInside(int index, int length) const
    {
        const std::int32_t at = first[static_cast<std::size_t>(index)];
        return at >= 0 && at + 4 <= length;
    }
};

void findTap(const AxisPath& path, int column, std::size_t index, AxisTaps& taps)
{
    const double place = path.place + column * path.step;
    const double centre = std::min(std::max(place, path.lowest()), path.highest()) - 0.5;
    const double low = std::floor(centre);
    const auto t = static_cast<float>(centre - low);
    taps.first[index] = static_cast<std::int32_t>(low) - 1 - path.begin;
    const std::array<float, 4> distance{1 + t, t, 1 - t, 2 - t};
    for (std::size_t k = 0; k < 4; ++k) {
        const float x = distance[k];
        taps.weights[k][index] = ((kCubed[k] * x + kSquared[k]) * x + kLinear[k]) * x + kConstant[k];
    }
}

void findTaps(const AxisPath& path, int column, int count, AxisTaps& taps)
{
    int i = 0;
#if HWY_TARGET != HWY_SCALAR && HWY_HAVE_FLOAT64
    const hn::ScalableTag<double> d;
    const hn::Rebind<float, decltype(d)> floats;
    const hn::Rebind<std::int32_t, decltype(d)> ints;
    const auto n = static_cast<int>(hn::Lanes(d));
    for (; i + n <= count; i += n) {
        const auto columns = hn::Iota(d, column + i);
        const auto place = hn::Add(hn::Set(d, path.place), hn::Mul(columns, hn::Set(d, path.step)));
        const auto held = hn::Min(hn::Max(place, hn::Set(d, path.lowest())), hn::Set(d, path.highest()));
        const auto centre = hn::Sub(held, hn::Set(d, 0.5));
        const auto low = hn::Floor(centre);
        const auto t = hn::DemoteTo(floats, hn::Sub(centre, low));
        const auto index = static_cast<std::size_t>(i);
        hn::StoreU(hn::Sub(hn::DemoteTo(ints, low), hn::Set(ints, 1 + path.begin)), ints, &taps.first[index]);
        const auto one = hn::Set(floats, 1.0F);
        const decltype(t) distance[4] = {hn::Add(one, t), t, hn::Sub(one, t), hn::Sub(hn::Set(floats, 2.0F), t)};
        for (std::size_t k = 0; k < 4; ++k) {
            const auto x = distance[k];
            auto w = hn::Add(hn::Mul(hn::Set(floats, kCubed[k]), x), hn::Set(floats, kSquared[k]));
            w = hn::Add(hn::Mul(w, x), hn::Set(floats, kLinear[k]));
            hn::StoreU(hn::Add(hn::Mul(w, x), hn::Set(floats, kConstant[k])), floats, &taps.weights[k][index]);
        }
    }
#endif
    for (; i < count; ++i)
        findTap(path, column + i, static_cast<std::size_t>(i), taps);
}

/// The weights of one output pixel.
struct PixelWeights {
    std::array<float, 4> across;
    std::array<float, 4> down;

    PixelWeights(const AxisTaps& x, const AxisTaps& y, std::size_t index)
        : across{x.weights[0][index], x.weights[1][index], x.weights[2][index], x.weights[3][index]}
        , down{y.weights[0][index], y.weights[1][index], y.weights[2][index], y.weights[3][index]}
    {
    }
};

/// Four runs of four pixels around the place, `step` bytes apart: weighed down the columns first, then across.
template <int Channels>
HWY_INLINE void weighRuns(const std::uint8_t* run, std::size_t step, const PixelWeights& w, float* out)
{
#if HWY_TARGET != HWY_SCALAR
    if constexpr (Channels == 4) {
        const hn::CappedTag<float, 16> wide;
        const hn::Rebind<std::int32_t, decltype(wide)> ints;
        const hn::Rebind<std::uint8_t, decltype(wide)> bytes;
        const auto load = [&](const std::uint8_t* p) {
            return hn::ConvertTo(wide, hn::PromoteTo(ints, hn::LoadU(bytes, p)));
        };
        alignas(64) float columns[16];
        for (std::size_t i = 0; i < 16; i += hn::Lanes(wide)) {
            auto sum = hn::Mul(hn::Set(wide, w.down[0]), load(run + i));
            sum = hn::Add(sum, hn::Mul(hn::Set(wide, w.down[1]), load(run + step + i)));
            sum = hn::Add(sum, hn::Mul(hn::Set(wide, w.down[2]), load(run + 2 * step + i)));
            sum = hn::Add(sum, hn::Mul(hn::Set(wide, w.down[3]), load(run + 3 * step + i)));
            hn::Store(sum, wide, columns + i);
        }
        const hn::FixedTag<float, 4> pixel;
        auto sum = hn::Mul(hn::Set(pixel, w.across[0]), hn::Load(pixel, columns));
        for (std::size_t t = 1; t < 4; ++t)
            sum = hn::Add(sum, hn::Mul(hn::Set(pixel, w.across[t]), hn::Load(pixel, columns + 4 * t)));
        hn::StoreU(sum, pixel, out);
        return;
    }
#endif
    for (std::size_t c = 0; c < Channels; ++c) {
        float sum = 0;
        for (std::size_t t = 0; t < 4; ++t) {
            float column = w.down[0] * static_cast<float>(run[Channels * t + c]);
            for (std::size_t k = 1; k < 4; ++k)
                column += w.down[k] * static_cast<float>(run[k * step + Channels * t + c]);
            sum = t == 0 ? w.across[0] * column : sum + w.across[t] * column;
        }
        out[c] = sum;
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

/// Rounded and cut to [0, 255].
void roundSums(const float* sums, std::size_t count, std::uint8_t* out)
{
    std::size_t i = 0;
#if HWY_TARGET != HWY_SCALAR
    const hn::ScalableTag<float> d;
    const hn::Rebind<std::uint8_t, decltype(d)> bytes;
    const std::size_t n = hn::Lanes(d);
    for (; i + n <= count; i += n) {
        const auto half = hn::Add(hn::LoadU(d, sums + i), hn::Set(d, 0.5F));
        const auto cut = hn::Min(hn::Max(half, hn::Zero(d)), hn::Set(d, 255.0F));
        const auto whole = hn::ConvertTo(hn::Rebind<std::int32_t, decltype(d)>(), cut);
        hn::StoreU(hn::U8FromU32(hn::BitCast(hn::Rebind<std::uint32_t, decltype(d)>(), whole)), bytes, out + i);
    }
#endif
    for (; i < count; ++i)
        out[i] = static_cast<std::uint8_t>(std::clamp(sums[i] + 0.5F, 0.0F, 255.0F));
}

template <int Channels>
void sampleRun(const Texels& source, const SamplePath& path, int column, int count, std::uint8_t* out)
{
    AxisTaps x;
    AxisTaps y;
    findTaps({path.x, path.dx, source.left, source.width}, column, count, x);
    findTaps({path.y, path.dy, source.top, source.height}, column, count, y);
    alignas(64) std::array<float, Channels * kRun> sums;
    // The places lie on a line: where its ends are inside, all are.
    const auto isInside = [&](int i) { return x.isInside(i, source.width) && y.isInside(i, source.height); };
    const bool allInside = isInside(0) && isInside(count - 1);
    for (int i = 0; i < count; ++i) {
        const auto index = static_cast<std::size_t>(i);
        float* sum = &sums[Channels * index];
        if (allInside || isInside(i)) {
            const std::uint8_t* run = source.data + static_cast<std::size_t>(y.first[index]) * source.stride +
                                      static_cast<std::size_t>(x.first[index]) * Channels;
            weighRuns<Channels>(run, source.stride, {x, y, index}, sum);
        } else {
            std::array<std::uint8_t, 16 * Channels> gathered;
            gatherRuns<Channels>(source, x.first[index], y.first[index], gathered.data());
            weighRuns<Channels>(gathered.data(), 4 * Channels, {x, y, index}, sum);
        }
    }
    roundSums(sums.data(), Channels * static_cast<std::size_t>(count), out);
}

template <int Channels>
void sampleCubic(const Texels& source, const SamplePath& path, int count, std::uint8_t* out)
{
    for (int i = 0; i < count; i += kRun)
        sampleRun<Channels>(source, path, path.first + i, std::min(kRun, count - i),
                            out + std::ptrdiff_t{Channels} * i);
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

HWY_EXPORT(SampleCubicPixels);
HWY_EXPORT(SampleCubicBytes);

void sampleCubicPixels(const Texels& source, const SamplePath& path, int count, std::uint8_t* out)
{
    HWY_DYNAMIC_DISPATCH(SampleCubicPixels)(source, path, count, out);
}

void sampleCubicBytes(const Texels& source, const SamplePath& path, int count, std::uint8_t* out)
{
    HWY_DYNAMIC_DISPATCH(SampleCubicBytes)(source, path, count, out);
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
