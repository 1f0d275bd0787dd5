#pragma once

#include "platform/photos/PHCollection.h"
#include "platform/photos/PHFetchResult.h"

namespace lamina {

/// An album and the pictures that it held when they were fetched, newest first. A plain value.
struct CollectionItem {
    PHAssetCollection collection;
    PHFetchResult assets;

    /// The same album with the same pictures in the same order.
    friend bool operator==(const CollectionItem&, const CollectionItem&) = default;
};

} // namespace lamina
