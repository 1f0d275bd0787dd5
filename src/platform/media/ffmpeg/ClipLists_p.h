#pragma once

#include "platform/media/ffmpeg/FFmpegHandles_p.h"

#include <string>

// Which containers and codings are read: those that cameras, phones, editors and the web have made clips with. The
// others that FFmpeg knows are rare, and seldom looked at by those who seek its faults.

namespace lamina {

/// FFmpeg's names, parted by commas.
inline constexpr const char* kReadContainers =
    "mov,matroska,avi,mpegts,mpeg,mpegvideo,h264,hevc,flv,ogg,asf,ivf,dv,mxf,gif,yuv4mpegpipe,wav,w64,aiff,caf,mp3,"
    "flac,aac,ac3";

/// The names of the decoders, parted by commas.
const std::string& readCodecs();
bool readsCodec(AVCodecID codec);

} // namespace lamina
