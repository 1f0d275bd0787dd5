#include "gpu/endpoints/FrameUpload.h"

#include "gpu/core/FramebufferHold.h"
#include "gpu/core/GPUImageContext.h"
#include "gpu/core/TextureUpload.h"
#include "gpu/endpoints/YUVConversion.h"
#include "platform/base/WorkerPool.h"
#include "platform/gl/GLHeaders.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/PixelBuffer.h"
#include "platform/image/pixels/PixelKernels.h"
#include "platform/image/pixels/PixelMoves.h"

#include <cstddef>
#include <cstdint>

namespace lamina {

namespace {

/// The same turn of pixels in our own memory.
PixelMove moveFor(GPUImageRotationMode rotation)
{
    switch (rotation) {
    case kGPUImageNoRotation:
        break;
    case kGPUImageRotateLeft:
        return {1};
    case kGPUImageRotateRight:
        return {3};
    case kGPUImageFlipVertical:
        return {0, false, true};
    case kGPUImageFlipHorizontal:
        return {0, true};
    case kGPUImageRotateRightFlipVertical:
        return {1, true};
    case kGPUImageRotateRightFlipHorizontal:
        return {3, true};
    case kGPUImageRotate180:
        return {2};
    }
    return {};
}

/// Blue, green, red to red, green, blue. `out` may be `in`.
void copyRedFirst(const std::uint8_t* in, std::size_t inStep, IntSize size, std::uint8_t* out)
{
    const auto width = static_cast<std::size_t>(size.width);
    parallelRows(0, size.height, width, [&](int first, int last) {
        for (auto y = static_cast<std::size_t>(first); y < static_cast<std::size_t>(last); ++y)
            kernels::reorder(in + y * inStep, width, {2, 1, 0, 3}, 0, out + 4 * width * y);
    });
}

/// For filters that work on the pixels in our own memory.
void copyRedFirst(const CVPixelBuffer::Plane& pixels, GPUImageRotationMode rotation, std::uint8_t* out)
{
    if (rotation == kGPUImageNoRotation)
        return copyRedFirst(pixels.bytes, pixels.bytesPerRow, pixels.size, out);
    CGImageLayout layout = CGImageLayout::rgba(pixels.size.width, pixels.size.height, CGImageAlphaInfo::NoneSkipLast);
    layout.bytesPerRow = pixels.bytesPerRow;
    const CGImage frame = CGImage::make(layout, PixelBuffer::borrowed(pixels.bytes, layout.byteCount()));
    const bool swaps = swapsWidthAndHeight(rotation);
    const IntSize turned = swaps ? IntSize{pixels.size.height, pixels.size.width} : pixels.size;
    const std::size_t step = std::size_t{4} * static_cast<std::size_t>(turned.width);
    movePixels(frame, moveFor(rotation), 0, out, step);
    copyRedFirst(out, step, turned, out);
}

} // namespace

void FrameUpload::setupForFullRange()
{
    m_isFullYUVRange = true;
    m_preferredConversion = &kColorConversionMatrix601FullRange;
    m_yuvConversion.setup(true);
}

bool FrameUpload::turnsFrames(CVPixelFormat format)
{
    return format != CVPixelFormat::BGRA || GPUImageContext::usesKernels();
}

std::shared_ptr<GPUImageFramebuffer>
FrameUpload::framebufferOf(const CVPixelBuffer& frame, const GPUTextureOptions& options, GPUImageRotationMode rotation)
{
    const CVPixelFormat format = frame.pixelFormat();
    m_isFullYUVRange = format == CVPixelFormat::BiPlanar420FullRange;
    m_preferredConversion = &colorConversionMatrix(frame.matrix(), m_isFullYUVRange);
    if (frame.size().isEmpty() || frame.planes().empty())
        return nullptr;
    if (format != CVPixelFormat::BGRA)
        return converted(frame, options, rotation);
    const CVPixelBuffer::Plane& pixels = frame.planes().front();
    FramebufferHold framebuffer;
    const bool turns = turnsFrames(format);
    framebuffer = GPUImageContext::sharedFramebufferCache().fetchFramebufferForSize(
        turns ? sizeRotatedBy(rotation, sizeOf(frame)) : sizeOf(frame), options, true);
    if (turns) {
        std::uint8_t* const rows = framebuffer->hostPixelsToWrite();
        if (!rows)
            return nullptr;
        copyRedFirst(pixels, rotation, rows);
        return framebuffer.release();
    }
    const bool isThere = uploadTexture(
        *framebuffer,
        {.bytes = pixels.bytes, .size = frame.size(), .format = GL_BGRA, .bytesPerRow = pixels.bytesPerRow});
    return isThere ? framebuffer.release() : nullptr;
}

std::shared_ptr<GPUImageFramebuffer>
FrameUpload::converted(const CVPixelBuffer& frame, const GPUTextureOptions& options, GPUImageRotationMode rotation)
{
    // Both have to change, so that a stream that only grows in one direction keeps what was told at its start.
    if (frame.size().width != m_imageBufferWidth && frame.size().height != m_imageBufferHeight) {
        m_imageBufferWidth = frame.size().width;
        m_imageBufferHeight = frame.size().height;
    }
    m_yuvConversion.setup(m_isFullYUVRange);
    if (!m_yuvConversion.uploadPlanes(frame))
        return nullptr;
    return m_yuvConversion.draw(sizeRotatedBy(rotation, sizeOf(frame)), *m_preferredConversion.load(), options,
                                rotation);
}

} // namespace lamina
