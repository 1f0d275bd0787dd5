#pragma once

#include "platform/image/codecs/ByteSource_p.h"
#include "platform/image/codecs/PictureFacts_p.h"

#include "platform/base/CGGeometry.h"
#include "platform/base/Result.h"
#include "platform/image/codecs/PictureFacts.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/UIImage.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace lamina {

/// The limit under which damaged files are decoded here; small, so that a claim that slips through shows.
inline constexpr std::size_t kFuzzMemoryLimit = std::size_t{32} << 20;

/// What is wrong with the outcome of a decoder, whatever the file was; empty when nothing is: a failure must name its
/// cause, a picture must have a sound layout of at most `memoryLimit` bytes, all of them readable, and say of its alpha
/// what is true.
inline std::string faultOf(const Result<UIImage>& decoded, std::size_t memoryLimit = kFuzzMemoryLimit)
{
    if (!decoded)
        return decoded.error().cause.empty() ? "a failure without a cause" : "";
    const CGImage& image = decoded->cgImage();
    if (!image)
        return "neither a picture nor a cause";
    if (image.bitsPerComponent() != 8 || image.bitsPerPixel() != 32 ||
        image.bytesPerRow() < 4 * static_cast<std::size_t>(image.width()))
        return "a picture whose layout is not that of RGBA";
    if (image.bytes().size() > memoryLimit)
        return "a picture beyond the memory limit";
    std::uint8_t all = 255;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            all &= image.row(y)[4 * static_cast<std::size_t>(x) + 3];
    }
    const bool translucent = image.alphaInfo() == CGImageAlphaInfo::Last;
    if (!translucent && image.alphaInfo() != CGImageAlphaInfo::NoneSkipLast)
        return "a picture whose alpha is neither straight nor absent";
    return translucent == (all != 255) ? "" : "alpha that the layout does not tell";
}

/// What is wrong with what is read of a file without decoding its picture; empty when nothing is. Where it can be
/// decoded, to `whole`, both must say the same.
inline std::string faultOfFacts(std::span<const std::uint8_t> bytes, const Result<UIImage>& whole)
{
    const auto source = memorySource(bytes);
    const Result<PictureFacts> facts = readPictureFacts(*source);
    if (facts ? facts->width <= 0 || facts->height <= 0 : facts.error().cause.empty())
        return "facts that are none";
    if (whole && (!facts || IntSize{facts->width, facts->height} != whole->pixelSize() ||
                  facts->orientation != whole->imageOrientation()))
        return "facts that are not the picture's";
    return faultOf(loadEmbeddedThumbnail(*source));
}

} // namespace lamina
