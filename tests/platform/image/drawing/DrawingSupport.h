#pragma once

#include "platform/image/drawing/CGContext.h"

#include <array>
#include <cstdint>
#include <functional>
#include <ostream>
#include <random>
#include <utility>

namespace lamina::test {

using Pixel = std::array<std::uint8_t, 4>;

/// A picture of four bytes a pixel in any arrangement of RGB, each byte asked for; rows padded by 12 bytes of 0xAB.
inline CGImage fourBytePicture(int width, int height, CGImageAlphaInfo alpha,
                               const std::function<Pixel(int, int)>& pixel)
{
    CGImageLayout layout = CGImageLayout::rgba(width, height, alpha);
    layout.bytesPerRow += 12;
    PixelBuffer buffer = PixelBuffer::allocate(layout.byteCount());
    std::fill(buffer.data(), buffer.data() + layout.byteCount(), std::uint8_t{0xAB});
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const Pixel value = pixel(x, y);
            std::copy(value.begin(), value.end(),
                      buffer.data() + static_cast<std::size_t>(y) * layout.bytesPerRow +
                          4 * static_cast<std::size_t>(x));
        }
    }
    return CGImage::make(layout, std::move(buffer));
}

inline CGImage bytePicture(int width, int height, const std::function<int(int, int)>& value,
                           const CGColorSpace& space = CGColorSpace::deviceGray())
{
    CGImageLayout layout = CGImageLayout::gray(width, height);
    layout.colorSpace = space;
    if (space.model() == CGColorSpace::Model::AlphaOnly)
        layout.bitmapInfo = bitmapInfo(CGImageAlphaInfo::Only);
    PixelBuffer buffer = PixelBuffer::allocate(layout.byteCount());
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            buffer.data()[y * width + x] = static_cast<std::uint8_t>(value(x, y));
    }
    return CGImage::make(layout, std::move(buffer));
}

/// Noise with valid premultiplied pixels where alpha says so.
inline CGImage noisePicture(int width, int height, CGImageAlphaInfo alpha, unsigned seed = 1)
{
    std::mt19937 random(seed);
    return fourBytePicture(width, height, alpha, [&](int, int) {
        Pixel p;
        for (std::uint8_t& value : p)
            value = static_cast<std::uint8_t>(random());
        if (alpha == CGImageAlphaInfo::PremultipliedLast) {
            for (std::size_t c = 0; c < 3; ++c)
                p[c] = static_cast<std::uint8_t>(p[c] * p[3] / 255);
        }
        return p;
    });
}

inline Pixel pixelOf(const CGImage& image, int x, int y)
{
    const std::uint8_t* p = image.row(y) + 4 * x;
    return {p[0], p[1], p[2], p[3]};
}

inline int byteOf(const CGImage& image, int x, int y)
{
    return image.row(y)[x];
}

/// A clear or white context of one pixel a point, y down.
inline CGContext canvas(int width, int height, bool white = false)
{
    CGContext context = *CGContext::image({static_cast<double>(width), static_cast<double>(height)}, false, 1);
    if (white) {
        context.setFillColor(UIColor::white());
        context.fillRect({0, 0, static_cast<double>(width), static_cast<double>(height)});
    }
    return context;
}

/// Bytes of all pixels, without padding: what "the same picture" means.
inline std::vector<std::uint8_t> bytesOf(const CGImage& image)
{
    std::vector<std::uint8_t> bytes;
    const std::size_t row =
        static_cast<std::size_t>(image.width()) * static_cast<std::size_t>(image.bitsPerPixel() / 8);
    for (int y = 0; y < image.height(); ++y)
        bytes.insert(bytes.end(), image.row(y), image.row(y) + row);
    return bytes;
}

} // namespace lamina::test
