#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/photos/PHAsset.h"
#include "platform/photos/PHImageManager.h"
#include "platform/photos/PHImageRequestOptions.h"

#include <memory>
#include <vector>

namespace lamina {

/// An image manager that can be told which thumbnails will be asked for soon. What it adds is for the main thread.
class PHCachingImageManager : public PHImageManager {
public:
    PHCachingImageManager();
    /// Stops what goes on in the background.
    ~PHCachingImageManager() override;

    /// Makes these thumbnails, one after another and after everything else that is wanted of any manager, so that a
    /// later request with the same arguments finds them in the caches. Sizes beyond thumbnails are left alone. Returns
    /// at once; the main queue counts as busy until all are made.
    void startCachingImagesForAssets(const std::vector<PHAsset>& assets, CGSize targetSize,
                                     PHImageContentMode contentMode, const PHImageRequestOptions& options);
    /// Makes no more of them; what is in the caches stays.
    void stopCachingImagesForAllAssets();

private:
    class Warming;
    std::vector<std::shared_ptr<Warming>> m_warmings;
};

} // namespace lamina
