#include "platform/image/codecs/CGImageSource.h"

#include "platform/base/Result.h"
#include "platform/image/codecs/ByteSource_p.h"
#include "platform/image/codecs/IncrementalDecoders_p.h"
#include "platform/image/codecs/PictureDecoder_p.h"
#include "platform/image/codecs/PictureFacts_p.h"
#include "platform/image/codecs/PictureFormats.h"
#include "platform/image/pixels/UIImage.h"

#include <algorithm>
#include <cstddef>
#include <new>

namespace lamina {

namespace {

/// Formats that are decoded once they are whole. Their facts are looked for as data come.
class WholeSource final : public CGImageSource {
public:
    explicit WholeSource(const DecodeOptions& options)
        : m_options{.cancelled = options.cancelled, .memoryLimit = options.memoryLimit}
    {
    }

    void updateData(std::span<const std::uint8_t> data, bool isFinal) override
    {
        if (!m_gate.opens(data.size(), isFinal))
            return;
        m_gate.wasNotEnough(data.size());
        if (const auto properties = readImageProperties(*memorySource(data)))
            m_properties = *properties;
        if (!isFinal)
            return;
        if (const Result<UIImage> picture = decodePicture(data, {}, m_options))
            m_image = picture->cgImage();
    }
    std::optional<CGImageProperties> propertiesAtIndex() const override { return m_properties; }
    CGImage imageAtIndex() override { return m_image; }

private:
    const DecodeOptions m_options;
    GrowthGate m_gate;
    std::optional<CGImageProperties> m_properties;
    CGImage m_image;
};

/// Waits for the first bytes, and leaves everything to the source of their format.
class AnySource final : public CGImageSource {
public:
    explicit AnySource(const DecodeOptions& options)
        : m_options(options)
    {
    }

    void updateData(std::span<const std::uint8_t> data, bool isFinal) override
    {
        if (m_hasEnded)
            return;
        m_hasEnded = isFinal;
        try {
            if (!m_source && (isFinal || data.size() >= kHeadSize))
                choose(data.first(std::min(data.size(), kHeadSize)));
            if (m_source)
                m_source->updateData(data, isFinal);
        } catch (const std::bad_alloc&) {
            m_hasEnded = true;
        }
    }
    std::optional<CGImageProperties> propertiesAtIndex() const override
    {
        return m_source ? m_source->propertiesAtIndex() : std::nullopt;
    }
    CGImage imageAtIndex() override
    {
        try {
            return m_source ? m_source->imageAtIndex() : CGImage();
        } catch (const std::bad_alloc&) {
            return {};
        }
    }

private:
    void choose(std::span<const std::uint8_t> head)
    {
        const PictureFormat* format = pictureFormatForHead(head);
        m_hasEnded = m_hasEnded || !format;
        if (!format)
            return;
        const auto make = format->decoder->incremental;
        m_source = make ? make(m_options) : std::make_unique<WholeSource>(m_options);
    }

    const DecodeOptions m_options;
    bool m_hasEnded = false;
    std::unique_ptr<CGImageSource> m_source;
};

} // namespace

std::unique_ptr<CGImageSource> CGImageSource::makeIncremental(const DecodeOptions& options)
{
    return std::make_unique<AnySource>(options);
}

} // namespace lamina
