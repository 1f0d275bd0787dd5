#include "platform/photos/PHCachingImageManager.h"

namespace lamina {

class PHCachingImageManager::Warming {};

PHCachingImageManager::PHCachingImageManager() = default;

PHCachingImageManager::~PHCachingImageManager()
{
    stopCachingImagesForAllAssets();
}

void PHCachingImageManager::startCachingImagesForAssets(const std::vector<PHAsset>&, CGSize, PHImageContentMode,
                                                        const PHImageRequestOptions&)
{
}

void PHCachingImageManager::stopCachingImagesForAllAssets()
{
    m_warmings.clear();
}

} // namespace lamina
