#pragma once

#include "platform/image/pixels/CGImage.h"

#include <string_view>

namespace lamina {

/// A built-in colour look-up table, for `GPUImageLookupFilter`, by its file's name: "lookup_amatorka.png",
/// "lookup_soft_elegance_1.png", "lookup_soft_elegance_2.png", "lookup_miss_etikate.png", or "lookup_identity.png",
/// which changes nothing. 512 x 512 pixels, opaque. Another name: the empty picture.
///
/// The files are part of the library, so that a program that links it needs nothing else. A table is decoded when it is
/// first asked for, and kept until a memory warning. From any thread.
CGImage lookupTable(std::string_view fileName);

} // namespace lamina
