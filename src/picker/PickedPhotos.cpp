#include "picker/PickedPhotos.h"

#include "picker/PickerTexts.h"
#include "platform/base/Log.h"
#include "platform/base/SideBySide.h"
#include "platform/base/UIScreen.h"
#include "platform/image/codecs/PictureFacts.h"
#include "platform/photos/AssetPicture.h"
#include "platform/photos/PHImageRequestOptions.h"

#include <algorithm>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <utility>

namespace lamina {

namespace {

/// Points that a photo may be smaller than the screen it was chosen from, in width and in height.
constexpr double kImageMargin = 40;
/// How far an editor lets photos be enlarged: at the screen's width they keep a pixel for each point then.
constexpr double kDeepestZoom = 6;
/// Bytes of pixels that are read at a time; a photo that has more is read alone.
constexpr std::int64_t kMemoryAtATime = std::int64_t{256} << 20;

/// Lets readers wait for the memory that others hold.
class MemoryGate {
public:
    void enter(std::int64_t bytes)
    {
        std::unique_lock lock(m_mutex);
        m_left.wait(lock, [&] { return m_held == 0 || m_held + bytes <= kMemoryAtATime; });
        m_held += bytes;
    }
    void leave(std::int64_t bytes)
    {
        {
            const std::scoped_lock lock(m_mutex);
            m_held -= bytes;
        }
        m_left.notify_all();
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_left;
    std::int64_t m_held = 0;
};

Result<PictureFacts> factsOf(const PhotoSource& photo)
{
    return photo.bytes ? readPictureFacts(*photo.bytes, photo.name) : readPictureFacts(photo.path);
}

Result<UIImage> loadPickedPhoto(const PhotoSource& photo, const PickedPhotoSize& size, MemoryGate& gate,
                                const std::atomic<bool>& cancelled)
{
    const Result<PictureFacts> facts = factsOf(photo); // a library may not have come to them yet
    if (!facts)
        return facts.error();
    AssetPictureRequest request;
    request.asset.pixelWidth = facts->width;
    request.asset.pixelHeight = facts->height;
    request.targetSize = pickedPhotoSize({static_cast<double>(facts->width), static_cast<double>(facts->height)}, size);
    request.contentMode = PHImageContentMode::AspectFill;
    request.resizeMode = PHImageRequestOptionsResizeMode::Exact;
    const std::int64_t bytes = std::int64_t{4} * facts->width * facts->height;
    gate.enter(bytes);
    Result<UIImage> image = loadAssetPicture(photo, request, &cancelled);
    gate.leave(bytes);
    return image;
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
    MemoryGate gate;
    std::vector<Result<UIImage>> read = sideBySide(
        photos.size(), [&](std::size_t index) { return loadPickedPhoto(photos[index], size, gate, cancelled); });
    PickedPhotos picked;
    for (std::size_t index = 0; index < photos.size() && !cancelled; ++index) {
        if (read[index]) {
            picked.images.push_back(*std::move(read[index]));
        } else {
            logWarning(read[index].error().message());
            picked.failures.push_back({shownName(photos[index].name).toStdString(), read[index].error().cause});
        }
    }
    return picked;
}

} // namespace lamina
