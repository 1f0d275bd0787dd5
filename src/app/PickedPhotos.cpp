#include "app/PickedPhotos.h"

#include "picker/PickerTexts.h"
#include "platform/base/Log.h"
#include "platform/image/codecs/PictureFacts.h"
#include "platform/photos/AssetPicture.h"
#include "platform/photos/PHImageRequestOptions.h"

#include <algorithm>
#include <utility>

namespace lamina {

namespace {

Result<UIImage> loadPickedPhoto(PHAsset asset, const PickedPhotoSize& size, const std::atomic<bool>& cancelled)
{
    const Result<PictureFacts> facts = readPictureFacts(asset.path); // the library may not have come to them yet
    if (!facts)
        return facts.error();
    asset.pixelWidth = facts->width;
    asset.pixelHeight = facts->height;
    const CGSize own{static_cast<double>(facts->width), static_cast<double>(facts->height)};
    AssetPictureRequest request;
    request.asset = std::move(asset);
    request.targetSize = pickedPhotoSize(own, size);
    request.contentMode = PHImageContentMode::AspectFill;
    request.resizeMode = PHImageRequestOptionsResizeMode::Exact;
    return loadAssetPicture(request, &cancelled);
}

} // namespace

CGSize pickedPhotoSize(CGSize own, const PickedPhotoSize& size)
{
    const double zoomed = size.shortSide / std::min(own.width, own.height);
    const double covering = std::max(size.covered.width / own.width, size.covered.height / own.height);
    const double scale = std::max(std::min(covering, std::max(1.0, zoomed)), std::min(1.0, zoomed));
    return {own.width * scale, own.height * scale};
}

PickedPhotos loadPickedPhotos(const std::vector<PHAsset>& assets, const PickedPhotoSize& size,
                              const std::atomic<bool>& cancelled)
{
    PickedPhotos photos;
    for (const PHAsset& asset : assets) {
        if (cancelled)
            break;
        Result<UIImage> image = loadPickedPhoto(asset, size, cancelled);
        if (image) {
            photos.images.push_back(*std::move(image));
        } else if (!cancelled) {
            logWarning(image.error().message());
            photos.failures.push_back({shownFileName(asset).toStdString(), image.error().cause});
        }
    }
    return photos;
}

} // namespace lamina
