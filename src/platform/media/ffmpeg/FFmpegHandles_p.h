#pragma once

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/audio_fifo.h>
#include <libavutil/buffer.h>
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
    void operator()(AVBufferPool* pool) const { av_buffer_pool_uninit(&pool); }
    void operator()(AVAudioFifo* samples) const { av_audio_fifo_free(samples); }
};
using CodecContext = std::unique_ptr<AVCodecContext, FreeFFmpeg>;
using Frame = std::unique_ptr<AVFrame, FreeFFmpeg>;
using Packet = std::unique_ptr<AVPacket, FreeFFmpeg>;
using BufferPool = std::unique_ptr<AVBufferPool, FreeFFmpeg>;
using Scaler = std::unique_ptr<SwsContext, FreeFFmpeg>;
/// Of an encoder that another thread may still be using when its owner has gone.
using SharedEncoder = std::shared_ptr<AVCodecContext>;
using Resampler = std::unique_ptr<SwrContext, FreeFFmpeg>;
using SampleQueue = std::unique_ptr<AVAudioFifo, FreeFFmpeg>;

/// What `CVPixelBuffer::owner` of an `AsDecoded` buffer points to: 4:2:0 of 8 bits, in the buffer's size, its colours
/// tagged as the clip tags them.
using SharedFrame = std::shared_ptr<AVFrame>;
/// What `CMSampleBuffer::packet` points to: its `time_base` is set, its times count as those of the sample.
using SharedPacket = std::shared_ptr<AVPacket>;

} // namespace lamina
