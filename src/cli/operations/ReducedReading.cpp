#include "cli/operations/ReducedReading.h"

#include "imageops/DrawingSurface.h"
#include "imageops/ImageGeometry.h"
#include "platform/image/drawing/Resampling.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/photos/PhotoLoading.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <utility>

namespace lamina {

namespace {

std::uint64_t area(IntSize size)
{
    return static_cast<std::uint64_t>(size.width) * static_cast<std::uint64_t>(size.height);
}

/// What a scaling leaves of a picture, in stored pixels of one that is upright; nothing where there can be no result or
/// the step scales nothing.
std::optional<IntSize> scaledPixels(const OperationStep& step, IntSize whole, double pictureScale)
{
    if (!step.operation->scaledSize)
        return std::nullopt;
    const CGSize points =
        step.operation->scaledSize({whole.width / pictureScale, whole.height / pictureScale}, step.values);
    return wholePixels(points.width * pictureScale, points.height * pictureScale);
}

/// Whether a codec has reduced the picture while it read it. A file whose pixels come out larger than it said has not
/// been.
bool isReduced(IntSize read, IntSize whole)
{
    return read != whole && read.width <= whole.width && read.height <= whole.height;
}

} // namespace

int shortSideFor(const OperationStep& step, IntSize whole, double pictureScale)
{
    const std::optional<IntSize> left = scaledPixels(step, whole, pictureScale);
    if (!left)
        return 0;
    // Twice the pixels: a sample that lies across the edge of two pixels then weighs little.
    const double share = std::numbers::sqrt2 * std::max(static_cast<double>(left->width) / whole.width,
                                                        static_cast<double>(left->height) / whole.height);
    const int shorter = std::min(whole.width, whole.height);
    if (share >= 1)
        return 0;
    // One more, since codecs round up what they leave: of a thin picture that would be much.
    const int needed = static_cast<int>(std::floor(share * shorter)) + 1;
    return needed < shorter ? needed : 0;
}

Result<ReadPicture> readForSteps(const PhotoSource& source, std::optional<IntSize> whole,
                                 std::span<const OperationStep> steps, double pictureScale, DecodeOptions options)
{
    options.shortSide = whole && !steps.empty() ? shortSideFor(steps.front(), *whole, pictureScale) : 0;
    Result<UIImage> picture = loadUpright(source, options);
    if (!picture)
        return picture.error();
    ReadPicture read{UIImage(picture->cgImage(), pictureScale), std::nullopt};
    if (options.shortSide > 0 && isReduced(picture->pixelSize(), *whole))
        read.whole = whole;
    return read;
}

UIImage scaledBy(const OperationStep& step, const ReadPicture& read)
{
    const double scale = read.picture.scale();
    const std::optional<IntSize> target = scaledPixels(step, *read.whole, scale);
    if (!target)
        return {};
    // The operation itself then finds a picture of the size that it would make, and only gives it its form.
    const CGImage fitting = resampled(read.picture.cgImage(), *target, *read.whole);
    return scaleToFillSize(UIImage(fitting, scale), {target->width / scale, target->height / scale});
}

std::size_t memoryForSteps(IntSize whole, std::span<const OperationStep> steps, double pictureScale)
{
    constexpr std::uint64_t kCodec = 6;    // bytes a pixel of the file: coefficients, planes
    constexpr std::uint64_t kPictures = 4; // of each picture that is held
    const int shortSide = steps.empty() ? 0 : shortSideFor(steps.front(), whole, pictureScale);
    // A codec reduces by whole steps: at most to twice the side that was asked for.
    const double share = shortSide > 0 ? std::min(1.0, 2.0 * shortSide / std::min(whole.width, whole.height)) : 1;
    std::uint64_t before = static_cast<std::uint64_t>(static_cast<double>(area(whole)) * share * share);
    std::uint64_t most = 2 * before; // turned upright
    IntSize size = whole;
    for (const OperationStep& step : steps) {
        size = scaledPixels(step, size, pictureScale).value_or(size);
        most = std::max(most, before + 2 * area(size));
        before = area(size);
    }
    return kCodec * area(whole) + kPictures * (most + before); // the last one is encoded
}

} // namespace lamina
