#include "picker/PickedPhotos.h"

#include "picker/PickerTexts.h"
#include "platform/base/Log.h"
#include "platform/base/MemoryGate.h"
#include "platform/base/SideBySide.h"
#include "platform/base/UIScreen.h"
#include "platform/image/codecs/PictureFacts.h"
#include "platform/photos/AssetPicture.h"
#include "platform/photos/PHImageRequestOptions.h"
#include "platform/photos/PhotoLoading.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>

namespace lamina {

namespace {

/// Points that a photo may be smaller than the screen it was chosen from, in width and in height.
constexpr double kImageMargin = 40;
/// How far an editor lets photos be enlarged: at the screen's width they keep a pixel for each point then.
constexpr double kDeepestZoom = 6;
/// Bytes of pixels that are read at a time; a photo that has more is read alone.
constexpr std::size_t kMemoryAtATime = std::size_t{256} << 20;

Result<UIImage> loadPickedPhoto(const PhotoSource& photo, const PickedPhotoSize& size, MemoryGate& gate,
                                const std::atomic<bool>& cancelled, std::string& warning)
{
    const Result<PictureFacts> facts = photoFacts(photo); // a library may not have come to them yet
    if (!facts)
        return facts.error();
    AssetPictureRequest request;
    request.asset.pixelWidth = facts->width;
    request.asset.pixelHeight = facts->height;
    request.targetSize = pickedPhotoSize({static_cast<double>(facts->width), static_cast<double>(facts->height)}, size);
    request.contentMode = PHImageContentMode::AspectFill;
    request.resizeMode = PHImageRequestOptionsResizeMode::Exact;
    const MemoryGate::Pass pass =
        gate.enter(4 * static_cast<std::size_t>(facts->width) * static_cast<std::size_t>(facts->height));
    return loadAssetPicture(photo, request, &cancelled, &warning);
}

} // namespace

PickedPhotoSize pickedPhotoSizeFor(CGSize own)
{
    const UIScreen screen = UIScreen::main();
    return {{(own.width - kImageMargin) * screen.scale, (own.height - kImageMargin) * screen.scale},
            kDeepestZoom * screen.bounds.width};
}

CGSize pickedPhotoSize(CGSize own, const PickedPhotoSize& size)
{
    const double zoomed = size.shortSide / std::min(own.width, own.height);
    const double covering = std::max(size.covered.width / own.width, size.covered.height / own.height);
    const double scale = std::max(std::min(covering, std::max(1.0, zoomed)), std::min(1.0, zoomed));
    return {own.width * scale, own.height * scale};
}

std::vector<PhotoSource> photoSources(const std::vector<PHAsset>& assets)
{
    std::vector<PhotoSource> sources;
    sources.reserve(assets.size());
    for (const PHAsset& asset : assets)
        sources.push_back(PhotoSource::fromFile(asset.path));
    return sources;
}

PickedPhotos loadPickedPhotos(const std::vector<PhotoSource>& photos, const PickedPhotoSize& size,
                              const std::atomic<bool>& cancelled)
{
    MemoryGate gate(kMemoryAtATime);
    std::vector<std::string> warnings(photos.size());
    std::vector<Result<UIImage>> read = sideBySide(photos.size(), [&](std::size_t index) {
        return loadPickedPhoto(photos[index], size, gate, cancelled, warnings[index]);
    });
    PickedPhotos picked;
    for (std::size_t index = 0; index < photos.size() && !cancelled; ++index) {
        const std::string name = shownName(photos[index].name).toStdString();
        if (read[index]) {
            picked.images.push_back(*std::move(read[index]));
            if (!warnings[index].empty())
                picked.damages.push_back({name, warnings[index]});
        } else {
            logWarning(read[index].error().message());
            picked.failures.push_back({name, read[index].error().cause});
        }
    }
    return picked;
}

} // namespace lamina
