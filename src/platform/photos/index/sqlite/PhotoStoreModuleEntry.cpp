#include "platform/files/FileURL.h"
#include "platform/photos/index/PhotoStoreModule_p.h"
#include "platform/photos/index/PhotoStore_p.h"
#include "platform/photos/index/sqlite/Database_p.h"
#include "platform/photos/index/sqlite/PhotoFileMaking_p.h"
#include "platform/photos/index/sqlite/PhotoFile_p.h"
#include "platform/photos/index/sqlite/PhotoTableReads_p.h"

#include <string>

namespace lamina {

namespace {

/// The write-ahead file of one that can't be written is not looked at: it would have to be shared.
StoreContents readPhotoFile(const std::string& path)
{
    Database database(fileURLOfPath(path) + "?immutable=1", SQLITE_OPEN_READONLY | SQLITE_OPEN_URI);
    return stateOf(database) == PhotoFileState::Ours ? salvage(database) : StoreContents();
}

const PhotoStoreModule kModule{LAMINA_VERSION, PhotoFile::open, readPhotoFile};

} // namespace

} // namespace lamina

extern "C" __attribute__((visibility("default"))) const lamina::PhotoStoreModule* laminaPhotoStoreModule()
{
    return &lamina::kModule;
}
