#pragma once

#include "platform/photos/LibraryRoots.h"
#include "platform/photos/PHPhotoLibrary.h"

#include <string>

namespace lamina {

/// Whether these folders may be read: `Denied` where there are some, and none of them may. Reads the disk.
PHAuthorizationStatus accessTo(const LibraryRoots& roots);

/// False where the mark says that this is a sandbox, and none of the folders is in it. A folder for pictures with
/// nothing but the application's own in it is none: it was made in the sandbox, with the first picture saved. Reads the
/// disk.
bool foldersAreShown(const LibraryRoots& roots);

} // namespace lamina
