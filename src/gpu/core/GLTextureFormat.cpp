#include "gpu/core/GLTextureFormat.h"

#include "gpu/core/GPUImageContext.h"
#include "platform/image/pixels/PixelKernels.h"

namespace lamina {

BGRASupport bgraSupport()
{
    if (GPUImageContext::deviceSupportsOpenGLESExtension("GL_APPLE_texture_format_BGRA8888"))
        return BGRASupport::Apple;
    if (GPUImageContext::deviceSupportsOpenGLESExtension("GL_EXT_texture_format_BGRA8888"))
        return BGRASupport::Extension;
    return BGRASupport::None;
}

GLTextureFormat uploadFormat(GLenum internalFormat, GLenum format, BGRASupport support)
{
    if (format != GL_BGRA)
        return {internalFormat, format, false};
    switch (support) {
    case BGRASupport::Apple:
        return {internalFormat, GL_BGRA, false};
    case BGRASupport::Extension:
        return {GL_BGRA, GL_BGRA, false};
    case BGRASupport::None:
        break;
    }
    return {internalFormat, GL_RGBA, true};
}

GLTextureFormat renderFormat(const GPUTextureOptions& options)
{
    const bool bgra = options.format == GL_BGRA;
    return {bgra ? GLenum{GL_RGBA} : options.internalFormat, bgra ? GLenum{GL_RGBA} : options.format, false};
}

void swapRedAndBlue(std::span<const std::uint8_t> from, std::uint8_t* to)
{
    kernels::reorder(from.data(), from.size() / 4, {2, 1, 0, 3}, 0, to);
}

} // namespace lamina
