#include "platform/image/pixels/PixelMoveKernels_p.h"

#include <algorithm>
#include <array>
#include <cstring>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "platform/image/pixels/PixelMoveKernels.cpp"
#include <hwy/foreach_target.h>

#include <hwy/cache_control.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace lamina::kernels {
namespace HWY_NAMESPACE {

/// Columns that are turned at once.
constexpr int kMostColumns = 32;

/// Rows of the source that are turned before they are written. Where the sides are powers of two, the lines of all
/// target rows fall on one place of the cache; so they are put together beside it, and written row by row.
constexpr int kTile = 64;

/// How many rows ahead a quarter turn asks for its columns. No machine foresees reads that go a whole row further each
/// time; more than this would push each other out, again where rows are a power of two.
constexpr int kRowsAhead = 8;

void movePixel(const std::uint8_t* source, std::uint8_t* target, std::uint32_t filled)
{
    std::uint32_t pixel;
    std::memcpy(&pixel, source, sizeof pixel);
    pixel |= filled;
    std::memcpy(target, &pixel, sizeof pixel);
}

#if HWY_TARGET != HWY_SCALAR

namespace hn = hwy::HWY_NAMESPACE;

using Pixels = hn::ScalableTag<std::uint32_t>;
using Bytes = hn::Repartition<std::uint8_t, Pixels>;

HWY_INLINE hn::Vec<Pixels> loadPixels(const std::uint8_t* p)
{
    return hn::BitCast(Pixels(), hn::LoadU(Bytes(), p));
}

HWY_INLINE void storePixels(hn::Vec<Pixels> pixels, std::uint8_t* p)
{
    hn::StoreU(hn::BitCast(Bytes(), pixels), Bytes(), p);
}

#endif

void CopyPixels(const std::uint8_t* HWY_RESTRICT in, std::size_t pixels, std::uint32_t filled,
                std::uint8_t* HWY_RESTRICT out)
{
    std::size_t i = 0;
#if HWY_TARGET != HWY_SCALAR
    const auto bits = hn::Set(Pixels(), filled);
    for (const std::size_t n = hn::Lanes(Pixels()); i + n <= pixels; i += n)
        storePixels(hn::Or(loadPixels(in + 4 * i), bits), out + 4 * i);
#endif
    for (; i < pixels; ++i)
        movePixel(in + 4 * i, out + 4 * i, filled);
}

void MirrorPixels(const std::uint8_t* HWY_RESTRICT in, std::size_t pixels, std::uint32_t filled,
                  std::uint8_t* HWY_RESTRICT out)
{
    std::size_t i = 0;
#if HWY_TARGET != HWY_SCALAR
    const auto bits = hn::Set(Pixels(), filled);
    for (const std::size_t n = hn::Lanes(Pixels()); i + n <= pixels; i += n)
        storePixels(hn::Or(hn::Reverse(Pixels(), loadPixels(in + 4 * (pixels - i - n))), bits), out + 4 * i);
#endif
    for (; i < pixels; ++i)
        movePixel(in + 4 * (pixels - 1 - i), out + 4 * i, filled);
}

/// Four by four pixels, in four vectors of 128 bits, which every machine has that has lanes at all.
HWY_INLINE void transposeSquare(const std::uint8_t* in, std::ptrdiff_t inRow, std::uint8_t* out, std::ptrdiff_t outRow,
                                std::uint32_t filled)
{
#if HWY_TARGET == HWY_SCALAR
    for (int y = 0; y < 4; ++y) {
        for (int x = 0; x < 4; ++x)
            movePixel(in + y * inRow + 4 * x, out + x * outRow + 4 * y, filled);
    }
#else
    const hn::Full128<std::uint8_t> bytes;
    const hn::Full128<std::uint32_t> pixels;
    const hn::Full128<std::uint64_t> pairs;
    const auto load = [&](int row) { return hn::BitCast(pixels, hn::LoadU(bytes, in + row * inRow)); };
    const auto store = [&](int row, auto pair) {
        const auto full = hn::Or(hn::BitCast(pixels, pair), hn::Set(pixels, filled));
        hn::StoreU(hn::BitCast(bytes, full), bytes, out + row * outRow);
    };
    const auto r0 = load(0);
    const auto r1 = load(1);
    const auto r2 = load(2);
    const auto r3 = load(3);
    // The first two columns of the upper and of the lower two rows, then the other two columns.
    const auto a = hn::BitCast(pairs, hn::InterleaveLower(pixels, r0, r1));
    const auto b = hn::BitCast(pairs, hn::InterleaveLower(pixels, r2, r3));
    const auto c = hn::BitCast(pairs, hn::InterleaveUpper(pixels, r0, r1));
    const auto d = hn::BitCast(pairs, hn::InterleaveUpper(pixels, r2, r3));
    store(0, hn::InterleaveLower(pairs, a, b));
    store(1, hn::InterleaveUpper(pairs, a, b));
    store(2, hn::InterleaveLower(pairs, c, d));
    store(3, hn::InterleaveUpper(pairs, c, d));
#endif
}

/// Source columns [begin, end), a multiple of four, of rows from `firstY` on become rows of a tile.
void fillTile(const MovedRows& moved, std::uint32_t filled, int begin, int end, int firstY, int rows,
              std::uint8_t* tile)
{
    const MovedRows m = moved; // what is written below could be any object's bytes, but no local's
    constexpr std::ptrdiff_t kTileRow = 4 * kTile;
    const std::uint8_t* columns = m.source + std::ptrdiff_t{4} * begin;
    for (int y = firstY; y < firstY + rows; y += 4) {
        for (int ahead = y + kRowsAhead; ahead < std::min(y + kRowsAhead + 4, m.size.height); ++ahead) {
            const std::uint8_t* row = columns + ahead * m.sourceStep;
            hwy::Prefetch(row);
            hwy::Prefetch(row + 2 * (end - begin));
        }
        const std::uint8_t* in = columns + y * m.sourceStep;
        std::uint8_t* out = tile + 4 * static_cast<std::ptrdiff_t>(y - firstY);
        for (int x = begin; x < end; x += 4, in += 16, out += 4 * kTileRow)
            transposeSquare(in, m.sourceStep, out, kTileRow, filled);
    }
}

void transposeSingly(const MovedRows& m, std::uint32_t filled, const IntRect& part)
{
    for (int y = part.y; y < part.bottom(); ++y) {
        for (int x = part.x; x < part.right(); ++x)
            movePixel(m.source + y * m.sourceStep + std::ptrdiff_t{4} * x,
                      m.target + x * m.targetStep + std::ptrdiff_t{4} * y, filled);
    }
}

void TransposeColumns(const MovedRows& m, int begin, int end, std::uint32_t filled)
{
    const int height = m.size.height;
    const int wholeHeight = height & ~3;
    const int wholeEnd = begin + ((end - begin) & ~3);
    alignas(64) std::array<std::uint8_t, 4 * kMostColumns * kTile> tile;
    for (int y = 0; y < wholeHeight; y += kTile) {
        const int rows = std::min(kTile, wholeHeight - y);
        fillTile(m, filled, begin, wholeEnd, y, rows, tile.data());
        const std::uint8_t* row = tile.data();
        for (int x = begin; x < wholeEnd; ++x, row += 4 * kTile)
            std::memcpy(m.target + x * m.targetStep + std::ptrdiff_t{4} * y, row, 4 * static_cast<std::size_t>(rows));
    }
    transposeSingly(m, filled, {wholeEnd, 0, end - wholeEnd, wholeHeight});
    transposeSingly(m, filled, {begin, wholeHeight, end - begin, height - wholeHeight});
}

} // namespace HWY_NAMESPACE
} // namespace lamina::kernels
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace lamina::kernels {

HWY_EXPORT(CopyPixels);
HWY_EXPORT(MirrorPixels);
HWY_EXPORT(TransposeColumns);

void copyPixels(const std::uint8_t* in, std::size_t pixels, std::uint32_t filled, std::uint8_t* out)
{
    HWY_DYNAMIC_DISPATCH(CopyPixels)(in, pixels, filled, out);
}

void mirrorPixels(const std::uint8_t* in, std::size_t pixels, std::uint32_t filled, std::uint8_t* out)
{
    HWY_DYNAMIC_DISPATCH(MirrorPixels)(in, pixels, filled, out);
}

void transposeColumns(const MovedRows& rows, int begin, int end, std::uint32_t filled)
{
    HWY_DYNAMIC_DISPATCH(TransposeColumns)(rows, begin, end, filled);
}

} // namespace lamina::kernels

#endif
