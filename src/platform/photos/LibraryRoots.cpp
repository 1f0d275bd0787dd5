#include "platform/photos/LibraryRoots.h"

#include "platform/files/PrivateFolder.h"
#include "platform/photos/PhotoFolder.h"
#include "platform/photos/PictureFolders.h"

namespace lamina {

LibraryRoots defaultLibraryRoots()
{

    return {.pictures = picturesFolder(),
            .further = {},
            .ownFolder = photoLibraryFolder(),
            .cacheFolder = lamina::cacheFolder()};
}

} // namespace lamina
