#pragma once

#include "platform/base/Result.h"
#include "platform/image/codecs/ByteSource_p.h"

#include <algorithm>
#include <cstdint>
#include <span>

namespace lamina {

/// What a video stream's own headers say of the pictures in it, whatever the file around it tells.
struct CodedPictures {
    std::uint64_t width = 0; ///< of the largest, as it is coded
    std::uint64_t height = 0;
    std::uint64_t shownWidth = 0; ///< and without what only fills its last blocks
    std::uint64_t shownHeight = 0;
    /// Of the largest kind: what four pixels take in the codec's planes.
    std::uint64_t bytesOfFourPixels = 0;
    std::uint64_t count = 0; ///< how many there are

    /// Takes a header's sides in.
    void include(const CodedPictures& other)
    {
        width = std::max(width, other.width);
        height = std::max(height, other.height);
        shownWidth = std::max(shownWidth, other.shownWidth);
        shownHeight = std::max(shownHeight, other.shownHeight);
        bytesOfFourPixels = std::max(bytesOfFourPixels, other.bytesOfFourPixels);
    }
};

/// Reads the headers of HEVC pictures: `configuration` is the content of the file's "hvcC" box, `data` the item, units
/// behind four bytes of length each. "The picture is damaged" when no header is sound.
Result<CodedPictures> readHevcPictures(std::span<const std::uint8_t> configuration, ByteSource& data);
/// The same of AV1 pictures: "av1C", and an item of units that tell their own length.
Result<CodedPictures> readAv1Pictures(std::span<const std::uint8_t> configuration, ByteSource& data);

/// How many units an item may have; a picture of a hundred megapixels has some hundred slices.
inline constexpr int kMostCodedUnits = 20'000;

/// What four pixels take: `chroma` is 0 for grey, 1 for colours at half size, 2 for half width, 3 for full size.
inline std::uint64_t bytesOfFourPixels(std::uint32_t chroma, bool deep)
{
    constexpr std::uint64_t kSamples[]{4, 6, 8, 12};
    return kSamples[std::min(chroma, 3u)] * (deep ? 2 : 1);
}

} // namespace lamina
