#pragma once

#include "platform/image/pixels/UIImage.h"

#include <array>
#include <cstdint>
#include <functional>
#include <random>
#include <vector>

namespace lamina::test {

/// Four bytes in the order in which a picture keeps them.
using Bytes = std::array<std::uint8_t, 4>;

/// A picture of four bytes a pixel, each asked for, in rows padded by 12 bytes of 0xAB.
inline UIImage picture(int width, int height, CGBitmapInfo info, const std::function<Bytes(int, int)>& pixel,
                       double scale = 1, UIImageOrientation orientation = UIImageOrientation::Up)
{
    CGImageLayout layout = CGImageLayout::rgba(width, height, CGImageAlphaInfo::Last);
    layout.bitmapInfo = info;
    layout.bytesPerRow += 12;
    PixelBuffer buffer = PixelBuffer::allocate(layout.byteCount());
    std::fill_n(buffer.data(), layout.byteCount(), std::uint8_t{0xAB});
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const Bytes value = pixel(x, y);
            std::copy(value.begin(), value.end(),
                      buffer.data() + static_cast<std::size_t>(y) * layout.bytesPerRow +
                          4 * static_cast<std::size_t>(x));
        }
    }
    return UIImage(CGImage::make(layout, std::move(buffer)), scale, orientation);
}

/// A grey of the given values, without alpha.
inline UIImage grayPicture(int width, int height, const std::function<int(int, int)>& value)
{
    const CGImageLayout layout = CGImageLayout::gray(width, height);
    PixelBuffer buffer = PixelBuffer::allocate(layout.byteCount());
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            buffer.data()[y * width + x] = static_cast<std::uint8_t>(value(x, y));
    }
    return UIImage(CGImage::make(layout, std::move(buffer)));
}

/// Random bytes; the skipped one of a picture without alpha is 255.
inline UIImage noise(int width, int height, CGBitmapInfo info)
{
    std::mt19937 random(7);
    const auto alpha = static_cast<CGImageAlphaInfo>(info & kCGBitmapAlphaInfoMask);
    return picture(width, height, info, [&](int, int) {
        Bytes bytes;
        for (std::uint8_t& byte : bytes)
            byte = static_cast<std::uint8_t>(random());
        if (alpha == CGImageAlphaInfo::NoneSkipLast)
            bytes[3] = 255;
        if (alpha == CGImageAlphaInfo::NoneSkipFirst)
            bytes[0] = 255;
        return bytes;
    });
}

inline Bytes bytesAt(const UIImage& image, int x, int y)
{
    const std::uint8_t* p = image.cgImage().row(y) + 4 * static_cast<std::ptrdiff_t>(x);
    return {p[0], p[1], p[2], p[3]};
}

/// All pixels of four bytes, without the padding.
inline std::vector<Bytes> allBytes(const UIImage& image)
{
    std::vector<Bytes> all;
    for (int y = 0; y < image.cgImage().height(); ++y) {
        for (int x = 0; x < image.cgImage().width(); ++x)
            all.push_back(bytesAt(image, x, y));
    }
    return all;
}

} // namespace lamina::test
