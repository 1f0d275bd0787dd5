#pragma once

#include "platform/base/Result.h"
#include "platform/image/codecs/ByteSource_p.h"
#include "platform/image/codecs/PictureDecoder_p.h"

#include <cstdint>
#include <span>

namespace lamina {

/// By the number that every TIFF or BigTIFF begins with.
bool recognizesTIFF(std::span<const std::uint8_t> head);

/// The facts of a file's first page, without libtiff, which would read every value of the directory and needs a while
/// to be loaded.
Result<StoredFacts> factsOfTIFF(ByteSource& source);

} // namespace lamina
