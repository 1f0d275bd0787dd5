#pragma once

#include "platform/base/Result.h"
#include "platform/image/codecs/ByteSource_p.h"
#include "platform/image/codecs/PictureDecoder_p.h"

namespace lamina {

/// The facts of a HEIF file's primary picture, by its boxes and without libheif. The sides are those after the boxes
/// that crop and turn.
Result<StoredFacts> readHeifFacts(ByteSource& source);

} // namespace lamina
