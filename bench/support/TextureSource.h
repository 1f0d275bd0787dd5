#pragma once

#include "gpu/core/GPUImageFramebuffer.h"
#include "gpu/core/GPUImageOutput.h"
#include "support/Measuring.h"

#include <ctime>
#include <memory>

namespace lamina::bench {

inline CGSize sizeOf(IntSize size)
{
    return {static_cast<double>(size.width), static_cast<double>(size.height)};
}

/// Pushes one texture of noise, as often as it is asked. All of it on the queue.
class TextureSource : public GPUImageOutput {
public:
    explicit TextureSource(IntSize size)
        : m_texture(std::make_shared<GPUImageFramebuffer>(sizeOf(size)))
    {
        m_texture->disableReferenceCounting();
        m_texture->bindForReading(TextureReads::Anywhere);
        glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, size.width, size.height, GL_RGBA, GL_UNSIGNED_BYTE,
                        noisePicture(size.width, size.height, CGImageAlphaInfo::Last).bytes().data());
    }

    GPUImageFramebuffer& framebuffer() { return *m_texture; }

    /// As a still, or as a frame of a stream.
    void push(const CMTime& time = kCMTimeIndefinite)
    {
        pushToTargets({.framebuffer = m_texture, .size = m_texture->size(), .time = time});
    }

private:
    std::shared_ptr<GPUImageFramebuffer> m_texture;
};

/// Seconds until GL has done all that the work asks for: drivers that draw on the processor put off everything till
/// then.
double secondsToFinish(const auto& work)
{
    return seconds([&] {
        work();
        glFinish();
    });
}

/// The processor's time for the same, in all threads: other programs don't disturb it. It says nothing of a GPU.
double processorSecondsToFinish(const auto& work)
{
    const std::clock_t start = std::clock();
    work();
    glFinish();
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

} // namespace lamina::bench
