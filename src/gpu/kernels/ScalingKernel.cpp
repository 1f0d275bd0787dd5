#include "gpu/kernels/ScalingKernel.h"

#include "platform/base/WorkerPool.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <utility>
#include <vector>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "gpu/kernels/ScalingKernel.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "gpu/kernels/PixelLanes_p.h"
#include "gpu/kernels/PixelParts_p.h"

#ifndef LAMINA_SCALING_KERNEL_TYPES
#define LAMINA_SCALING_KERNEL_TYPES
namespace lamina::kernels {

/// The two texels beside a place: how much the second one weighs has 15 bits behind the point.
struct Neighbours {
    const std::int32_t* first;
    const std::int32_t* second;
    const std::uint32_t* share; ///< twice, in the upper half too
};

/// A row as numbers of 16 bits with seven bits behind the point; two in each of its words.
struct WideRow {
    std::uint32_t* redBlue;
    std::uint32_t* greenAlpha;
};

} // namespace lamina::kernels
#endif

HWY_BEFORE_NAMESPACE();
namespace lamina::kernels {
namespace HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR

/// Both halves of the words, by the same whole numbers as on lanes.
std::uint32_t mixedPair(std::uint32_t from, std::uint32_t to, std::uint32_t share)
{
    const auto half = [&](int shift) {
        const int a = static_cast<int>(from >> shift & 0xFFFF);
        const int b = static_cast<int>(to >> shift & 0xFFFF);
        const int way = ((b - a) * static_cast<int>(share & 0x7FFF) + (1 << 14)) >> 15;
        return static_cast<std::uint32_t>(a + way) << shift;
    };
    return half(0) | half(16);
}

void AcrossRow(const std::uint8_t* in, const Neighbours& columns, std::size_t pixels, const WideRow& out)
{
    const auto pixelAt = [&](std::int32_t index) {
        std::uint32_t pixel = 0;
        std::memcpy(&pixel, in + 4 * static_cast<std::ptrdiff_t>(index), 4);
        return pixel;
    };
    for (std::size_t i = 0; i < pixels; ++i) {
        const std::uint32_t a = pixelAt(columns.first[i]);
        const std::uint32_t b = pixelAt(columns.second[i]);
        out.redBlue[i] = mixedPair(a << 7 & 0x7F807F80, b << 7 & 0x7F807F80, columns.share[i]);
        out.greenAlpha[i] = mixedPair(a >> 1 & 0x7F807F80, b >> 1 & 0x7F807F80, columns.share[i]);
    }
}

void DownRow(const WideRow& upper, const WideRow& lower, std::uint32_t share, std::size_t pixels, std::uint8_t* out)
{
    const auto rounded = [](std::uint32_t pair) { return (pair + 0x00400040) >> 7 & 0x00FF00FF; };
    for (std::size_t i = 0; i < pixels; ++i) {
        const std::uint32_t rgba = rounded(mixedPair(upper.redBlue[i], lower.redBlue[i], share)) |
                                   rounded(mixedPair(upper.greenAlpha[i], lower.greenAlpha[i], share)) << 8;
        std::memcpy(out + 4 * i, &rgba, 4);
    }
}

#else

/// `columns` and `out` hold whole groups of lanes.
void AcrossRow(const std::uint8_t* in, const Neighbours& columns, std::size_t pixels, const WideRow& out)
{
    const auto* const texels = reinterpret_cast<const std::uint32_t*>(in);
    for (std::size_t i = 0; i < pixels; i += hn::Lanes(Pixels())) {
        const Parts first = partsOf(hn::GatherIndex(Pixels(), texels, hn::LoadU(Ints(), columns.first + i)));
        const Parts second = partsOf(hn::GatherIndex(Pixels(), texels, hn::LoadU(Ints(), columns.second + i)));
        const Parts here = mixed(first, second, hn::BitCast(Pairs(), hn::LoadU(Pixels(), columns.share + i)));
        hn::StoreU(hn::BitCast(Pixels(), here.redBlue), Pixels(), out.redBlue + i);
        hn::StoreU(hn::BitCast(Pixels(), here.greenAlpha), Pixels(), out.greenAlpha + i);
    }
}

void DownRow(const WideRow& upper, const WideRow& lower, std::uint32_t share, std::size_t pixels, std::uint8_t* out)
{
    const auto part = hn::BitCast(Pairs(), hn::Set(Pixels(), share));
    const auto load = [](const WideRow& row, std::size_t i) HWY_ATTR {
        return Parts{hn::BitCast(Pairs(), hn::LoadU(Pixels(), row.redBlue + i)),
                     hn::BitCast(Pairs(), hn::LoadU(Pixels(), row.greenAlpha + i))};
    };
    forPixels(pixels, [&](std::size_t at, auto lanes) HWY_ATTR {
        storeRGBA(rgbaOf(mixed(load(upper, at / 4), load(lower, at / 4), part)), out + at, lanes);
    });
}

#endif

} // namespace HWY_NAMESPACE
} // namespace lamina::kernels
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace lamina::kernels {

HWY_EXPORT(AcrossRow);
HWY_EXPORT(DownRow);

namespace {

/// More than the lanes of any processor, for groups that are not whole.
constexpr std::size_t kMostLanes = 128;

/// For the pixels of one axis the texels that they are read between.
class Axis {
public:
    /// `begin` and `length`: of the picture's place; `texels`: of the picture; `pixels`: of the output.
    Axis(double begin, double length, int texels, int pixels)
        : m_first(pixelFrom(begin, pixels))
        , m_last(std::max(m_first, pixelFrom(begin + length, pixels)))
        , m_copies(length == texels && begin == std::floor(begin))
    {
        const std::size_t room = count() + kMostLanes;
        m_texel.assign(room, 0);
        m_next.assign(room, 0);
        m_share.assign(room, 0);
        for (std::size_t i = 0; i < count(); ++i) {
            const double place = (m_first + static_cast<double>(i) + 0.5 - begin) / length * texels - 0.5;
            const double inside = std::clamp(place, 0.0, texels - 1.0);
            m_texel[i] = static_cast<std::int32_t>(inside);
            m_next[i] = std::min(m_texel[i] + 1, texels - 1);
            const auto share = static_cast<std::uint32_t>(std::lround((inside - m_texel[i]) * 0x8000));
            m_share[i] = std::min(share, 0x7FFFU) * 0x10001;
        }
    }

    int first() const { return m_first; }
    int last() const { return m_last; } ///< behind the last one
    std::size_t count() const { return static_cast<std::size_t>(m_last - m_first); }
    /// Every pixel is a texel.
    bool copies() const { return m_copies; }
    Neighbours neighbours() const { return {m_texel.data(), m_next.data(), m_share.data()}; }

private:
    /// The first pixel whose centre is not before `place`.
    static int pixelFrom(double place, int pixels)
    {
        return static_cast<int>(std::clamp(std::ceil(place - 0.5), 0.0, static_cast<double>(pixels)));
    }

    int m_first;
    int m_last;
    bool m_copies;
    std::vector<std::int32_t> m_texel;
    std::vector<std::int32_t> m_next;
    std::vector<std::uint32_t> m_share;
};

/// Rows of the picture as wide as the output, of which the two needed last are kept.
class WideRows {
public:
    WideRows(const KernelPixels& picture, const Axis& columns)
        : m_picture(picture)
        , m_columns(columns)
        , m_stride(columns.count() + kMostLanes)
        , m_words(4 * m_stride)
    {
    }

    /// Both rows stay until the next call.
    std::pair<WideRow, WideRow> at(int upper, int lower)
    {
        const std::size_t place = placeOf(upper, lower);
        return {row(place), row(placeOf(lower, upper))};
    }

private:
    WideRow row(std::size_t place)
    {
        std::uint32_t* const words = m_words.data() + 2 * place * m_stride;
        return {words, words + m_stride};
    }
    /// Where the row is; it is made unless it is there, not over `other`.
    std::size_t placeOf(int y, int other)
    {
        for (const std::size_t place : {0U, 1U}) {
            if (m_held[place] == y)
                return place;
        }
        const std::size_t place = m_held[0] == other ? 1 : 0;
        m_held[place] = y;
        HWY_DYNAMIC_DISPATCH(AcrossRow)(m_picture.row(y), m_columns.neighbours(), m_columns.count(), row(place));
        return place;
    }

    const KernelPixels& m_picture;
    const Axis& m_columns;
    std::size_t m_stride;
    std::vector<std::uint32_t> m_words;
    std::array<int, 2> m_held{-1, -1};
};

/// The output's rows, with what is seen beside the picture.
class Canvas {
public:
    Canvas(const KernelOutput& output, const Axis& columns, std::uint32_t background)
        : m_output(output)
        , m_columns(columns)
        , m_background(background)
    {
    }

    std::uint8_t* pixel(int x, int y) const
    {
        const auto width = static_cast<std::size_t>(m_output.size.width);
        return m_output.bytes + 4 * (static_cast<std::size_t>(y) * width + static_cast<std::size_t>(x));
    }
    void fill(int y, int first, int last) const
    {
        std::uint8_t* const begin = pixel(first, y);
        for (int i = 0; i < last - first; ++i)
            std::memcpy(begin + 4 * static_cast<std::size_t>(i), &m_background, 4);
    }
    void fillBeside(int y) const
    {
        fill(y, 0, m_columns.first());
        fill(y, m_columns.last(), m_output.size.width);
    }
    void fillRow(int y) const { fill(y, 0, m_output.size.width); }

private:
    const KernelOutput& m_output;
    const Axis& m_columns;
    std::uint32_t m_background;
};

} // namespace

void drawScaled(const KernelPixels& picture, const CGRect& place, std::uint32_t background, const KernelOutput& output)
{
    const Axis columns(place.minX(), place.size.width, picture.size.width, output.size.width);
    const Axis rows(place.minY(), place.size.height, picture.size.height, output.size.height);
    const Canvas canvas(output, columns, background);
    const bool copies = columns.copies() && rows.copies();
    const Neighbours down = rows.neighbours();
    const std::size_t cost = static_cast<std::size_t>(output.size.width) / 4 + 1; // long runs share their wide rows
    parallelRows(0, output.size.height, cost, [&](int begin, int end) {
        WideRows wide(picture, columns);
        for (int y = begin; y < end; ++y) {
            if (y < rows.first() || y >= rows.last()) {
                canvas.fillRow(y);
                continue;
            }
            canvas.fillBeside(y);
            const auto i = static_cast<std::size_t>(y - rows.first());
            std::uint8_t* const out = canvas.pixel(columns.first(), y);
            if (copies) {
                const auto left = 4 * static_cast<std::size_t>(*columns.neighbours().first);
                std::memcpy(out, picture.row(down.first[i]) + left, 4 * columns.count());
            } else {
                const auto [upper, lower] = wide.at(down.first[i], down.second[i]);
                HWY_DYNAMIC_DISPATCH(DownRow)(upper, lower, down.share[i], columns.count(), out);
            }
        }
    });
}

} // namespace lamina::kernels

#endif
