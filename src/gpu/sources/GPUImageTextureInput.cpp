#include "gpu/sources/GPUImageTextureInput.h"

#include "gpu/core/GPUImageFramebuffer.h"
#include "gpu/core/VideoProcessingQueue.h"

#include <memory>

namespace lamina {

GPUImageTextureInput::GPUImageTextureInput(GLuint texture, CGSize textureSize)
    : m_textureSize(textureSize)
{
    m_outputFramebuffer = std::make_shared<GPUImageFramebuffer>(textureSize, texture);
}

GPUImageTextureInput::~GPUImageTextureInput()
{
    GPUImageOutput::removeAllTargets(); // after a push that is under way
}

void GPUImageTextureInput::processTextureWithFrameTime(const CMTime& frameTime)
{
    // An input that is shared lives until the push is over; any other waits for the queue in its destructor.
    runAsynchronouslyOnVideoProcessingQueue([this, self = weak_from_this().lock(), frameTime] {
        pushToTargets({.framebuffer = m_outputFramebuffer, .size = m_textureSize, .time = frameTime});
    });
}

} // namespace lamina
