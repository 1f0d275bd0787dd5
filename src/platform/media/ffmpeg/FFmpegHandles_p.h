#pragma once

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/audio_fifo.h>
#include <libavutil/frame.h>
#include <libswresample/swresample.h>
#include <libswscale/swscale.h>
}

#include <memory>

/// FFmpeg's objects with owners that free them.
namespace lamina {

struct FreeFFmpeg {
    void operator()(AVCodecContext* context) const { avcodec_free_context(&context); }
    void operator()(AVFrame* frame) const { av_frame_free(&frame); }
    void operator()(AVPacket* packet) const { av_packet_free(&packet); }
    void operator()(SwsContext* context) const { sws_freeContext(context); }
    void operator()(SwrContext* context) const { swr_free(&context); }
    void operator()(AVAudioFifo* samples) const { av_audio_fifo_free(samples); }
};
using CodecContext = std::unique_ptr<AVCodecContext, FreeFFmpeg>;
using Frame = std::unique_ptr<AVFrame, FreeFFmpeg>;
using Packet = std::unique_ptr<AVPacket, FreeFFmpeg>;
using Scaler = std::unique_ptr<SwsContext, FreeFFmpeg>;
/// Of an encoder that another thread may still be using when its owner has gone.
using SharedEncoder = std::shared_ptr<AVCodecContext>;
using Resampler = std::unique_ptr<SwrContext, FreeFFmpeg>;
using SampleQueue = std::unique_ptr<AVAudioFifo, FreeFFmpeg>;

} // namespace lamina
