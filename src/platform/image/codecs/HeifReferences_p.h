#pragma once

#include "platform/image/codecs/ByteSource_p.h"

namespace lamina {

/// False when decoding an item of a HEIF file would lead back to that item (a grid whose tile is the grid, an alpha
/// picture made of the picture it belongs to) or to an unreasonable number of other ones. libheif follows such
/// references until memory ends. True for a file whose boxes can't be read, which libheif refuses by itself.
bool areHeifReferencesSound(ByteSource& source);

} // namespace lamina
