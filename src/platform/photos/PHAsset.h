#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace lamina {

/// A picture of the photo library: what is known of it without reading its pixels. A plain value, usable from any
/// thread.
struct PHAsset {
    std::string localIdentifier; ///< names the picture for as long as the library has it, through renames and moves
    std::string path;            ///< its file
    int pixelWidth = 0;          ///< as shown upright; 0: not known
    int pixelHeight = 0;
    double creationDate = 0;   ///< seconds since the beginning of 1970, UTC
    std::int64_t modified = 0; ///< when the file was last written, ns since 1970: another one tells a replaced file

    /// The same picture of the library, whatever else is known of it.
    friend bool operator==(const PHAsset& x, const PHAsset& y) { return x.localIdentifier == y.localIdentifier; }
};

/// The assets of these identifiers that the library has, in their order; those that it doesn't are left out. A file
/// that goes or gets another name is so when the library shows it. Those of a change are found from its end on (see
/// `PHPhotoLibrary::performChanges`). Usable from any thread.
std::vector<PHAsset> fetchAssetsWithLocalIdentifiers(const std::vector<std::string>& identifiers);

} // namespace lamina
