// Sums are made of 16-bit numbers with six bits behind the point, by products of fixed point with 15: a sum of 63 such
// products is off by a quarter of a step of 8 bits at the most.

#include "gpu/kernels/BlurKernel.h"

#include "platform/base/WorkerPool.h"
#include "platform/image/pixels/PixelBuffer.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <utility>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "gpu/kernels/BlurKernel.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#ifndef LAMINA_BLUR_KERNEL_TYPES
#define LAMINA_BLUR_KERNEL_TYPES
namespace lamina::kernels {

/// Samples that are summed at once; rows of sums are this much longer than what is asked for at the most.
constexpr std::size_t kGroup = 128;

/// Sums over `taps` lines of samples: the one at `centre`, and those `step` samples to both sides, again and again.
struct LineSum {
    std::span<const std::int16_t> weights; ///< times 2^15
    std::ptrdiff_t step;
};

} // namespace lamina::kernels
#endif

HWY_BEFORE_NAMESPACE();
namespace lamina::kernels {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

using Sums = hn::ScalableTag<std::int16_t>;
using HalfBytes = hn::Rebind<std::uint8_t, Sums>;

constexpr int kFraction = 6;

/// Samples with their fraction, as many as whole groups have.
void Widen(const std::uint8_t* in, std::size_t samples, std::int16_t* out)
{
    const std::size_t n = hn::Lanes(Sums());
    std::size_t i = 0;
    for (; i + n <= samples; i += n) {
        const auto wide = hn::PromoteTo(Sums(), hn::LoadU(HalfBytes(), in + i));
        hn::StoreU(hn::ShiftLeft<kFraction>(wide), Sums(), out + i);
    }
    for (; i < samples; ++i)
        out[i] = static_cast<std::int16_t>(in[i] << kFraction);
}

/// Whole groups of sums; `centre` and what lies to its sides must be there for them.
void SumGroups(const std::int16_t* centre, std::size_t groups, const LineSum& line, std::uint8_t* out)
{
    constexpr std::size_t kAtOnce = 4;
    const std::size_t n = hn::Lanes(Sums());
    const auto half = hn::Set(Sums(), std::int16_t{1 << (kFraction - 1)});
    const std::size_t samples = groups * kGroup;
    std::size_t i = 0;
    for (; i + kAtOnce * n <= samples; i += kAtOnce * n) {
        const std::int16_t* const at = centre + i;
        const auto own = hn::Set(Sums(), line.weights[0]);
        auto first = hn::MulFixedPoint15(hn::LoadU(Sums(), at), own);
        auto second = hn::MulFixedPoint15(hn::LoadU(Sums(), at + n), own);
        auto third = hn::MulFixedPoint15(hn::LoadU(Sums(), at + 2 * n), own);
        auto fourth = hn::MulFixedPoint15(hn::LoadU(Sums(), at + 3 * n), own);
        for (std::size_t k = 1; k < line.weights.size(); ++k) {
            const auto weight = hn::Set(Sums(), line.weights[k]);
            const std::int16_t* const before = at - static_cast<std::ptrdiff_t>(k) * line.step;
            const std::int16_t* const after = at + static_cast<std::ptrdiff_t>(k) * line.step;
            const auto both = [&](std::size_t lane) HWY_ATTR {
                return hn::MulFixedPoint15(hn::Add(hn::LoadU(Sums(), before + lane), hn::LoadU(Sums(), after + lane)),
                                           weight);
            };
            first = hn::Add(first, both(0));
            second = hn::Add(second, both(n));
            third = hn::Add(third, both(2 * n));
            fourth = hn::Add(fourth, both(3 * n));
        }
        const auto put = [&](hn::Vec<Sums> sum, std::size_t lane) HWY_ATTR {
            const auto rounded = hn::ShiftRight<kFraction>(hn::Add(sum, half));
            hn::StoreU(hn::DemoteTo(HalfBytes(), rounded), HalfBytes(), out + i + lane);
        };
        put(first, 0);
        put(second, n);
        put(third, 2 * n);
        put(fourth, 3 * n);
    }
}

} // namespace HWY_NAMESPACE
} // namespace lamina::kernels
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace lamina::kernels {

HWY_EXPORT(Widen);
HWY_EXPORT(SumGroups);

namespace {

/// Rows that are worked on together: what is between the two passes stays in the cache.
constexpr int kBandRows = 32;

constexpr std::size_t wholeGroups(std::size_t samples)
{
    return (samples + kGroup - 1) / kGroup;
}

/// The weights times 2^15, which together make that number exactly.
std::vector<std::int16_t> fixedWeights(const std::vector<float>& weights)
{
    constexpr int kOne = 1 << 15;
    std::vector<std::int16_t> fixed(weights.size());
    int left = kOne;
    for (std::size_t i = 1; i < weights.size(); ++i) {
        fixed[i] = static_cast<std::int16_t>(std::lround(weights[i] * kOne));
        left -= 2 * fixed[i];
    }
    fixed[0] = static_cast<std::int16_t>(std::clamp(left, 0, kOne - 1));
    return fixed;
}

/// A band of the picture with the memory that it takes.
class Band {
public:
    Band(const KernelFrame& frame, const std::vector<std::int16_t>& weights)
        : m_frame(frame)
        , m_weights(weights)
        , m_reach(static_cast<int>(weights.size()) - 1)
        , m_samples(std::size_t{4} * static_cast<std::size_t>(frame.first.size.width))
        , m_betweenStride(wholeGroups(m_samples) * kGroup)
        , m_strip(PixelBuffer::allocate(sizeof(std::int16_t) * kGroup *
                                        (kBandRows + 2 * static_cast<std::size_t>(m_reach))))
        , m_between(PixelBuffer::allocate(m_betweenStride * kBandRows))
        , m_row(PixelBuffer::allocate(sizeof(std::int16_t) * (m_betweenStride + 8 * static_cast<std::size_t>(m_reach))))
    {
    }
    bool ok() const { return m_strip && m_between && m_row; }

    void blur(int first, int last)
    {
        for (std::size_t at = 0; at < m_samples; at += kGroup)
            sumDown(first, last, at);
        for (int y = first; y < last; ++y)
            sumAcross(m_between.data() + static_cast<std::size_t>(y - first) * m_betweenStride, m_frame.outputRow(y));
    }

private:
    void sumDown(int first, int last, std::size_t at)
    {
        const int height = m_frame.first.size.height;
        const std::size_t count = std::min(kGroup, m_samples - at);
        auto* const strip = reinterpret_cast<std::int16_t*>(m_strip.data());
        if (count < kGroup)
            std::memset(strip, 0, m_strip.size());
        for (int y = first - m_reach; y < last + m_reach; ++y) {
            HWY_DYNAMIC_DISPATCH(Widen)
            (m_frame.first.row(std::clamp(y, 0, height - 1)) + at, count,
             strip + static_cast<std::size_t>(y - first + m_reach) * kGroup);
        }
        const LineSum down{m_weights, kGroup};
        for (int y = first; y < last; ++y) {
            HWY_DYNAMIC_DISPATCH(SumGroups)
            (strip + static_cast<std::size_t>(y - first + m_reach) * kGroup, 1, down,
             m_between.data() + static_cast<std::size_t>(y - first) * m_betweenStride + at);
        }
    }
    void sumAcross(const std::uint8_t* in, std::uint8_t* out)
    {
        const std::size_t border = std::size_t{4} * static_cast<std::size_t>(m_reach);
        auto* const row = reinterpret_cast<std::int16_t*>(m_row.data());
        HWY_DYNAMIC_DISPATCH(Widen)(in, m_samples, row + border);
        for (std::size_t i = 0; i < border; ++i) {
            row[i] = row[border + i % 4];
            row[border + m_samples + i] = row[border + m_samples - 4 + i % 4];
        }
        const LineSum across{m_weights, 4};
        const std::size_t groups = m_samples / kGroup;
        HWY_DYNAMIC_DISPATCH(SumGroups)(row + border, groups, across, out);
        const std::size_t done = groups * kGroup;
        if (done == m_samples)
            return;
        // Sums of what lies beyond the row's own samples are made and not used.
        std::fill(row + border + m_samples + border, row + m_betweenStride + 2 * border, std::int16_t{0});
        std::uint8_t rest[kGroup];
        HWY_DYNAMIC_DISPATCH(SumGroups)(row + border + done, 1, across, rest);
        std::memcpy(out + done, rest, m_samples - done);
    }

    const KernelFrame& m_frame;
    const std::vector<std::int16_t>& m_weights;
    int m_reach;
    std::size_t m_samples;
    std::size_t m_betweenStride;
    PixelBuffer m_strip;
    PixelBuffer m_between;
    PixelBuffer m_row;
};

bool blurred(const KernelFrame& frame, const std::vector<std::int16_t>& weights)
{
    std::atomic<bool> isShort{false};
    const int height = frame.first.size.height;
    WorkerPool::shared().parallelFor(0, (height + kBandRows - 1) / kBandRows, 1, [&](int first, int last) {
        Band band(frame, weights);
        if (!band.ok()) {
            isShort = true;
            return;
        }
        for (int i = first; i < last; ++i)
            band.blur(i * kBandRows, std::min(height, (i + 1) * kBandRows));
    });
    return !isShort;
}

} // namespace

FilterKernel lineBlurKernel(const std::vector<float>& weights)
{
    const auto isShare = [](float weight) { return weight >= 0 && weight <= 0.5F; };
    if (weights.empty() || !(weights[0] >= 0 && weights[0] <= 1) ||
        !std::all_of(weights.begin() + 1, weights.end(), isShare))
        return {};
    return {[fixed = fixedWeights(weights)](const KernelFrame& frame) {
        if (fixed.size() > 1)
            return blurred(frame, fixed);
        const auto size = frame.first.size;
        std::memcpy(frame.output, frame.first.bytes,
                    std::size_t{4} * static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height));
        return true;
    }};
}

} // namespace lamina::kernels

#endif
