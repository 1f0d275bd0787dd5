#pragma once

#include "DecodeCheck.h"

#include "platform/base/Result.h"
#include "platform/image/codecs/CGImageSource.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/UIImage.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace lamina {

/// What is wrong with what comes of a file that arrives in pieces, whose sizes the file itself chooses; empty when
/// nothing is. Where all of it can be decoded, to `whole`, that must come of it too.
inline std::string faultOfArrival(std::span<const std::uint8_t> bytes, const Result<UIImage>& whole,
                                  std::size_t memoryLimit = kFuzzMemoryLimit)
{
    const auto source = CGImageSource::makeIncremental({.memoryLimit = memoryLimit});
    CGImage image;
    for (std::size_t size = 0; size < bytes.size();) {
        const std::size_t chosen = bytes[bytes.size() / 2 + size / 2] % 8;
        size = std::min(bytes.size(), size + (chosen == 0 ? 1 : chosen * bytes.size() / 32 + 1));
        source->updateData(bytes.first(size), size == bytes.size());
        if (chosen == 7 && size < bytes.size())
            continue;
        const CGImage next = source->imageAtIndex();
        if (image && (next.width() != image.width() || next.height() < image.height()))
            return "a picture that shrinks";
        image = next;
        if (image && !source->propertiesAtIndex())
            return "a picture before its properties";
        const std::string fault = image ? faultOf(UIImage(image), memoryLimit) : std::string();
        if (!fault.empty())
            return fault;
    }
    if (whole && (image.size() != whole->cgImage().size() || image.alphaInfo() != whole->cgImage().alphaInfo() ||
                  !std::ranges::equal(image.bytes(), whole->cgImage().bytes())))
        return "a picture that arrives as another";
    return {};
}

} // namespace lamina
