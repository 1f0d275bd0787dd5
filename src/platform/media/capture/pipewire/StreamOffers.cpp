#include "platform/media/capture/pipewire/StreamOffers_p.h"

#include <algorithm>
#include <cstddef>
#include <spa/buffer/buffer.h>
#include <spa/buffer/meta.h>
#include <spa/param/audio/raw.h>
#include <spa/param/buffers.h>
#include <spa/param/format.h>
#include <spa/param/param.h>
#include <utility>

namespace lamina {

namespace {

/// One that is filled, one on its way, one that is read; the rest is for those who are late.
constexpr int kBuffers = 4;
constexpr int kLeastBuffers = 2;
constexpr int kMostBuffers = 16;
constexpr std::uint32_t kMostRate = 1000;
constexpr IntSize kUsualSize{1280, 720};

spa_rectangle rectangleOf(IntSize size)
{
    return {static_cast<std::uint32_t>(size.width), static_cast<std::uint32_t>(size.height)};
}

} // namespace

StreamOffers::StreamOffers(std::uint32_t likedRate)
    : m_likedRate(likedRate)
{
    spa_pod_builder_init(&m_builder, m_memory.data(), static_cast<std::uint32_t>(m_memory.size()));
}

void StreamOffers::beginFormat(spa_pod_frame& frame, std::uint32_t type, std::uint32_t subtype)
{
    spa_pod_builder_push_object(&m_builder, &frame, SPA_TYPE_OBJECT_Format, SPA_PARAM_EnumFormat);
    spa_pod_builder_prop(&m_builder, SPA_FORMAT_mediaType, 0);
    spa_pod_builder_id(&m_builder, type);
    spa_pod_builder_prop(&m_builder, SPA_FORMAT_mediaSubtype, 0);
    spa_pod_builder_id(&m_builder, subtype);
}

void StreamOffers::end(spa_pod_frame& frame)
{
    m_params.push_back(static_cast<const spa_pod*>(spa_pod_builder_pop(&m_builder, &frame)));
}

void StreamOffers::addVideo(RawEncoding encoding, IntSize size, bool exactSize, std::optional<spa_fraction> rate)
{
    if (const auto format = videoFormatOf(encoding))
        return addPlainVideo({&*format, 1}, size, exactSize, rate);
    spa_pod_frame frame;
    beginFormat(frame, SPA_MEDIA_TYPE_video, SPA_MEDIA_SUBTYPE_mjpg);
    addSizeAndRate(size, exactSize, rate);
    end(frame);
}

void StreamOffers::addAnyVideo(IntSize about)
{
    std::vector<std::uint32_t> formats;
    for (std::size_t i = 0; i < kRawEncodingNames.size(); ++i) {
        if (const auto format = videoFormatOf(static_cast<RawEncoding>(i)))
            formats.push_back(*format);
    }
    addPlainVideo(formats, about, false, std::nullopt);
    addVideo(RawEncoding::MJPG, about, false, std::nullopt);
}

void StreamOffers::addPlainVideo(std::span<const std::uint32_t> formats, IntSize size, bool exactSize,
                                 std::optional<spa_fraction> rate)
{
    spa_pod_frame frame;
    beginFormat(frame, SPA_MEDIA_TYPE_video, SPA_MEDIA_SUBTYPE_raw);
    spa_pod_builder_prop(&m_builder, SPA_FORMAT_VIDEO_format, 0);
    spa_pod_frame choice;
    spa_pod_builder_push_choice(&m_builder, &choice, SPA_CHOICE_Enum, 0);
    spa_pod_builder_id(&m_builder, formats.front());
    for (const std::uint32_t format : formats)
        spa_pod_builder_id(&m_builder, format);
    spa_pod_builder_pop(&m_builder, &choice);
    addSizeAndRate(size, exactSize, rate);
    end(frame);
}

void StreamOffers::addSizeAndRate(IntSize size, bool exactSize, std::optional<spa_fraction> rate)
{
    const spa_rectangle wanted = rectangleOf(isFrameSize(size) ? size : kUsualSize);
    spa_pod_frame choice;
    spa_pod_builder_prop(&m_builder, SPA_FORMAT_VIDEO_size, 0);
    if (exactSize) {
        spa_pod_builder_rectangle(&m_builder, wanted.width, wanted.height);
    } else {
        spa_pod_builder_push_choice(&m_builder, &choice, SPA_CHOICE_Range, 0);
        spa_pod_builder_rectangle(&m_builder, wanted.width, wanted.height);
        spa_pod_builder_rectangle(&m_builder, 1, 1);
        spa_pod_builder_rectangle(&m_builder, kLargestFrameSide, kLargestFrameSide);
        spa_pod_builder_pop(&m_builder, &choice);
    }
    spa_pod_builder_prop(&m_builder, SPA_FORMAT_VIDEO_framerate, 0);
    if (rate) {
        spa_pod_builder_fraction(&m_builder, rate->num, rate->denom);
        return;
    }
    spa_pod_builder_push_choice(&m_builder, &choice, SPA_CHOICE_Range, 0);
    spa_pod_builder_fraction(&m_builder, m_likedRate, 1);
    spa_pod_builder_fraction(&m_builder, 0, 1);
    spa_pod_builder_fraction(&m_builder, kMostRate, 1);
    spa_pod_builder_pop(&m_builder, &choice);
}

void StreamOffers::addSound(int channels)
{
    spa_pod_frame frame;
    beginFormat(frame, SPA_MEDIA_TYPE_audio, SPA_MEDIA_SUBTYPE_raw);
    spa_pod_builder_prop(&m_builder, SPA_FORMAT_AUDIO_format, 0);
    spa_pod_builder_id(&m_builder, SPA_AUDIO_FORMAT_F32);
    if (channels > 0) {
        spa_pod_builder_prop(&m_builder, SPA_FORMAT_AUDIO_channels, 0);
        spa_pod_builder_int(&m_builder, channels);
    }
    end(frame);
}

void StreamOffers::addBuffers()
{
    spa_pod_frame frame;
    spa_pod_frame choice;
    spa_pod_builder_push_object(&m_builder, &frame, SPA_TYPE_OBJECT_ParamBuffers, SPA_PARAM_Buffers);
    spa_pod_builder_prop(&m_builder, SPA_PARAM_BUFFERS_buffers, 0);
    spa_pod_builder_push_choice(&m_builder, &choice, SPA_CHOICE_Range, 0);
    for (const int count : {kBuffers, kLeastBuffers, kMostBuffers})
        spa_pod_builder_int(&m_builder, count);
    spa_pod_builder_pop(&m_builder, &choice);
    // Memory that we can look into. What lies with the GPU is not mapped for us.
    spa_pod_builder_prop(&m_builder, SPA_PARAM_BUFFERS_dataType, 0);
    spa_pod_builder_push_choice(&m_builder, &choice, SPA_CHOICE_Flags, 0);
    spa_pod_builder_int(&m_builder, (1 << SPA_DATA_MemPtr) | (1 << SPA_DATA_MemFd));
    spa_pod_builder_pop(&m_builder, &choice);
    end(frame);
    const std::pair<std::uint32_t, std::size_t> kinds[] = {{SPA_META_Header, sizeof(spa_meta_header)},
                                                           {SPA_META_VideoTransform, sizeof(spa_meta_videotransform)}};
    for (const auto& [kind, size] : kinds) {
        spa_pod_builder_push_object(&m_builder, &frame, SPA_TYPE_OBJECT_ParamMeta, SPA_PARAM_Meta);
        spa_pod_builder_prop(&m_builder, SPA_PARAM_META_type, 0);
        spa_pod_builder_id(&m_builder, kind);
        spa_pod_builder_prop(&m_builder, SPA_PARAM_META_size, 0);
        spa_pod_builder_int(&m_builder, static_cast<int>(size));
        end(frame);
    }
}

} // namespace lamina
