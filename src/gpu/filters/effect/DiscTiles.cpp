#include "gpu/filters/effect/DiscTiles.h"

#include "platform/image/pixels/PixelBuffer.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace lamina {

namespace {

constexpr int kSide = 16;
constexpr int kPixels = kSide * kSide;

/// The number of each pixel of a tile in the order in which they turn white, from the middle outwards.
std::array<int, kPixels> ranksFromTheMiddle()
{
    const auto distance = [](int pixel) {
        const int x = 2 * (pixel % kSide) - (kSide - 1);
        const int y = 2 * (pixel / kSide) - (kSide - 1);
        return x * x + y * y;
    };
    std::array<int, kPixels> order{};
    for (int i = 0; i < kPixels; ++i)
        order[static_cast<std::size_t>(i)] = i;
    std::ranges::stable_sort(order, {}, distance);
    std::array<int, kPixels> ranks{};
    for (int i = 0; i < kPixels; ++i)
        ranks[static_cast<std::size_t>(order[static_cast<std::size_t>(i)])] = i;
    return ranks;
}

} // namespace

CGImage discTiles(int perSide)
{
    const std::array<int, kPixels> ranks = ranksFromTheMiddle();
    const CGImageLayout layout = CGImageLayout::rgba(perSide * kSide, perSide * kSide, CGImageAlphaInfo::NoneSkipLast);
    PixelBuffer buffer = PixelBuffer::allocate(layout.byteCount());
    const int brightest = std::max(perSide * perSide - 1, 1);
    for (int i = 0; buffer && i < layout.width * layout.height; ++i) {
        const int x = i % layout.width;
        const int y = i / layout.width;
        const int tile = y / kSide * perSide + x / kSide;
        const int within = y % kSide * kSide + x % kSide;
        const int rank = ranks[static_cast<std::size_t>(within)];
        const bool isWhite = rank * brightest < tile * kPixels;
        std::fill_n(buffer.data() + static_cast<std::ptrdiff_t>(i) * 4, 4, isWhite ? 255 : 0);
    }
    return CGImage::make(layout, std::move(buffer));
}

} // namespace lamina
