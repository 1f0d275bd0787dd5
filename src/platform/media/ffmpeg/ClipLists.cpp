#include "platform/media/ffmpeg/ClipLists_p.h"

#include <algorithm>
#include <iterator>

namespace lamina {

namespace {

constexpr AVCodecID kCodecs[] = {
    // Pictures
    AV_CODEC_ID_H264, AV_CODEC_ID_HEVC, AV_CODEC_ID_AV1, AV_CODEC_ID_VP8, AV_CODEC_ID_VP9, AV_CODEC_ID_MPEG1VIDEO,
    AV_CODEC_ID_MPEG2VIDEO, AV_CODEC_ID_MPEG4, AV_CODEC_ID_MSMPEG4V2, AV_CODEC_ID_MSMPEG4V3, AV_CODEC_ID_H263,
    AV_CODEC_ID_FLV1, AV_CODEC_ID_WMV1, AV_CODEC_ID_WMV2, AV_CODEC_ID_WMV3, AV_CODEC_ID_VC1, AV_CODEC_ID_THEORA,
    AV_CODEC_ID_MJPEG, AV_CODEC_ID_PNG, AV_CODEC_ID_GIF, AV_CODEC_ID_PRORES, AV_CODEC_ID_DNXHD, AV_CODEC_ID_DVVIDEO,
    AV_CODEC_ID_CFHD, AV_CODEC_ID_QTRLE, AV_CODEC_ID_FFV1, AV_CODEC_ID_HUFFYUV, AV_CODEC_ID_FFVHUFF,
    AV_CODEC_ID_UTVIDEO, AV_CODEC_ID_RAWVIDEO, AV_CODEC_ID_V210,
    // Sound
    AV_CODEC_ID_AAC, AV_CODEC_ID_AAC_LATM, AV_CODEC_ID_MP1, AV_CODEC_ID_MP2, AV_CODEC_ID_MP3, AV_CODEC_ID_AC3,
    AV_CODEC_ID_EAC3, AV_CODEC_ID_DTS, AV_CODEC_ID_OPUS, AV_CODEC_ID_VORBIS, AV_CODEC_ID_FLAC, AV_CODEC_ID_ALAC,
    AV_CODEC_ID_WMAV1, AV_CODEC_ID_WMAV2, AV_CODEC_ID_AMR_NB, AV_CODEC_ID_AMR_WB, AV_CODEC_ID_ADPCM_IMA_QT,
    AV_CODEC_ID_ADPCM_IMA_WAV, AV_CODEC_ID_ADPCM_MS, AV_CODEC_ID_ADPCM_SWF};

std::string namesOfDecoders()
{
    std::string names;
    const auto add = [&names](int id) {
        if (const AVCodec* codec = avcodec_find_decoder(static_cast<AVCodecID>(id)))
            names += (names.empty() ? "" : ",") + std::string(codec->name);
    };
    for (const AVCodecID id : kCodecs)
        add(id);
    for (int id = AV_CODEC_ID_FIRST_AUDIO; id < AV_CODEC_ID_ADPCM_IMA_QT; ++id) // uncompressed samples of all kinds
        add(id);
    return names;
}

} // namespace

const std::string& readCodecs()
{
    static const std::string names = namesOfDecoders();
    return names;
}

bool readsCodec(AVCodecID codec)
{
    return std::ranges::find(kCodecs, codec) != std::end(kCodecs) ||
           (codec >= AV_CODEC_ID_FIRST_AUDIO && codec < AV_CODEC_ID_ADPCM_IMA_QT);
}

} // namespace lamina
