#pragma once

#include "platform/photos/PHAssetChangeRequest.h"
#include "platform/photos/PHCollection.h"

#include <vector>

namespace lamina {

/// What becomes of one album, as part of a change (see `PHPhotoLibrary::performChanges`), in whose block alone it
/// lives.
class PHAssetCollectionChangeRequest {
public:
    /// Adds a request to the change whose block is running in this thread; null outside such a block. It belongs to
    /// the change.
    static PHAssetCollectionChangeRequest* changeRequestForAssetCollection(const PHAssetCollection& assetCollection);

    /// Puts assets that the same change creates into the album: their files lie in its folder then, and not in the
    /// one to which this application saves. The change fails for a smart album, one whose folder is gone, and an asset
    /// that the change doesn't create.
    void addAssets(const std::vector<PHObjectPlaceholder>& assets);

private:
    friend class PHChangeRequests;
    explicit PHAssetCollectionChangeRequest(PHAssetCollection collection);

    PHAssetCollection m_collection;
    std::vector<PHObjectPlaceholder> m_added;
};

} // namespace lamina
