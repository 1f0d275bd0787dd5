#pragma once

#include "platform/photos/LibrarySnapshot_p.h"
#include "platform/photos/PHCollection.h"
#include "platform/photos/index/PhotoRecords.h"

namespace lamina {

/// Names an album in any snapshot.
struct AlbumKey {
    PHAssetCollectionSubtype subtype = PHAssetCollectionSubtype::SmartAlbumUserLibrary;
    FolderID folder = 0; ///< of a regular album; 0: none that is known
};

AlbumKey albumKeyOf(const LibrarySnapshot& library, const PHAssetCollection& collection);

/// The album's photos in a snapshot; none when it is not there. Never null.
PhotoIDs photosOf(const LibrarySnapshot& library, const AlbumKey& album);

} // namespace lamina
