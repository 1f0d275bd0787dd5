#include "gpu/kernels/NeighbourKernels.h"

#include "platform/base/WorkerPool.h"
#include "platform/image/pixels/PixelBuffer.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "gpu/kernels/NeighbourKernels.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "gpu/kernels/PixelLanes_p.h"

#ifndef LAMINA_NEIGHBOUR_KERNEL_TYPES
#define LAMINA_NEIGHBOUR_KERNEL_TYPES
namespace lamina::kernels {

/// The rows above, at and below, as numbers that may be read one pixel beyond both ends.
struct ThreeRows {
    const float* above;
    const float* at;
    const float* below;
};

struct Poster {
    float threshold;
    float levels;
};

} // namespace lamina::kernels
#endif

HWY_BEFORE_NAMESPACE();
namespace lamina::kernels {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

using ByteLanes = hn::Rebind<std::uint8_t, Floats>;

/// Red from 0 to 1. `out` has room for a whole number of lanes.
void RedRow(const std::uint8_t* in, std::size_t pixels, float* out)
{
    forPixels(pixels, [&](std::size_t at, auto lanes) HWY_ATTR {
        const auto red = channelOf<0>(loadRGBA(in + at, lanes));
        hn::StoreU(hn::Mul(red, hn::Set(Floats(), 1.0F / 255)), Floats(), out + at / 4);
    });
}

/// All channels from 0 to 255.
void NumberRow(const std::uint8_t* in, std::size_t pixels, float* out)
{
    const std::size_t n = hn::Lanes(Floats());
    const std::size_t samples = 4 * pixels;
    std::size_t i = 0;
    for (; i + n <= samples; i += n) {
        const auto whole = hn::PromoteTo(Ints(), hn::LoadU(ByteLanes(), in + i));
        hn::StoreU(hn::ConvertTo(Floats(), whole), Floats(), out + i);
    }
    for (; i < samples; ++i)
        out[i] = static_cast<float>(in[i]);
}

/// In the order of the shader's own additions: where a gradient is just as long as the threshold, the last bit decides.
void PosterRow(const std::uint8_t* in, std::size_t pixels, const ThreeRows& red, const Poster& poster,
               std::uint8_t* out)
{
    const auto share = hn::Set(Floats(), 1.0F / 255);
    const auto levels = hn::Set(Floats(), poster.levels);
    const auto two = hn::Set(Floats(), 2.0F);
    const auto posterized = [&](hn::Vec<Floats> byte) HWY_ATTR {
        const auto level = hn::Add(hn::Mul(hn::Mul(byte, share), levels), hn::Set(Floats(), 0.5F));
        return hn::Mul(hn::Div(hn::Floor(level), levels), hn::Set(Floats(), 255.0F));
    };
    forPixels(pixels, [&](std::size_t at, auto lanes) HWY_ATTR {
        const auto value = [&](const float* row, int aside) HWY_ATTR {
            return hn::LoadU(Floats(), row + static_cast<std::ptrdiff_t>(at / 4) + aside);
        };
        const auto topLeft = value(red.above, -1);
        const auto topRight = value(red.above, 1);
        const auto bottomLeft = value(red.below, -1);
        const auto bottomRight = value(red.below, 1);
        auto across = hn::Sub(topRight, topLeft);
        across = hn::Add(across, hn::Mul(two, hn::Sub(value(red.at, 1), value(red.at, -1))));
        across = hn::Sub(hn::Add(across, bottomRight), bottomLeft);
        auto down = hn::Sub(bottomLeft, topLeft);
        down = hn::Add(down, hn::Mul(two, hn::Sub(value(red.below, 0), value(red.above, 0))));
        down = hn::Sub(hn::Add(down, bottomRight), topRight);
        const auto length = hn::Sqrt(hn::Add(hn::Mul(across, across), hn::Mul(down, down)));
        const auto isEdge = hn::Ge(length, hn::Set(Floats(), poster.threshold));
        const auto rgba = loadRGBA(in + at, lanes);
        const Color color = colorOf(rgba);
        const auto inked = [&](hn::Vec<Floats> byte) HWY_ATTR { return hn::IfThenZeroElse(isEdge, posterized(byte)); };
        storeWithAlphaOf(rgba, inked(color.red), inked(color.green), inked(color.blue), out + at, lanes);
    });
}

void ConvolvedRow(const ThreeRows& rows, std::size_t pixels, const NeighbourWeights& weights, std::uint8_t* out)
{
    const std::size_t n = hn::Lanes(Floats());
    const std::size_t samples = 4 * pixels;
    for (std::size_t i = 0; i < samples; i += n) {
        const auto rowSum = [&](const float* row, const float* weight) HWY_ATTR {
            const float* const at = row + i;
            const auto left = hn::Mul(hn::LoadU(Floats(), at - 4), hn::Set(Floats(), weight[0]));
            const auto middle = hn::Mul(hn::LoadU(Floats(), at), hn::Set(Floats(), weight[1]));
            const auto right = hn::Mul(hn::LoadU(Floats(), at + 4), hn::Set(Floats(), weight[2]));
            return hn::Add(hn::Add(left, middle), right);
        };
        const auto sum = hn::Add(hn::Add(rowSum(rows.above, weights.data()), rowSum(rows.at, weights.data() + 3)),
                                 rowSum(rows.below, weights.data() + 6));
        const auto three = hn::Set(Ints(), 3);
        const auto channel = hn::And(hn::Iota(Ints(), static_cast<std::int32_t>(i)), three);
        const auto isAlpha = hn::RebindMask(Floats(), hn::Eq(channel, three));
        const auto value = hn::IfThenElse(isAlpha, hn::LoadU(Floats(), rows.at + i), sum);
        const auto cut = hn::Min(hn::Max(value, hn::Zero(Floats())), hn::Set(Floats(), 255.0F));
        hn::StoreU(hn::DemoteTo(ByteLanes(), hn::NearestInt(cut)), ByteLanes(), out + i);
    }
}

} // namespace HWY_NAMESPACE
} // namespace lamina::kernels
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace lamina::kernels {

HWY_EXPORT(RedRow);
HWY_EXPORT(NumberRow);
HWY_EXPORT(PosterRow);
HWY_EXPORT(ConvolvedRow);

namespace {

/// More numbers than the lanes of any processor, for groups that are not whole.
constexpr std::size_t kMostLanes = 128;

/// Three rows as numbers, of which each is made once while one goes down the picture.
class RollingRows {
public:
    /// `numbers`: of a pixel. `make(row, pixels, out)` writes them, and may write lanes beyond.
    RollingRows(const KernelPixels& picture, std::size_t numbers,
                void (*make)(const std::uint8_t*, std::size_t, float*))
        : m_picture(picture)
        , m_numbers(numbers)
        , m_make(make)
        , m_stride(numbers * (static_cast<std::size_t>(picture.size.width) + 2) + 2 * kMostLanes)
        , m_memory(PixelBuffer::zeroed(3 * m_stride * sizeof(float)))
    {
    }
    bool ok() const { return static_cast<bool>(m_memory); }

    /// Those around row `y`; `y` grows by one from call to call.
    ThreeRows around(int y)
    {
        const bool goesOn = m_next == y + 1;
        for (int row = goesOn ? y + 1 : y - 1; row <= y + 1; ++row)
            fill(row);
        m_next = y + 2;
        return {place(y - 1), place(y), place(y + 1)};
    }

private:
    /// The first pixel's numbers.
    float* place(int row)
    {
        return reinterpret_cast<float*>(m_memory.data()) + static_cast<std::size_t>((row + 3) % 3) * m_stride +
               kMostLanes;
    }
    void fill(int row)
    {
        const auto width = static_cast<std::size_t>(m_picture.size.width);
        float* const out = place(row);
        m_make(m_picture.row(std::clamp(row, 0, m_picture.size.height - 1)), width, out);
        std::copy_n(out, m_numbers, out - m_numbers);
        std::copy_n(out + (width - 1) * m_numbers, m_numbers, out + width * m_numbers);
    }

    const KernelPixels& m_picture;
    std::size_t m_numbers;
    void (*m_make)(const std::uint8_t*, std::size_t, float*);
    std::size_t m_stride;
    PixelBuffer m_memory;
    int m_next = -2;
};

/// `work(rows, y)` for all rows of the picture. False: memory was short.
template <class Work>
bool forRowsAround(const KernelPixels& picture, std::size_t numbers,
                   void (*make)(const std::uint8_t*, std::size_t, float*), const Work& work)
{
    std::atomic<bool> isShort{false};
    parallelRows(0, picture.size.height, static_cast<std::size_t>(picture.size.width), [&](int first, int last) {
        RollingRows rows(picture, numbers, make);
        if (!rows.ok()) {
            isShort = true;
            return;
        }
        for (int y = first; y < last; ++y)
            work(rows.around(y), y);
    });
    return !isShort;
}

void redRow(const std::uint8_t* in, std::size_t pixels, float* out)
{
    HWY_DYNAMIC_DISPATCH(RedRow)(in, pixels, out);
}

void numberRow(const std::uint8_t* in, std::size_t pixels, float* out)
{
    HWY_DYNAMIC_DISPATCH(NumberRow)(in, pixels, out);
}

bool convolved(const KernelFrame& frame, const NeighbourWeights& weights)
{
    const auto width = static_cast<std::size_t>(frame.first.size.width);
    std::atomic<bool> isShort{false};
    const bool ok = forRowsAround(frame.first, 4, numberRow, [&](const ThreeRows& rows, int y) {
        // Lanes may be written beyond the row's end.
        thread_local PixelBuffer line;
        if (line.size() < 4 * width + kMostLanes)
            line = PixelBuffer::allocate(4 * width + kMostLanes);
        if (!line) {
            isShort = true;
            return;
        }
        HWY_DYNAMIC_DISPATCH(ConvolvedRow)(rows, width, weights, line.data());
        std::memcpy(frame.outputRow(y), line.data(), 4 * width);
    });
    return ok && !isShort;
}

/// Each byte and the one `away` from it in the other row.
template <Extreme Which>
void joinRow(std::uint8_t* row, const std::uint8_t* other, std::size_t bytes)
{
    for (std::size_t i = 0; i < bytes; ++i)
        row[i] = Which == Extreme::Least ? std::min(row[i], other[i]) : std::max(row[i], other[i]);
}

void makeGrey(const std::uint8_t* in, std::size_t pixels, std::uint8_t* out)
{
    for (std::size_t i = 0; i < 4 * pixels; i += 4) {
        const std::uint8_t red = in[i];
        out[i] = red;
        out[i + 1] = red;
        out[i + 2] = red;
        out[i + 3] = 255;
    }
}

template <Extreme Which>
bool extremes(const KernelFrame& frame, ExtremeOf channels, int radius)
{
    const auto width = static_cast<std::size_t>(frame.first.size.width);
    const int height = frame.first.size.height;
    const std::size_t border = std::size_t{4} * static_cast<std::size_t>(radius);
    std::atomic<bool> isShort{false};
    parallelRows(0, height, width, [&](int first, int last) {
        PixelBuffer line = PixelBuffer::allocate(4 * width + 2 * border);
        PixelBuffer result = PixelBuffer::allocate(4 * width);
        if (!line || !result) {
            isShort = true;
            return;
        }
        std::uint8_t* const row = line.data() + border;
        for (int y = first; y < last; ++y) {
            std::memcpy(row, frame.first.row(y), 4 * width);
            for (int away = -radius; away <= radius; ++away)
                joinRow<Which>(row, frame.first.row(std::clamp(y + away, 0, height - 1)), 4 * width);
            for (std::size_t i = 0; i < border; i += 4) {
                std::memcpy(line.data() + i, row, 4);
                std::memcpy(row + 4 * width + i, row + 4 * (width - 1), 4);
            }
            std::uint8_t* const out = channels == ExtremeOf::Red ? result.data() : frame.outputRow(y);
            std::memcpy(out, row, 4 * width);
            for (int away = -radius; away <= radius; ++away)
                joinRow<Which>(out, row + 4 * static_cast<std::ptrdiff_t>(away), 4 * width);
            if (channels == ExtremeOf::Red)
                makeGrey(out, width, frame.outputRow(y));
        }
    });
    return !isShort;
}

} // namespace

FilterKernel convolutionKernel(const NeighbourWeights& weights)
{
    if (!std::ranges::all_of(weights, [](float weight) { return std::isfinite(weight); }))
        return {};
    return {[weights](const KernelFrame& frame) { return convolved(frame, weights); }};
}

FilterKernel posterizedEdgesKernel(float threshold, float levels)
{
    if (!std::isfinite(threshold) || !std::isfinite(levels) || levels == 0)
        return {};
    return {[poster = Poster{threshold, levels}](const KernelFrame& frame) {
        const auto width = static_cast<std::size_t>(frame.first.size.width);
        return forRowsAround(frame.first, 1, redRow, [&](const ThreeRows& rows, int y) {
            HWY_DYNAMIC_DISPATCH(PosterRow)(frame.first.row(y), width, rows, poster, frame.outputRow(y));
        });
    }};
}

FilterKernel extremeKernel(Extreme extreme, ExtremeOf channels, int radius)
{
    return {[=](const KernelFrame& frame) {
        return extreme == Extreme::Least ? extremes<Extreme::Least>(frame, channels, radius)
                                         : extremes<Extreme::Greatest>(frame, channels, radius);
    }};
}

} // namespace lamina::kernels

#endif
