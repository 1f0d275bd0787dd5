#include "platform/image/pixels/PixelMoves.h"

#include "platform/base/CGGeometry.h"
#include "platform/base/Cancelling.h"
#include "platform/base/WorkerPool.h"
#include "platform/image/pixels/PixelMoveKernels_p.h"

#include <algorithm>
#include <cstring>

namespace lamina {

namespace {

using kernels::MovedRows;

/// Columns of the source that a quarter turn takes at once: two cache lines of every row of four-byte pixels.
constexpr int kBand = 32;

template <std::size_t Size>
struct Pixel {
    std::uint8_t bytes[Size];
};

// Pixels of other sizes than four bytes are rare: plain loops serve them.

template <class PixelType>
void copyRow(const std::uint8_t* in, std::size_t pixels, std::uint32_t /*filled*/, std::uint8_t* out)
{
    std::memcpy(out, in, pixels * sizeof(PixelType));
}

template <class PixelType>
void mirrorRow(const std::uint8_t* in, std::size_t pixels, std::uint32_t /*filled*/, std::uint8_t* out)
{
    for (std::size_t i = 0; i < pixels; ++i)
        std::memcpy(out + i * sizeof(PixelType), in + (pixels - 1 - i) * sizeof(PixelType), sizeof(PixelType));
}

template <class PixelType>
void transposeColumns(const MovedRows& rows, int begin, int end, std::uint32_t /*filled*/)
{
    constexpr auto kSize = static_cast<std::ptrdiff_t>(sizeof(PixelType));
    for (int top = 0; top < rows.size.height; top += kBand) {
        const int bottom = std::min(rows.size.height, top + kBand);
        for (int x = begin; x < end; ++x) {
            for (int y = top; y < bottom; ++y)
                std::memcpy(rows.target + x * rows.targetStep + y * kSize,
                            rows.source + y * rows.sourceStep + x * kSize, sizeof(PixelType));
        }
    }
}

/// How pixels of one size are moved.
struct Mover {
    void (*copy)(const std::uint8_t* in, std::size_t pixels, std::uint32_t filled, std::uint8_t* out);
    void (*mirror)(const std::uint8_t* in, std::size_t pixels, std::uint32_t filled, std::uint8_t* out);
    void (*transpose)(const MovedRows& rows, int begin, int end, std::uint32_t filled);
};

template <std::size_t Size>
constexpr Mover kPlainMover{copyRow<Pixel<Size>>, mirrorRow<Pixel<Size>>, transposeColumns<Pixel<Size>>};

constexpr Mover kFastMover{kernels::copyPixels, kernels::mirrorPixels, kernels::transposeColumns};

const Mover* moverFor(int bitsPerPixel)
{
    switch (bitsPerPixel) {
    case 8:
        return &kPlainMover<1>;
    case 16:
        return &kPlainMover<2>;
    case 24:
        return &kPlainMover<3>;
    case 32:
        return &kFastMover;
    case 48:
        return &kPlainMover<6>;
    case 64:
        return &kPlainMover<8>;
    case 96:
        return &kPlainMover<12>;
    case 128:
        return &kPlainMover<16>;
    default:
        return nullptr;
    }
}

} // namespace

bool canMovePixels(int bitsPerPixel)
{
    return moverFor(bitsPerPixel) != nullptr;
}

void movePixels(const CGImage& image, const PixelMove& move, std::uint32_t filled, std::uint8_t* target,
                std::size_t targetRow, const std::atomic<bool>* cancelled)
{
    const Mover& mover = *moverFor(image.bitsPerPixel());
    const int turn = move.quarters & 3;
    const IntSize size = image.size();
    MovedRows rows{image.bytes().data(), static_cast<std::ptrdiff_t>(image.bytesPerRow()), size, target,
                   static_cast<std::ptrdiff_t>(targetRow)};
    const auto fromLastRow = [](auto*& first, std::ptrdiff_t& step, int count) {
        first += (count - 1) * step;
        step = -step;
    };
    if (turn % 2 == 0) {
        if (move.mirrorY != (turn == 2))
            fromLastRow(rows.source, rows.sourceStep, size.height);
        const auto moveRow = move.mirrorX != (turn == 2) ? mover.mirror : mover.copy;
        const auto pixels = static_cast<std::size_t>(size.width);
        parallelRows(0, size.height, pixels, [&](int first, int last) {
            for (int y = first; y < last && !isCancelled(cancelled); ++y)
                moveRow(rows.source + y * rows.sourceStep, pixels, filled, rows.target + y * rows.targetStep);
        });
        return;
    }
    // Each row becomes a column and each column a row; to the left, the last column is the first row, to the right the
    // last row is the first column.
    if (move.mirrorY != (turn == 3))
        fromLastRow(rows.source, rows.sourceStep, size.height);
    if (move.mirrorX != (turn == 1))
        fromLastRow(rows.target, rows.targetStep, size.width);
    parallelRows(0, (size.width + kBand - 1) / kBand,
                 static_cast<std::size_t>(kBand) * static_cast<std::size_t>(size.height), [&](int first, int last) {
                     for (int band = first; band < last && !isCancelled(cancelled); ++band)
                         mover.transpose(rows, band * kBand, std::min(size.width, (band + 1) * kBand), filled);
                 });
}

} // namespace lamina
