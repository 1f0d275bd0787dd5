#include "platform/photos/AssetPicture.h"

#include "platform/base/Causes.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/drawing/CGContext.h"
#include "platform/image/drawing/UIImageDrawing.h"
#include "platform/photos/PhotoLoading.h"
#include "platform/photos/PhotoSource.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>

namespace lamina {

namespace {

using ResizeMode = PHImageRequestOptionsResizeMode;

/// Pixels; beyond what a picture may have, and small enough to count in.
constexpr double kLargestSide = 1 << 20;

/// Pixels of the longer side: the cells of a grid of photos, on dense displays too.
constexpr double kLargestThumbnail = 640;

/// The target in whole pixels; nothing when all pixels are wanted.
std::optional<CGSize> wholeTarget(const AssetPictureRequest& request)
{
    const auto usable = [](double side) { return std::isfinite(side) && side > 0; };
    const auto [width, height] = request.targetSize;
    if (request.resizeMode == ResizeMode::None || !usable(width) || !usable(height))
        return std::nullopt;
    const auto whole = [](double side) { return std::clamp(std::round(side), 1.0, kLargestSide); };
    return CGSize{whole(width), whole(height)};
}

/// The picture's size when it fits or covers the target. The side that decides is the target's to the last bit, and
/// the other never falls short of a target that is to be covered.
CGSize scaledSize(CGSize picture, CGSize target, PHImageContentMode mode)
{
    const double byWidth = picture.height * target.width / picture.width;
    const double byHeight = picture.width * target.height / picture.height;
    if (mode == PHImageContentMode::AspectFill)
        return byWidth >= target.height ? CGSize{target.width, byWidth}
                                        : CGSize{std::max(byHeight, target.width), target.height};
    return byWidth <= target.height ? CGSize{target.width, byWidth} : CGSize{byHeight, target.height};
}

/// The fewest pixels that the decoder must leave on the shorter side for the target.
int decodedShortSide(const PHAsset& asset, CGSize target, PHImageContentMode mode)
{
    CGSize wanted = target;
    if (asset.pixelWidth > 0 && asset.pixelHeight > 0)
        wanted =
            scaledSize({static_cast<double>(asset.pixelWidth), static_cast<double>(asset.pixelHeight)}, target, mode);
    else // whatever the shape, this covers the target
        wanted.width = wanted.height = std::max(target.width, target.height);
    return static_cast<int>(std::ceil(std::clamp(std::min(wanted.width, wanted.height), 1.0, kLargestSide)));
}

/// The picture drawn anew at `size` pixels.
UIImage redrawn(const UIImage& picture, CGSize size)
{
    if (size == picture.size())
        return picture.upright();
    std::optional<CGContext> context = CGContext::image(size, !picture.cgImage().hasAlpha(), 1);
    if (!context)
        return {};
    drawInRect(picture, *context, {{}, size});
    return context->makeUIImage();
}

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

UIImage sized(const UIImage& picture, CGSize target, const AssetPictureRequest& request)
{
    const CGSize own = picture.size();
    const CGSize scaled = scaledSize(own, target, request.contentMode);
    const bool enlarged = scaled.width > own.width || scaled.height > own.height;
    // A panorama that covers an upright screen can be enlarged beyond all bounds.
    const bool tooLarge = scaled.width * scaled.height * 4 > static_cast<double>(request.memoryLimit);
    if (enlarged && (tooLarge || request.resizeMode == ResizeMode::Fast))
        return picture.upright();
    return redrawn(picture, {std::max(1.0, std::round(scaled.width)), std::max(1.0, std::round(scaled.height))});
}

} // namespace

bool isThumbnail(const AssetPictureRequest& request)
{
    const std::optional<CGSize> target = wholeTarget(request);
    return target && std::max(target->width, target->height) <= kLargestThumbnail;
}

Result<UIImage> loadAssetPicture(const AssetPictureRequest& request, const std::atomic<bool>* cancelled)
{
    const std::string& path = request.asset.path;
    const PhotoSource source{path, nullptr, path};
    DecodeOptions options{.cancelled = cancelled, .memoryLimit = request.memoryLimit};
    const std::optional<CGSize> target = wholeTarget(request);
    if (!target)
        return loadUpright(source, options);
    options.shortSide = decodedShortSide(request.asset, *target, request.contentMode);
    const Result<UIImage> stored = loadWithinMemory(source, options);
    if (!stored)
        return stored;
    if (cancelled && *cancelled)
        return Error{path, cause::kCancelled};
    return madeOrNoMemory(sized(*stored, *target, request), path);
}

} // namespace lamina
