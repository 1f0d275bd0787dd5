#include "platform/photos/index/PhotoStoreModule_p.h"

#include "platform/files/LoadedModule.h"

namespace lamina {

Result<const PhotoStoreModule*> photoStoreModule()
{
    static const Result<const PhotoStoreModule*> module = loadModule<PhotoStoreModule>(
        {"lamina-photos.so", kPhotoStoreModuleEntry, Error{{}, "support for SQLite is not installed"},
         Error{{}, "support for SQLite can't be loaded"}});
    return module;
}

} // namespace lamina
