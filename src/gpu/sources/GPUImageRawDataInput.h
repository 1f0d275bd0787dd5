#pragma once

#include "gpu/core/FramebufferHold.h"
#include "gpu/core/GPUImageOutput.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/CMTime.h"
#include "platform/base/DispatchSemaphore.h"
#include "platform/base/Result.h"
#include "platform/gl/GLHeaders.h"

#include <atomic>
#include <cstdint>
#include <span>

namespace lamina {

/// Pixels out of memory as a source.
///
/// The bytes are rows without gaps, the top one first, of a form that OpenGL ES 2.0 takes: GL_RGBA, GL_BGRA, GL_RGB,
/// GL_LUMINANCE_ALPHA, GL_LUMINANCE and GL_ALPHA of GL_UNSIGNED_BYTE; GL_RGB of GL_UNSIGNED_SHORT_5_6_5; GL_RGBA of
/// GL_UNSIGNED_SHORT_4_4_4_4 and GL_UNSIGNED_SHORT_5_5_5_1. They go up as they are: targets see their values, a
/// luminance as grey.
///
/// Uploads wait for the video processing queue and copy the bytes; what targets still hold of earlier data stays as it
/// was. Pushes run on the queue, without waiting; one at a time is on its way, and further ones are dropped. From any
/// thread.
class GPUImageRawDataInput : public GPUImageOutput {
public:
    /// `size` in whole pixels. Bytes that are refused are logged, and nothing is pushed until others have been taken.
    explicit GPUImageRawDataInput(std::span<const std::uint8_t> bytes, CGSize size, GLenum pixelFormat = GL_BGRA,
                                  GLenum pixelType = GL_UNSIGNED_BYTE);
    ~GPUImageRawDataInput() override;

    /// Other data, perhaps of another size, for the pushes to come. Targets are handed them at once. The error names
    /// what is refused, which changes nothing: a form, a size, a number of bytes that isn't the size's. Where there is
    /// no device, or memory is short, nothing is left to be pushed.
    Outcome updateDataFromBytes(std::span<const std::uint8_t> bytes, CGSize size);
    /// The same in the present size.
    Outcome uploadBytes(std::span<const std::uint8_t> bytes) { return updateDataFromBytes(bytes, outputImageSize()); }

    /// Pushes the data as a frame of an invalid time; at once when called on the queue.
    void processData() { processDataForTimestamp(kCMTimeInvalid); }
    /// The same with a time. The data stay for any number of pushes.
    void processDataForTimestamp(const CMTime& frameTime);

    /// In pixels; the zero size while no bytes have been taken.
    CGSize outputImageSize() const;
    /// The form of the bytes; in force from the next upload.
    GLenum pixelFormat() const { return m_pixelFormat; }
    void setPixelFormat(GLenum format) { m_pixelFormat = format; }
    GLenum pixelType() const { return m_pixelType; }
    void setPixelType(GLenum type) { m_pixelType = type; }

private:
    CGSize m_uploadedImageSize; ///< touched on the queue, as the framebuffer is
    FramebufferHold m_data;
    std::atomic<GLenum> m_pixelFormat;
    std::atomic<GLenum> m_pixelType;
    DispatchSemaphore m_dataUpdateSemaphore{1};
};

} // namespace lamina
