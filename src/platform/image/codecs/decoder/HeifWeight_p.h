#pragma once

#include "platform/base/Result.h"
#include "platform/image/codecs/ByteSource_p.h"
#include "platform/image/codecs/HeifItems_p.h"

#include <cstdint>

namespace lamina {

/// What decoding a picture of a HEIF file takes, alpha and the pictures that it is made of included. Sums stop growing
/// at 2^60.
struct HeifWeight {
    std::uint64_t pixels = 0; ///< of the picture, before it is cropped
    std::uint64_t planes = 0; ///< bytes of the planes that come
    std::uint64_t peak = 0;   ///< bytes of all planes that the codec and libheif hold at once
    std::uint64_t work = 0;   ///< pixels gone through, an item counted as often as it is met
    std::uint64_t read = 0;   ///< bytes of the file given to the codec
    int depth = 0;            ///< how many items are made of each other at most, one below the other
};

/// Weighs a picture by what its items' own streams say, so that it can be refused before anything of it is decoded.
/// An error when it is unsound: references to items that aren't there or back to itself, too few or too many parts,
/// sides that contradict the stream's, data behind the end of the file. Refuses as too large what takes far more work
/// than the picture shows.
Result<HeifWeight> weighHeifPicture(ByteSource& source, const HeifItems& items, std::uint64_t id);

} // namespace lamina
