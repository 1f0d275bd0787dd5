#include "platform/photos/LibraryRoots.h"

#include "platform/photos/PhotoFolder.h"
#include "platform/photos/PictureFolders.h"

#include <QStandardPaths>

namespace lamina {

LibraryRoots defaultLibraryRoots()
{
    const std::string caches = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation).toStdString();
    return {.pictures = picturesFolder(),
            .further = {},
            .ownFolder = photoLibraryFolder(),
            .cacheFolder = caches + "/lamina"};
}

} // namespace lamina
