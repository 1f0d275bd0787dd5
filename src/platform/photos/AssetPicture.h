#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/photos/PHAsset.h"
#include "platform/photos/PHImageRequestOptions.h"

#include <atomic>

namespace lamina {

/// What one request wants of an asset.
struct AssetPictureRequest {
    PHAsset asset;
    CGSize targetSize; ///< pixels; not positive or not finite: the maximum size
    PHImageContentMode contentMode = PHImageContentMode::AspectFit;
    PHImageRequestOptionsResizeMode resizeMode = PHImageRequestOptionsResizeMode::Fast;
};

/// Reads and sizes the picture on the calling thread; empty when that fails, or once `cancelled` (may be null) is set.
UIImage loadAssetPicture(const AssetPictureRequest& request, const std::atomic<bool>* cancelled);

} // namespace lamina
