#include "imageops/PixelMoves.h"

#include "platform/base/WorkerPool.h"

#include <hwy/cache_control.h>
#include <hwy/highway.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <utility>

namespace lamina {

namespace {

namespace hn = hwy::HWY_NAMESPACE;

/// Columns of the source that a quarter turn takes at once: two cache lines of every row.
constexpr int kBand = 32;

/// Rows of the source that are turned before they are written. Where the sides are powers of two, the lines of all
/// target rows fall on one place of the cache; so they are put together beside it, and written row by row.
constexpr int kTile = 64;

/// How many rows ahead a quarter turn asks for its columns. No machine foresees reads that go a whole row further each
/// time; more than this would push each other out, again where rows are a power of two.
constexpr int kRowsAhead = 8;

/// A pixel as a number, its bytes in memory's order.
using Pixel = std::uint32_t;

void movePixel(const std::uint8_t* source, std::uint8_t* target, Pixel filled)
{
    Pixel pixel;
    std::memcpy(&pixel, source, sizeof pixel);
    pixel |= filled;
    std::memcpy(target, &pixel, sizeof pixel);
}

/// Rows of pixels; a negative step goes through them from the last to the first.
template <class Byte>
struct Rows {
    Byte* first;
    std::ptrdiff_t step;

    Byte* at(int x, int y) const { return first + y * step + 4 * static_cast<std::ptrdiff_t>(x); }
    Rows mirrored(int height) const { return {first + (height - 1) * step, -step}; }
};

/// One picture moved into another of the same form.
struct Move {
    Rows<const std::uint8_t> source;
    IntSize size; ///< of the source
    Rows<std::uint8_t> target;
    Pixel filled; ///< bits to set in every pixel
};

void moveForward(const std::uint8_t* __restrict in, std::uint8_t* __restrict out, std::size_t bytes, Pixel filled)
{
    for (std::size_t i = 0; i < bytes; i += 4)
        movePixel(in + i, out + i, filled);
}

void moveBackward(const std::uint8_t* __restrict in, std::uint8_t* __restrict out, std::size_t bytes, Pixel filled)
{
    for (std::size_t i = 0; i < bytes; i += 4)
        movePixel(in + (bytes - 4 - i), out + i, filled);
}

/// Rows that stay rows.
void moveRows(const Move& move, bool mirrorX)
{
    const std::size_t bytes = 4 * static_cast<std::size_t>(move.size.width);
    parallelRows(0, move.size.height, static_cast<std::size_t>(move.size.width), [&](int first, int last) {
        for (int y = first; y < last; ++y)
            (mirrorX ? moveBackward : moveForward)(move.source.at(0, y), move.target.at(0, y), bytes, move.filled);
    });
}

void transposeSingly(const Move& move, const IntRect& part)
{
    for (int y = part.y; y < part.bottom(); ++y) {
        for (int x = part.x; x < part.right(); ++x)
            movePixel(move.source.at(x, y), move.target.at(y, x), move.filled);
    }
}

/// Four by four pixels, in four vectors of 128 bits, which every machine has that has lanes at all.
void transposeSquare(const std::uint8_t* in, std::ptrdiff_t inRow, std::uint8_t* out, std::ptrdiff_t outRow,
                     Pixel filled)
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
void fillTile(const Move& move, int begin, int end, int firstY, int rows, std::uint8_t* tile)
{
    const Rows<const std::uint8_t> source =
        move.source; // what is written below could be any object's bytes, but no local's
    const Pixel filled = move.filled;
    const int height = move.size.height;
    constexpr std::ptrdiff_t kTileRow = 4 * kTile;
    for (int y = firstY; y < firstY + rows; y += 4) {
        for (int ahead = y + kRowsAhead; ahead < std::min(y + kRowsAhead + 4, height); ++ahead) {
            hwy::Prefetch(source.at(begin, ahead));
            hwy::Prefetch(source.at(begin + (end - begin) / 2, ahead));
        }
        const std::uint8_t* in = source.at(begin, y);
        std::uint8_t* out = tile + 4 * static_cast<std::ptrdiff_t>(y - firstY);
        for (int x = begin; x < end; x += 4, in += 16, out += 4 * kTileRow)
            transposeSquare(in, source.step, out, kTileRow, filled);
    }
}

/// Source columns [begin, end) become rows.
void transposeColumns(const Move& move, int begin, int end)
{
    const int wholeHeight = move.size.height & ~3;
    const int wholeEnd = begin + ((end - begin) & ~3);
    alignas(64) std::array<std::uint8_t, 4 * kBand * kTile> tile;
    for (int y = 0; y < wholeHeight; y += kTile) {
        const int rows = std::min(kTile, wholeHeight - y);
        fillTile(move, begin, wholeEnd, y, rows, tile.data());
        const std::uint8_t* row = tile.data();
        for (int x = begin; x < wholeEnd; ++x, row += 4 * kTile)
            std::memcpy(move.target.at(y, x), row, 4 * static_cast<std::size_t>(rows));
    }
    transposeSingly(move, {wholeEnd, 0, end - wholeEnd, wholeHeight});
    transposeSingly(move, {begin, wholeHeight, end - begin, move.size.height - wholeHeight});
}

/// Rows and columns change places.
void transpose(const Move& move)
{
    const int width = move.size.width;
    parallelRows(0, (width + kBand - 1) / kBand,
                 static_cast<std::size_t>(kBand) * static_cast<std::size_t>(move.size.height),
                 [&](int first, int last) {
                     for (int band = first; band < last; ++band)
                         transposeColumns(move, band * kBand, std::min(width, (band + 1) * kBand));
                 });
}

/// Alpha's place in a pixel's memory.
std::size_t alphaByte(const CGImageLayout& layout)
{
    const CGImageAlphaInfo info = layout.alphaInfo();
    const bool first = info == CGImageAlphaInfo::PremultipliedFirst || info == CGImageAlphaInfo::First ||
                       info == CGImageAlphaInfo::NoneSkipFirst;
    const bool little = (layout.bitmapInfo & kCGBitmapByteOrderMask) == kCGBitmapByteOrder32Little;
    return first != little ? 0 : 3;
}

/// What makes a skipped byte an alpha of 255; the layout is told so.
Pixel makeOpaque(CGImageLayout& layout)
{
    const std::size_t place = alphaByte(layout);
    const bool first = layout.alphaInfo() == CGImageAlphaInfo::NoneSkipFirst;
    layout.bitmapInfo = (layout.bitmapInfo & ~kCGBitmapAlphaInfoMask) |
                        bitmapInfo(first ? CGImageAlphaInfo::PremultipliedFirst : CGImageAlphaInfo::PremultipliedLast);
    std::uint8_t bytes[4] = {};
    bytes[place] = 255;
    return std::bit_cast<Pixel>(bytes);
}

} // namespace

bool canMovePixels(const CGImage& image)
{
    const CGBitmapInfo order = image.bitmapInfo() & kCGBitmapByteOrderMask;
    return image && !image.mask() && image.colorSpace().model() == CGColorSpace::Model::RGB &&
           image.bitsPerComponent() == 8 && image.bitsPerPixel() == 32 &&
           (image.bitmapInfo() & kCGBitmapFloatComponents) == 0 && order != kCGBitmapByteOrder16Little;
}

CGImage movedPixels(const CGImage& image, int quarters, bool mirrorX, bool mirrorY)
{
    const int turn = quarters & 3;
    CGImageLayout layout = image.layout();
    if (turn % 2 != 0)
        std::swap(layout.width, layout.height);
    layout.bytesPerRow = 4 * static_cast<std::size_t>(layout.width);
    const Pixel filled = image.hasAlpha() ? 0 : makeOpaque(layout);
    PixelBuffer buffer = PixelBuffer::allocate(layout.byteCount());
    if (!buffer)
        return {};
    Move move{{image.bytes().data(), static_cast<std::ptrdiff_t>(image.bytesPerRow())},
              image.size(),
              {buffer.data(), static_cast<std::ptrdiff_t>(layout.bytesPerRow)},
              filled};
    if (turn % 2 == 0) {
        if (mirrorY != (turn == 2))
            move.source = move.source.mirrored(move.size.height);
        moveRows(move, mirrorX != (turn == 2));
    } else {
        // Each row becomes a column and each column a row; to the left, the last column is the first row, to the right
        // the last row is the first column.
        if (mirrorY != (turn == 3))
            move.source = move.source.mirrored(move.size.height);
        if (mirrorX != (turn == 1))
            move.target = move.target.mirrored(layout.height);
        transpose(move);
    }
    return CGImage::make(layout, std::move(buffer));
}

} // namespace lamina
