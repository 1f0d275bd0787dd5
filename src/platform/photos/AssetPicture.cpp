#include "platform/photos/AssetPicture.h"

#include "platform/base/Causes.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/photos/AssetScaling_p.h"
#include "platform/photos/PhotoLoading.h"

#include <algorithm>
#include <optional>
#include <string>

namespace lamina {

namespace {

/// As large as is wanted, or as memory allows: a claim is refused before anything is read.
Result<UIImage> loadWithinMemory(const PhotoSource& source, DecodeOptions options)
{
    constexpr int kSmallest = 64;
    Result<UIImage> stored = loadAsStored(source, options);
    while (!stored && isRefusedForMemory(stored.error()) && options.shortSide > kSmallest) {
        options.shortSide = options.shortSide * 7 / 8;
        stored = loadAsStored(source, options);
    }
    return stored;
}

} // namespace

bool isThumbnail(const AssetPictureRequest& request)
{
    const std::optional<CGSize> target = wholeTarget(request);
    return target && std::max(target->width, target->height) <= kLargestThumbnailSide;
}

Result<UIImage> loadAssetPicture(const AssetPictureRequest& request, const std::atomic<bool>* cancelled,
                                 std::string* warning)
{
    const std::string& path = request.asset.path;
    return loadAssetPicture({path, nullptr, path}, request, cancelled, warning);
}

Result<UIImage> loadAssetPicture(const PhotoSource& source, const AssetPictureRequest& request,
                                 const std::atomic<bool>* cancelled, std::string* warning)
{
    DecodeOptions options{.cancelled = cancelled, .memoryLimit = request.memoryLimit, .warning = warning};
    const std::optional<CGSize> target = wholeTarget(request);
    if (!target)
        return loadUpright(source, options);
    options.shortSide = decodedShortSide(request, *target);
    const Result<UIImage> stored = loadWithinMemory(source, options);
    if (!stored)
        return stored;
    if (cancelled && *cancelled)
        return Error{source.name, cause::kCancelled};
    return madeOrNoMemory(sizedForRequest(*stored, request), source.name);
}

} // namespace lamina
