#pragma once

#include "platform/photos/PHCollection.h"
#include "platform/photos/PHFetchResult.h"

#include <vector>

namespace lamina {

/// An album and the pictures that it held when they were fetched, newest first. A plain value.
struct CollectionItem {
    PHAssetCollection collection;
    PHFetchResult assets;

    /// The same album with the same pictures in the same order.
    friend bool operator==(const CollectionItem&, const CollectionItem&) = default;
};

/// All albums that hold pictures: all photos first, then the user's, depth first, then the other smart ones. Usable
/// from any thread.
std::vector<CollectionItem> fetchCollectionItems();

} // namespace lamina
