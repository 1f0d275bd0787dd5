#include "gpu/sources/GPUImageTextureOutput.h"

#include "gpu/core/GPUImageContext.h"
#include "gpu/core/GPUImageFramebuffer.h"
#include "gpu/core/VideoProcessingQueue.h"

#include <utility>

namespace lamina {

void GPUImageTextureOutput::doneWithTexture()
{
    runSynchronouslyOnVideoProcessingQueue([this] { setInputFramebuffer(nullptr, 0); });
}

void GPUImageTextureOutput::setDelegate(const std::shared_ptr<GPUImageTextureOutputDelegate>& delegate)
{
    runSynchronouslyOnVideoProcessingQueue([&] { m_delegate = delegate; });
}

std::shared_ptr<GPUImageTextureOutputDelegate> GPUImageTextureOutput::delegate() const
{
    return valueFromVideoProcessingQueue([this] { return m_delegate.lock(); });
}

void GPUImageTextureOutput::newFrameReadyAtTime(const CMTime&, int)
{
    const auto delegate = m_delegate.lock();
    if (!delegate || !m_firstInputFramebuffer || !GPUImageContext::useImageProcessingContext())
        return;
    m_firstInputFramebuffer->bindForReading(TextureReads::Anywhere); // a draw before may have asked for nearest texels
    delegate->newFrameReadyFromTextureOutput(*this);
}

void GPUImageTextureOutput::setInputFramebuffer(std::shared_ptr<GPUImageFramebuffer> framebuffer, int)
{
    m_texture = framebuffer ? framebuffer->texture() : 0;
    m_textureSize = framebuffer ? framebuffer->size() : CGSize{};
    m_firstInputFramebuffer.take(std::move(framebuffer));
}

/// What a source that is removed has counted stays readable; an uncounted texture may end with it.
void GPUImageTextureOutput::setInputSize(CGSize size, int)
{
    if (size == CGSize{} && !m_firstInputFramebuffer.isCounted())
        setInputFramebuffer(nullptr, 0);
}

} // namespace lamina
