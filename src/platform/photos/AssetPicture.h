#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/photos/PHAsset.h"
#include "platform/photos/PHImageRequestOptions.h"
#include "platform/photos/PhotoSource.h"

#include <atomic>
#include <cstddef>
#include <string>

namespace lamina {

/// What one request wants of an asset.
struct AssetPictureRequest {
    PHAsset asset;
    CGSize targetSize; ///< pixels; not positive or not finite: the maximum size
    PHImageContentMode contentMode = PHImageContentMode::AspectFit;
    PHImageRequestOptionsResizeMode resizeMode = PHImageRequestOptionsResizeMode::Fast;
    std::size_t memoryLimit = PHImageRequestOptions().memoryLimit; ///< see there
};

/// Pixels of the longer side: the cells of a grid of photos, on dense displays too.
inline constexpr int kLargestThumbnailSide = 640;

/// Whether the request is for a picture so small that it should not wait behind whole photos.
bool isThumbnail(const AssetPictureRequest& request);

/// Reads and sizes the picture on the calling thread: upright, scale 1, in sRGB. Set `cancelled` (may be null) from any
/// thread to stop; `warning` as in `DecodeOptions`. The error's subject is the file's path, its cause one of
/// `loadPicture` or the want of memory.
Result<UIImage> loadAssetPicture(const AssetPictureRequest& request, const std::atomic<bool>* cancelled,
                                 std::string* warning = nullptr);
/// The same of a picture that is no asset: it is read from `source`, and of the asset only the sides count. The error's
/// subject is the source's name.
Result<UIImage> loadAssetPicture(const PhotoSource& source, const AssetPictureRequest& request,
                                 const std::atomic<bool>* cancelled, std::string* warning = nullptr);

} // namespace lamina
