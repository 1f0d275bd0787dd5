#include "platform/media/Clip.h"

#include "platform/base/CGGeometry.h"
#include "platform/base/Causes.h"
#include "platform/files/FileReading.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/PixelBuffer.h"
#include "platform/media/ClipReading_p.h"
#include "platform/media/MediaModule_p.h"

#include <utility>

namespace lamina {

namespace {

ClipFile clipFile(const OpenedFile& file, const ClipLimits& limits)
{
    return {file.descriptor.get(), limits.memoryLimit, {limits.cancelled, limits.seconds}};
}

Result<ClipFrame> readFrame(const MediaModule& module, const ClipFile& clip, double seconds)
{
    PixelBuffer pixels;
    ClipDetails details;
    IntSize size;
    const auto allocate = [&](IntSize wanted) {
        size = wanted;
        pixels = PixelBuffer::allocate(CGImageLayout::rgba(size.width, size.height, {}).byteCount());
        return pixels.data();
    };
    const Result<double> time = module.frame(clip, seconds, details, allocate);
    if (!time)
        return time.error();
    const CGImageLayout layout = CGImageLayout::rgba(size.width, size.height, CGImageAlphaInfo::NoneSkipLast);
    return ClipFrame{UIImage(CGImage::make(layout, std::move(pixels))), *time, details};
}

} // namespace

Result<ClipDetails> loadClipDetails(const std::string& path, const ClipLimits& limits)
{
    return withClip<ClipDetails>(path, [&](const MediaModule& module, const OpenedFile& file) {
        return module.details(clipFile(file, limits));
    });
}

Result<ClipFrame> loadClipFrame(const std::string& path, const CMTime& time, const ClipLimits& limits)
{
    constexpr double kAfterAll = 1e12;
    const double seconds = time.isNumeric() ? time.seconds() : kAfterAll;
    return withClip<ClipFrame>(path, [&](const MediaModule& module, const OpenedFile& file) {
        return readFrame(module, clipFile(file, limits), seconds);
    });
}

} // namespace lamina
