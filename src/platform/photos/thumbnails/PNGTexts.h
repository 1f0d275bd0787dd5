#pragma once

#include "platform/base/CGGeometry.h"

#include <map>
#include <optional>
#include <string>

namespace lamina {

/// What stands in a PNG file beside its pixels.
struct PNGTexts {
    IntSize size;                             ///< pixels that the header claims
    std::map<std::string, std::string> texts; ///< of the plain text chunks, by keyword: Latin-1, the first of a name
};

/// Reads the chunks up to the end of the picture without its pixels: some hundred chunks at most, of texts those of
/// some kilobytes. Checksums are left to who decodes the picture. Nothing when the file can't be read or is no PNG.
/// Usable from any thread.
std::optional<PNGTexts> readPNGTexts(const std::string& path);

} // namespace lamina
