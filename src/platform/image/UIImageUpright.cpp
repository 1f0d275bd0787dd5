#include "platform/image/PixelConversion.h"
#include "platform/image/UIImage.h"

#include "platform/base/WorkerPool.h"

#include <algorithm>
#include <cstring>

namespace lamina {

namespace {

// A quarter turn reads columns: a block's rows of both pictures stay in the nearest cache.
constexpr int kBlock = 32;

template <std::size_t Size>
struct Pixel {
    std::uint8_t bytes[Size];
};

/// Where the pixels of the turned picture come from: its pixel (x, y) lies at `first + x · alongX + y · alongY` bytes.
struct Walk {
    const std::uint8_t* first;
    std::ptrdiff_t alongX;
    std::ptrdiff_t alongY;
};

Walk walkThrough(const CGImage& image, UIImageOrientation orientation)
{
    const auto pixel = static_cast<std::ptrdiff_t>(image.bitsPerPixel() / 8);
    const auto row = static_cast<std::ptrdiff_t>(image.bytesPerRow());
    // A whole number in every entry: this only inverts a permutation of the axes with its signs.
    const CGAffineTransform back =
        orientationTransform(orientation, image.size()).inverted().value_or(CGAffineTransform());
    const auto offset = [&](double x, double y) {
        return static_cast<std::ptrdiff_t>(x) * pixel + static_cast<std::ptrdiff_t>(y) * row;
    };
    const CGPoint corner = back.apply({0.5, 0.5}); // the middle of the first pixel
    return {image.bytes().data() + offset(corner.x, corner.y), offset(back.a, back.b), offset(back.c, back.d)};
}

template <class PixelType>
void moveBlock(const Walk& walk, const IntRect& block, std::uint8_t* target, std::size_t targetRow)
{
    for (int y = block.y; y < block.bottom(); ++y) {
        const std::uint8_t* from = walk.first + block.x * walk.alongX + y * walk.alongY;
        std::uint8_t* to =
            target + static_cast<std::size_t>(y) * targetRow + static_cast<std::size_t>(block.x) * sizeof(PixelType);
        for (int x = 0; x < block.width; ++x, from += walk.alongX, to += sizeof(PixelType))
            std::memcpy(to, from, sizeof(PixelType));
    }
}

template <class PixelType>
void movePixels(const Walk& walk, IntSize size, std::uint8_t* target, std::size_t targetRow)
{
    constexpr auto kPixelSize = static_cast<std::ptrdiff_t>(sizeof(PixelType));
    const bool rowsStayRows = walk.alongX == kPixelSize || walk.alongX == -kPixelSize;
    const int blockWidth = rowsStayRows ? size.width : kBlock;
    const int bands = (size.height + kBlock - 1) / kBlock;
    parallelRows(0, bands, static_cast<std::size_t>(kBlock) * static_cast<std::size_t>(size.width),
                 [&](int begin, int end) {
                     for (int y = begin * kBlock; y < std::min(end * kBlock, size.height); y += kBlock)
                         for (int x = 0; x < size.width; x += blockWidth)
                             moveBlock<PixelType>(
                                 walk, {x, y, std::min(blockWidth, size.width - x), std::min(kBlock, size.height - y)},
                                 target, targetRow);
                 });
}

using Mover = void (*)(const Walk&, IntSize, std::uint8_t*, std::size_t);

Mover moverFor(int bitsPerPixel)
{
    switch (bitsPerPixel) {
    case 8:
        return movePixels<Pixel<1>>;
    case 16:
        return movePixels<Pixel<2>>;
    case 24:
        return movePixels<Pixel<3>>;
    case 32:
        return movePixels<Pixel<4>>;
    case 48:
        return movePixels<Pixel<6>>;
    case 64:
        return movePixels<Pixel<8>>;
    case 96:
        return movePixels<Pixel<12>>;
    case 128:
        return movePixels<Pixel<16>>;
    default:
        return nullptr;
    }
}

CGImage turned(const CGImage& source, UIImageOrientation orientation)
{
    const Mover move = moverFor(source.bitsPerPixel());
    // Pixels smaller than a byte, or of a rare size, get four bytes on the way.
    const CGImage image = move ? source : convertedToSRGB(source);
    if (!image)
        return {};
    CGImageLayout layout = image.layout();
    if (swapsSides(orientation))
        std::swap(layout.width, layout.height);
    const auto pixelSize = static_cast<std::size_t>(layout.bitsPerPixel / 8);
    layout.bytesPerRow = pixelSize * static_cast<std::size_t>(layout.width);
    PixelBuffer buffer = PixelBuffer::allocate(layout.byteCount());
    if (!buffer)
        return {};
    (move ? move : movePixels<Pixel<4>>)(walkThrough(image, orientation), {layout.width, layout.height}, buffer.data(),
                                         layout.bytesPerRow);
    return CGImage::make(layout, std::move(buffer));
}

} // namespace

UIImage UIImage::upright() const
{
    if (!m_image || m_orientation == UIImageOrientation::Up)
        return *this;
    CGImage image = turned(m_image, m_orientation);
    if (const CGImage* mask = m_image.mask(); mask && image) {
        if (moverFor(m_image.bitsPerPixel()) == nullptr) // the conversion has applied it
            return UIImage(image, m_scale);
        const bool movable = moverFor(mask->bitsPerPixel()) != nullptr;
        const CGImage turnedMask = turned(movable ? *mask : coverageOfMask(*mask), m_orientation);
        if (!turnedMask)
            return {};
        image = image.withMask(turnedMask);
    }
    return image ? UIImage(image, m_scale) : UIImage();
}

} // namespace lamina
