#include "platform/media/ffmpeg/H264Encoder_p.h"

#include "platform/base/Causes.h"

extern "C" {
#include <libavutil/cpu.h>
}

#include <cerrno>
#include <string>

namespace lamina {

namespace {

constexpr const char* kPreset = "veryfast";

/// What x264 writes depends on these numbers, so they are not that of the processors.
constexpr int kThreadsOfAPicture = 2;
constexpr int kPicturesAtOnce = 4;

/// How blocks of one picture count for later ones is computed by x264's code for AVX-512 from memory past the end of a
/// row as well, which nobody has set: now and then a film came out with other bytes. This is all that processors with
/// AVX-512 have besides it.
constexpr const char* kWithoutAVX512 = ":asm=MMX2,SSE2Fast,SSSE3,SSE4.2,LZCNT,AVX,FMA3,BMI2,AVX2";

void describe(AVCodecContext& encoder, const H264Settings& settings)
{
    encoder.width = settings.size.width;
    encoder.height = settings.size.height;
    encoder.sample_aspect_ratio = {1, 1};
    encoder.pix_fmt = settings.kind.format;
    encoder.time_base = settings.unit;
    encoder.framerate = settings.rate;
    encoder.flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    encoder.color_primaries = settings.kind.primaries;
    encoder.color_trc = settings.kind.transfer;
    encoder.colorspace = settings.kind.matrix;
    encoder.color_range = settings.kind.range;
    encoder.chroma_sample_location = settings.kind.chroma;
}

int open(AVCodecContext& encoder, const AVCodec* codec, const H264Settings& settings)
{
    const bool isMovie = settings.use == H264Settings::Use::Movie;
    AVDictionary* options = nullptr;
    av_dict_set(&options, "preset", kPreset, 0);
    av_dict_set(&options, "profile", "high", 0);
    encoder.thread_count = isMovie ? kPicturesAtOnce : kThreadsOfAPicture;
    // Threads that share a frame are done with each sooner, which counts when a film is cancelled.
    std::string parameters = isMovie ? "sliced-threads=0" : "sliced-threads=1:sync-lookahead=0";
    if (!isMovie)
        encoder.max_b_frames = 0;
    if ((av_get_cpu_flags() & AV_CPU_FLAG_AVX512) != 0)
        parameters += kWithoutAVX512;
    av_dict_set(&options, "x264-params", parameters.c_str(), 0);
    av_dict_set(&options, "crf", std::to_string(settings.crf).c_str(), 0);
    if (settings.use == H264Settings::Use::Still)
        av_dict_set(&options, "tune", "stillimage", 0);
    const int error = avcodec_open2(&encoder, codec, &options);
    av_dict_free(&options);
    return error;
}

} // namespace

Result<SharedEncoder> openH264(const H264Settings& settings)
{
    const AVCodec* codec = avcodec_find_encoder_by_name("libx264");
    if (!codec)
        return Error{{}, cause::kNoH264};
    SharedEncoder encoder(avcodec_alloc_context3(codec), FreeFFmpeg());
    if (!encoder)
        return Error{{}, cause::kNoMemory};
    describe(*encoder, settings);
    const int error = open(*encoder, codec, settings);
    if (error < 0)
        return Error{{}, error == AVERROR(ENOMEM) ? cause::kNoMemory : cause::kCantEncode};
    return encoder;
}

IntSize evenSize(IntSize size)
{
    return {size.width + size.width % 2, size.height + size.height % 2};
}

} // namespace lamina
