#include "FrameSource.h"

#include "gpu/core/GPUImageContext.h"
#include "gpu/core/GPUImageFramebuffer.h"
#include "gpu/core/GPUTextureOptions.h"
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
    glActiveTexture(GL_TEXTURE1);
    glBindTexture(GL_TEXTURE_2D, framebuffer->texture());
    glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, picture.width(), picture.height(), GL_RGBA, GL_UNSIGNED_BYTE,
                    picture.bytes().data());
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
        m_outputFramebuffer = framebuffer;
        for (const Target& target : targetList()) {
            target.input->setInputRotation(m_rotation, target.textureIndex);
            target.input->setInputSize(framebuffer->size(), target.textureIndex);
            target.input->setInputFramebuffer(framebuffer, target.textureIndex);
        }
        framebuffer->unlock();
        m_outputFramebuffer.reset();
        for (const Target& target : targetList())
            target.input->newFrameReadyAtTime(time, target.textureIndex);
    });
}

void FrameSource::pushStill(const CGImage& picture)
{
    runSynchronouslyOnVideoProcessingQueue([&] {
        m_still = uploaded(picture);
        m_still->disableReferenceCounting();
        for (const Target& target : targetList()) {
            target.input->setInputSize(m_still->size(), target.textureIndex);
            target.input->setInputFramebuffer(m_still, target.textureIndex);
            target.input->newFrameReadyAtTime(kCMTimeIndefinite, target.textureIndex);
        }
    });
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
