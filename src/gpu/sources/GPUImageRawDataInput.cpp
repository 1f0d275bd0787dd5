#include "gpu/sources/GPUImageRawDataInput.h"

#include "gpu/core/GPUImageContext.h"
#include "gpu/core/TextureUpload.h"
#include "gpu/core/VideoProcessingQueue.h"
#include "platform/base/Log.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>
#include <string>
#include <utility>

namespace lamina {

namespace {

/// The name of one of GL's values, for errors.
std::string nameOf(GLenum value)
{
    static constexpr auto kNames = std::to_array<std::pair<GLenum, const char*>>({
        {GL_RGBA, "GL_RGBA"},
        {GL_BGRA, "GL_BGRA"},
        {GL_RGB, "GL_RGB"},
        {GL_LUMINANCE_ALPHA, "GL_LUMINANCE_ALPHA"},
        {GL_LUMINANCE, "GL_LUMINANCE"},
        {GL_ALPHA, "GL_ALPHA"},
        {GL_DEPTH_COMPONENT, "GL_DEPTH_COMPONENT"},
        {GL_BYTE, "GL_BYTE"},
        {GL_UNSIGNED_BYTE, "GL_UNSIGNED_BYTE"},
        {GL_UNSIGNED_SHORT, "GL_UNSIGNED_SHORT"},
        {GL_UNSIGNED_SHORT_5_6_5, "GL_UNSIGNED_SHORT_5_6_5"},
        {GL_UNSIGNED_SHORT_4_4_4_4, "GL_UNSIGNED_SHORT_4_4_4_4"},
        {GL_UNSIGNED_SHORT_5_5_5_1, "GL_UNSIGNED_SHORT_5_5_5_1"},
        {GL_FLOAT, "GL_FLOAT"},
        {GL_HALF_FLOAT_OES, "GL_HALF_FLOAT_OES"},
    });
    const auto* const found = std::ranges::find(kNames, value, &std::pair<GLenum, const char*>::first);
    if (found != kNames.end())
        return found->second;
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), "0x%04X", value);
    return text.data();
}

Error refused(std::string cause)
{
    return {"raw data", std::move(cause)};
}

std::string told(IntSize size)
{
    return std::to_string(size.width) + "x" + std::to_string(size.height) + " pixels";
}

/// Whether such bytes can go up.
Outcome check(const UploadPixels& pixels, CGSize size, std::size_t count)
{
    const std::size_t each = bytesPerUploadedPixel(pixels.format, pixels.type);
    if (each == 0)
        return refused("the device takes no pixels of " + nameOf(pixels.format) + " and " + nameOf(pixels.type));
    const double limit = GPUImageContext::maximumTextureSizeForThisDevice();
    if (!(size.width >= 1 && size.height >= 1 && size.width <= limit && size.height <= limit))
        return refused("the device has no textures of this size");
    const std::size_t wanted =
        each * static_cast<std::size_t>(pixels.size.width) * static_cast<std::size_t>(pixels.size.height);
    if (count != wanted) {
        return refused(told(pixels.size) + " of " + nameOf(pixels.format) + " and " + nameOf(pixels.type) + " are " +
                       std::to_string(wanted) + " bytes, not " + std::to_string(count));
    }
    return success();
}

} // namespace

GPUImageRawDataInput::GPUImageRawDataInput(std::span<const std::uint8_t> bytes, CGSize size, GLenum pixelFormat,
                                           GLenum pixelType)
    : m_pixelFormat(pixelFormat)
    , m_pixelType(pixelType)
{
    if (const Outcome uploaded = updateDataFromBytes(bytes, size); !uploaded)
        logError(uploaded.error().message());
}

GPUImageRawDataInput::~GPUImageRawDataInput()
{
    GPUImageOutput::removeAllTargets(); // after a push that is under way
}

CGSize GPUImageRawDataInput::outputImageSize() const
{
    return valueFromVideoProcessingQueue([this] { return m_uploadedImageSize; });
}

Outcome GPUImageRawDataInput::updateDataFromBytes(std::span<const std::uint8_t> bytes, CGSize size)
{
    const UploadPixels pixels{bytes.data(), GPUImageFramebuffer::wholePixels(size), m_pixelFormat, m_pixelType};
    if (Outcome usable = check(pixels, size, bytes.size()); !usable)
        return usable;
    const bool uploaded = valueFromVideoProcessingQueue([&] {
        m_outputFramebuffer.reset();
        m_data.reset(); // where nobody holds the former data any more, these take their place
        m_data = fetchTexture(pixels, outputTextureOptions());
        m_outputFramebuffer = m_data;
        m_uploadedImageSize = m_data ? m_data->size() : CGSize{};
        if (m_data)
            notifyTargetsAboutNewOutputTexture();
        return bool(m_data);
    });
    return uploaded ? success() : Outcome(refused("there is no device, or memory is short"));
}

void GPUImageRawDataInput::processDataForTimestamp(const CMTime& frameTime)
{
    if (!m_dataUpdateSemaphore.tryWait())
        return;
    // Data that are shared live until the push is over; any others wait for the queue in their destructor.
    runAsynchronouslyOnVideoProcessingQueue([this, self = weak_from_this().lock(), frameTime] {
        if (m_data)
            pushToTargets({.framebuffer = m_data, .size = m_uploadedImageSize, .time = frameTime});
        m_dataUpdateSemaphore.signal();
    });
}

} // namespace lamina
