#pragma once

#include "platform/base/Result.h"
#include "platform/image/codecs/ByteSource_p.h"
#include "platform/image/codecs/PictureDecoder_p.h"

#include <cstdint>
#include <span>

namespace lamina {

/// By the brands that stand first in the file.
bool recognizesHEIC(std::span<const std::uint8_t> head);

/// The facts of a HEIF file's primary picture, by its boxes and without libheif. The sides are those after the boxes
/// that crop and turn.
Result<StoredFacts> readHeifFacts(ByteSource& source);

} // namespace lamina
