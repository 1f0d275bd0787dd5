#include "gpu/filters/analysis/FrameReading.h"

#include "gpu/core/GLErrors.h"
#include "platform/base/CGGeometry.h"
#include "platform/gl/GLHeaders.h"

#include <cstddef>

namespace lamina {

std::span<const std::uint8_t> FrameReading::read(GPUImageFramebuffer& framebuffer)
{
    const IntSize size = framebuffer.pixelSize();
    const std::size_t count = framebuffer.bytesPerRow() * static_cast<std::size_t>(size.height);
    if (m_bytes.size() < count)
        m_bytes.resize(count);
    framebuffer.activateFramebuffer();
    glReadPixels(0, 0, size.width, size.height, GL_RGBA, GL_UNSIGNED_BYTE, m_bytes.data());
    checkDraw("reading a frame");
    return {m_bytes.data(), count};
}

} // namespace lamina
