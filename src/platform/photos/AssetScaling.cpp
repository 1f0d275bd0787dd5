#include "platform/photos/AssetScaling_p.h"

#include "platform/base/UIColor.h"
#include "platform/image/drawing/CGContext.h"
#include "platform/image/drawing/UIImageDrawing.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/photos/PHAsset.h"

#include <algorithm>
#include <cmath>

namespace lamina {

namespace {

using ResizeMode = PHImageRequestOptionsResizeMode;

/// Pixels; beyond what a picture may have, and small enough to count in.
constexpr double kLargestSide = 1 << 20;

CGSize asSize(IntSize size)
{
    return {static_cast<double>(size.width), static_cast<double>(size.height)};
}

} // namespace

std::optional<CGSize> wholeTarget(const AssetPictureRequest& request)
{
    const auto usable = [](double side) { return std::isfinite(side) && side > 0; };
    const auto [width, height] = request.targetSize;
    if (request.resizeMode == ResizeMode::None || !usable(width) || !usable(height))
        return std::nullopt;
    const auto whole = [](double side) { return std::clamp(std::round(side), 1.0, kLargestSide); };
    return CGSize{whole(width), whole(height)};
}

CGSize scaledSize(CGSize picture, CGSize target, PHImageContentMode mode)
{
    const double byWidth = picture.height * target.width / picture.width;
    const double byHeight = picture.width * target.height / picture.height;
    if (mode == PHImageContentMode::AspectFill)
        return byWidth >= target.height ? CGSize{target.width, byWidth}
                                        : CGSize{std::max(byHeight, target.width), target.height};
    return byWidth <= target.height ? CGSize{target.width, byWidth} : CGSize{byHeight, target.height};
}

int decodedShortSide(const AssetPictureRequest& request, CGSize target)
{
    const PHAsset& asset = request.asset;
    CGSize wanted = target;
    if (asset.pixelWidth > 0 && asset.pixelHeight > 0)
        wanted = scaledSize(asSize({asset.pixelWidth, asset.pixelHeight}), target, request.contentMode);
    else // whatever the shape, this covers the target
        wanted.width = wanted.height = std::max(target.width, target.height);
    return static_cast<int>(std::ceil(std::clamp(std::min(wanted.width, wanted.height), 1.0, kLargestSide)));
}

bool isEnoughFor(const AssetPictureRequest& request, IntSize picture)
{
    const std::optional<CGSize> target = wholeTarget(request);
    if (!target || picture.isEmpty())
        return false;
    const CGSize scaled = scaledSize(asSize(picture), *target, request.contentMode);
    return scaled.width <= picture.width && scaled.height <= picture.height;
}

UIImage redrawn(const UIImage& picture, CGSize size, Ground ground)
{
    const bool translucent = picture.cgImage().hasAlpha();
    const bool laid = translucent && ground == Ground::White;
    if (size == picture.size() && !laid)
        return picture.upright();
    std::optional<CGContext> context = CGContext::image(size, !translucent || laid, 1);
    if (!context)
        return {};
    if (laid) {
        context->setFillColor(UIColor::white());
        context->fillRect({{}, size});
    }
    drawInRect(picture, *context, {{}, size});
    return context->makeUIImage();
}

UIImage sizedForRequest(const UIImage& picture, const AssetPictureRequest& request, Ground ground)
{
    const CGSize own = picture.size();
    const std::optional<CGSize> target = wholeTarget(request);
    if (!target)
        return redrawn(picture, own, ground);
    const CGSize scaled = scaledSize(own, *target, request.contentMode);
    const bool enlarged = scaled.width > own.width || scaled.height > own.height;
    // A panorama that covers an upright screen can be enlarged beyond all bounds.
    const bool tooLarge = scaled.width * scaled.height * 4 > static_cast<double>(request.memoryLimit);
    if (enlarged && (tooLarge || request.resizeMode == ResizeMode::Fast))
        return redrawn(picture, own, ground);
    return redrawn(picture, {std::max(1.0, std::round(scaled.width)), std::max(1.0, std::round(scaled.height))},
                   ground);
}

} // namespace lamina
