#include "FrameSource.h"

#include "gpu/core/GPUImageContext.h"
#include "gpu/core/GPUImageFramebuffer.h"
#include "gpu/core/GPUTextureOptions.h"
#include "gpu/core/TextureUpload.h"
#include "platform/base/CMTime.h"
#include "platform/image/pixels/CGImage.h"

namespace lamina::test {

namespace {

/// Bytes as they are, whatever the storage's usual order.
constexpr GPUTextureOptions kRgbaOptions{.format = GL_RGBA};

std::shared_ptr<GPUImageFramebuffer> uploaded(const CGImage& picture)
{
    const CGSize size{static_cast<double>(picture.width()), static_cast<double>(picture.height())};
    auto framebuffer = GPUImageContext::sharedFramebufferCache().fetchFramebufferForSize(size, kRgbaOptions, false);
    uploadTexture(*framebuffer, {picture.bytes().data(), picture.size()});
    return framebuffer;
}

} // namespace

void FrameSource::push(IntSize size, Rgba color, const CMTime& time)
{
    push(solidPicture(size.width, size.height, color), time);
}

void FrameSource::push(const CGImage& picture, const CMTime& time)
{
    runSynchronouslyOnVideoProcessingQueue([&] {
        const auto framebuffer = uploaded(picture);
        pushToTargets({.framebuffer = framebuffer,
                       .size = framebuffer->size(),
                       .time = time,
                       .rotation = m_rotation,
                       .isMonochrome = m_isMonochrome,
                       .leavesOutDisabled = true,
                       .givesUpCount = true});
    });
}

void FrameSource::pushStill(const CGImage& picture)
{
    m_still = std::make_unique<PictureTexture>(picture);
    runSynchronouslyOnVideoProcessingQueue(
        [&] { pushToTargets({.framebuffer = m_still->framebuffer(), .size = m_still->pictureSize()}); });
}

std::size_t idleFramebuffers()
{
    return valueFromVideoProcessingQueue([] { return GPUImageContext::sharedFramebufferCache().idleCount(); });
}

void emptyPool()
{
    runSynchronouslyOnVideoProcessingQueue(
        [] { GPUImageContext::sharedFramebufferCache().purgeAllUnassignedFramebuffers(); });
}

} // namespace lamina::test
