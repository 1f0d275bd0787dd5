#pragma once

#include "TestPaths.h"
#include "platform/image/codecs/PictureDecoder_p.h"

#include <array>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <span>
#include <string>
#include <vector>

namespace lamina::test {

using Bytes = std::vector<std::uint8_t>;
using Pixel = std::array<int, 4>;

inline Bytes dataFile(const std::string& name)
{
    std::ifstream file(testData("pictures/" + name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

inline Result<UIImage> decode(const PictureDecoder& decoder, std::span<const std::uint8_t> bytes,
                              const DecodeOptions& options = {})
{
    return decoder.decode(*memorySource(bytes), options);
}

/// The picture, or the empty one.
inline UIImage pictureOf(const Result<UIImage>& decoded)
{
    return decoded ? *decoded : UIImage();
}

/// The cause of failure; empty when there is a picture.
inline std::string causeOf(const Result<UIImage>& decoded)
{
    return decoded ? "" : decoded.error().cause;
}

/// R, G, B, A; 255 for alpha where there is none. All -1 outside the picture.
inline Pixel pixelAt(const CGImage& image, int x, int y)
{
    if (!image || x < 0 || y < 0 || x >= image.width() || y >= image.height())
        return {-1, -1, -1, -1};
    const std::uint8_t* p = image.row(y) + 4 * static_cast<std::size_t>(x);
    return {p[0], p[1], p[2], image.hasAlpha() ? p[3] : 255};
}

/// Row 0 of what the decoder makes of the bytes; empty on failure.
inline std::vector<Pixel> firstRow(const Result<UIImage>& decoded)
{
    const CGImage image = pictureOf(decoded).cgImage();
    std::vector<Pixel> pixels;
    for (int x = 0; image && x < image.width(); ++x)
        pixels.push_back(pixelAt(image, x, 0));
    return pixels;
}

inline void append16(Bytes& bytes, std::uint32_t value)
{
    bytes.push_back(static_cast<std::uint8_t>(value));
    bytes.push_back(static_cast<std::uint8_t>(value >> 8));
}

inline void append32(Bytes& bytes, std::uint32_t value)
{
    append16(bytes, value);
    append16(bytes, value >> 16);
}

inline void append(Bytes& bytes, std::span<const std::uint8_t> more)
{
    bytes.insert(bytes.end(), more.begin(), more.end());
}

} // namespace lamina::test
