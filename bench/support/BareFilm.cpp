#include "support/BareFilm.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavutil/opt.h>
#include <libswscale/swscale.h>
}

#include <cstdint>

namespace lamina::bench {

struct BareFilm::Picture {
    AVFrame* frame = av_frame_alloc();
    ~Picture() { av_frame_free(&frame); }
};

BareFilm::BareFilm(const CGImage& picture)
    : m_picture(std::make_unique<Picture>())
{
    AVFrame* frame = m_picture->frame;
    frame->format = AV_PIX_FMT_YUV420P;
    frame->width = picture.width() + picture.width() % 2;
    frame->height = picture.height() + picture.height() % 2;
    av_frame_get_buffer(frame, 0);
    SwsContext* scaler = sws_getContext(picture.width(), picture.height(), AV_PIX_FMT_RGB0, frame->width, frame->height,
                                        AV_PIX_FMT_YUV420P, SWS_POINT, nullptr, nullptr, nullptr);
    const std::uint8_t* rows[4] = {picture.row(0), nullptr, nullptr, nullptr};
    const int strides[4] = {static_cast<int>(picture.bytesPerRow()), 0, 0, 0};
    sws_scale(scaler, rows, strides, 0, picture.height(), frame->data, frame->linesize);
    sws_freeContext(scaler);
}

BareFilm::~BareFilm() = default;

namespace {

AVCodecContext* openEncoder(const AVFrame& frame, int crf)
{
    const AVCodec* codec = avcodec_find_encoder_by_name("libx264");
    AVCodecContext* encoder = codec ? avcodec_alloc_context3(codec) : nullptr;
    if (!encoder)
        return nullptr;
    encoder->width = frame.width;
    encoder->height = frame.height;
    encoder->pix_fmt = AV_PIX_FMT_YUV420P;
    encoder->time_base = {1, 30};
    encoder->framerate = {30, 1};
    encoder->max_b_frames = 0;
    encoder->thread_count = 2;
    av_opt_set(encoder->priv_data, "preset", "veryfast", 0);
    av_opt_set(encoder->priv_data, "profile", "high", 0);
    av_opt_set(encoder->priv_data, "tune", "stillimage", 0);
    av_opt_set(encoder->priv_data, "x264-params", "sliced-threads=1", 0);
    av_opt_set_double(encoder->priv_data, "crf", crf, 0);
    if (avcodec_open2(encoder, codec, nullptr) < 0)
        avcodec_free_context(&encoder);
    return encoder;
}

long takePackets(AVCodecContext* encoder, AVPacket* packet)
{
    long bytes = 0;
    while (avcodec_receive_packet(encoder, packet) >= 0) {
        bytes += packet->size;
        av_packet_unref(packet);
    }
    return bytes;
}

} // namespace

long BareFilm::encode(int frames, int crf) const
{
    AVCodecContext* encoder = openEncoder(*m_picture->frame, crf);
    if (!encoder)
        return 0;
    AVPacket* packet = av_packet_alloc();
    long bytes = 0;
    for (int i = 0; i <= frames; ++i) {
        m_picture->frame->pts = i;
        avcodec_send_frame(encoder, i < frames ? m_picture->frame : nullptr);
        bytes += takePackets(encoder, packet);
    }
    av_packet_free(&packet);
    avcodec_free_context(&encoder);
    return bytes;
}

} // namespace lamina::bench
