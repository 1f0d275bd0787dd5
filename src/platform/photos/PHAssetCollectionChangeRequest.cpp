#include "platform/photos/PHAssetCollectionChangeRequest.h"

#include "platform/photos/PHChangeRequests_p.h"

#include <utility>

namespace lamina {

PHAssetCollectionChangeRequest::PHAssetCollectionChangeRequest(PHAssetCollection collection)
    : m_collection(std::move(collection))
{
}

PHAssetCollectionChangeRequest*
PHAssetCollectionChangeRequest::changeRequestForAssetCollection(const PHAssetCollection& assetCollection)
{
    return PHChangeRequests::current() ? PHChangeRequests::current()->addCollectionChange(assetCollection) : nullptr;
}

void PHAssetCollectionChangeRequest::addAssets(const std::vector<PHObjectPlaceholder>& assets)
{
    m_added.insert(m_added.end(), assets.begin(), assets.end());
}

} // namespace lamina
