#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/image/pixels/CGColorSpace.h"
#include "platform/image/pixels/PixelBuffer.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace lamina {

/// Where a pixel keeps its alpha, and whether the colours are multiplied by it. The values are the platform's.
enum class CGImageAlphaInfo : std::uint32_t {
    None = 0,
    PremultipliedLast = 1,
    PremultipliedFirst = 2,
    Last = 3,
    First = 4,
    NoneSkipLast = 5,
    NoneSkipFirst = 6,
    Only = 7,
};

/// Alpha info in the low five bits, byte order and the float flag above it. The values are the platform's.
using CGBitmapInfo = std::uint32_t;

inline constexpr CGBitmapInfo kCGBitmapAlphaInfoMask = 0x1F;
inline constexpr CGBitmapInfo kCGBitmapFloatComponents = 0x100;
inline constexpr CGBitmapInfo kCGBitmapByteOrderMask = 0x7000;
inline constexpr CGBitmapInfo kCGBitmapByteOrderDefault = 0;
inline constexpr CGBitmapInfo kCGBitmapByteOrder16Little = 0x1000;
inline constexpr CGBitmapInfo kCGBitmapByteOrder32Little = 0x2000;
inline constexpr CGBitmapInfo kCGBitmapByteOrder16Big = 0x3000;
inline constexpr CGBitmapInfo kCGBitmapByteOrder32Big = 0x4000;

/// Colours are multiplied by the alpha.
constexpr bool isPremultiplied(CGImageAlphaInfo alpha)
{
    return alpha == CGImageAlphaInfo::PremultipliedFirst || alpha == CGImageAlphaInfo::PremultipliedLast;
}

/// Pixels have room for alpha that is not looked at.
constexpr bool skipsAlpha(CGImageAlphaInfo alpha)
{
    return alpha == CGImageAlphaInfo::NoneSkipFirst || alpha == CGImageAlphaInfo::NoneSkipLast;
}

/// Alpha, or the room for it, stands before the colours.
constexpr bool alphaStandsFirst(CGImageAlphaInfo alpha)
{
    return alpha == CGImageAlphaInfo::PremultipliedFirst || alpha == CGImageAlphaInfo::First ||
           alpha == CGImageAlphaInfo::NoneSkipFirst;
}

/// The alpha info together with a byte order.
constexpr CGBitmapInfo bitmapInfo(CGImageAlphaInfo alpha, CGBitmapInfo byteOrder = kCGBitmapByteOrderDefault)
{
    return static_cast<CGBitmapInfo>(alpha) | byteOrder;
}

/// Memory keeps the bytes of a pixel in units of so many that are turned round: 2 or 4 for the little orders, else 1.
constexpr unsigned swappedUnit(CGBitmapInfo info)
{
    switch (info & kCGBitmapByteOrderMask) {
    case kCGBitmapByteOrder16Little:
        return 2;
    case kCGBitmapByteOrder32Little:
        return 4;
    default:
        return 1;
    }
}

/// Where red, green, blue and alpha (or its room) lie in the memory of a pixel of four bytes.
constexpr std::array<std::uint8_t, 4> componentPlaces(CGBitmapInfo info)
{
    const unsigned first = alphaStandsFirst(static_cast<CGImageAlphaInfo>(info & kCGBitmapAlphaInfoMask)) ? 1 : 0;
    std::array<std::uint8_t, 4> places{};
    for (unsigned c = 0; c < 4; ++c)
        places[c] = static_cast<std::uint8_t>((c + first) % 4 ^ (swappedUnit(info) - 1));
    return places;
}

/// How the bytes of a picture are arranged. Sizes in pixels; `bytesPerRow` may be padded.
struct CGImageLayout {
    int width = 0;
    int height = 0;
    std::size_t bytesPerRow = 0;
    int bitsPerComponent = 8;
    int bitsPerPixel = 32;
    CGBitmapInfo bitmapInfo = lamina::bitmapInfo(CGImageAlphaInfo::NoneSkipLast);
    CGColorSpace colorSpace = CGColorSpace::deviceRGB();

    /// Four bytes a pixel, R G B A in memory, rows without padding.
    static CGImageLayout rgba(int width, int height, CGImageAlphaInfo alpha);
    /// One byte a pixel without alpha.
    static CGImageLayout gray(int width, int height);

    /// Where `bitmapInfo` says that alpha stands, and whether colours are multiplied by it.
    CGImageAlphaInfo alphaInfo() const { return static_cast<CGImageAlphaInfo>(bitmapInfo & kCGBitmapAlphaInfoMask); }
    /// Bytes that a buffer of this layout must hold.
    std::size_t byteCount() const { return bytesPerRow * static_cast<std::size_t>(height); }
};

/// Pixels that never change, with their layout and an optional mask. Row 0 is the top row.
/// A cheap value: copies share the bytes. The empty CGImage is "no picture". Usable from any thread.
class CGImage {
public:
    CGImage() = default;

    /// Takes `buffer` over. Empty when the layout is not possible (a side not positive, a row shorter than its pixels,
    /// bits that don't fit the colour space) or the buffer is shorter than `layout.byteCount()`.
    static CGImage make(const CGImageLayout& layout, PixelBuffer buffer);
    /// The same over bytes that others may read too.
    static CGImage make(const CGImageLayout& layout, std::shared_ptr<const std::uint8_t> bytes, std::size_t byteCount);

    explicit operator bool() const { return m_bytes != nullptr; }

    const CGImageLayout& layout() const { return m_layout; }
    int width() const { return m_layout.width; }
    int height() const { return m_layout.height; }
    /// Width and height in stored pixels; 0 x 0 of no picture.
    IntSize size() const { return {m_layout.width, m_layout.height}; }
    std::size_t bytesPerRow() const { return m_layout.bytesPerRow; }
    int bitsPerComponent() const { return m_layout.bitsPerComponent; }
    int bitsPerPixel() const { return m_layout.bitsPerPixel; }
    CGBitmapInfo bitmapInfo() const { return m_layout.bitmapInfo; }
    CGImageAlphaInfo alphaInfo() const { return m_layout.alphaInfo(); }
    const CGColorSpace& colorSpace() const { return m_layout.colorSpace; }

    /// True when pixels carry alpha (alpha info 1 to 4, or alpha only), whatever its values.
    bool hasAlpha() const;

    /// All rows with their padding; valid while a copy of this picture lives.
    std::span<const std::uint8_t> bytes() const { return {m_bytes.get(), m_bytes ? m_layout.byteCount() : 0}; }
    const std::uint8_t* row(int y) const { return m_bytes.get() + static_cast<std::size_t>(y) * m_layout.bytesPerRow; }

    /// The pixels inside `rect` (clipped to the picture), sharing the bytes; empty when nothing is left or when a pixel
    /// is not a whole number of bytes. The mask is not carried over.
    CGImage subImage(const IntRect& rect) const;

    /// This picture seen through `mask`, a picture of one component that is stretched over it: for a grey mask 0 shows
    /// and the largest value hides (the sense of an image mask); for an alpha-only one the alpha shows.
    CGImage withMask(const CGImage& mask) const;
    /// Null when there is none. Valid while this picture lives.
    const CGImage* mask() const { return m_mask.get(); }

    /// Same bytes in memory and same mask, not only equal ones.
    bool sharesBytesWith(const CGImage& other) const { return m_bytes == other.m_bytes && m_mask == other.m_mask; }

private:
    CGImageLayout m_layout;
    std::shared_ptr<const std::uint8_t> m_bytes;
    std::shared_ptr<const CGImage> m_mask;
};

} // namespace lamina
