#include "platform/photos/PHCollection.h"

namespace lamina {

std::vector<PHCollection> fetchTopLevelUserCollections()
{
    return {};
}

std::vector<PHCollection> fetchCollectionsInCollectionList(const PHCollectionList&)
{
    return {};
}

std::vector<PHAssetCollection> fetchAssetCollectionsWithType(PHAssetCollectionType, PHAssetCollectionSubtype)
{
    return {};
}

PHFetchResult fetchAssetsInAssetCollection(const PHAssetCollection&)
{
    return {};
}

} // namespace lamina
