#pragma once

#include "platform/image/codecs/ByteNumbers_p.h"
#include "platform/image/codecs/ByteSource_p.h"
#include "platform/image/pixels/UIImage.h"

#include <cstdint>
#include <optional>
#include <span>

namespace lamina {

/// What an EXIF block says of the picture. A block that is damaged or empty says nothing, or less.
struct ExifFacts {
    std::optional<int> orientationTag; ///< the orientation as it is stored: 1 to 8 where it is sound
    UIImageOrientation orientation = UIImageOrientation::Up;
    std::optional<double> date; ///< as in PictureFacts
};

/// Reads the block that fills a range of a source. It may begin with "Exif\0\0" or with its TIFF header; a whole TIFF
/// file is such a block as well. A few tags are read where they stand, and the rest (among it what makers add, which
/// can be long) is left alone.
ExifFacts readExif(ByteSource& source, ByteRange block);

/// Where the block's small JPEG picture stands in the source; of length 0 when there is none.
ByteRange findExifThumbnail(ByteSource& source, ByteRange block);

/// The orientation alone, of a block in memory.
UIImageOrientation exifOrientation(std::span<const std::uint8_t> block);
std::optional<int> exifOrientationTag(std::span<const std::uint8_t> block);

} // namespace lamina
