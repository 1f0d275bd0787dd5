#pragma once

#include <string>
#include <vector>

namespace lamina {

/// The folders that the photo library is made of, as absolute paths, whether they exist or not. A plain value.
struct LibraryRoots {
    std::string pictures;             ///< the folders in it are albums
    std::vector<std::string> further; ///< each is an album, or a list of albums, itself
    std::string ownFolder;            ///< into which the application puts finished pictures; usually in `pictures`
    std::string cacheFolder;          ///< where the index lies; it is made
    /// A file that says, where it exists, that this is a sandbox: folders may be hidden from the application in it.
    std::string sandboxMark = "/.flatpak-info";

    friend bool operator==(const LibraryRoots&, const LibraryRoots&) = default;
};

/// The user's folder for pictures, no further ones, and the application's folder for caches. Usable from any thread.
LibraryRoots defaultLibraryRoots();

} // namespace lamina
