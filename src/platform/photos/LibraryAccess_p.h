#pragma once

#include "platform/photos/LibraryRoots.h"
#include "platform/photos/PHPhotoLibrary.h"

#include <string>

namespace lamina {

/// What a file in the root of every sandbox is called.
inline constexpr const char* kSandboxMark = "/.flatpak-info";

/// Whether these folders may be read: `Denied` where there are some, and none of them may. Reads the disk.
PHAuthorizationStatus accessTo(const LibraryRoots& roots);

/// False where the file `sandboxMark` says that this is a sandbox, and none of the folders is in it.
bool foldersAreShown(const LibraryRoots& roots, const std::string& sandboxMark);

} // namespace lamina
