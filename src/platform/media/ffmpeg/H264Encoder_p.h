#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/base/Result.h"
#include "platform/media/ffmpeg/FFmpegHandles_p.h"

namespace lamina {

namespace cause {
inline constexpr const char* kNoH264 = "the FFmpeg that is installed can't write H.264";
inline constexpr const char* kCantEncode = "the video can't be encoded";
} // namespace cause

/// How the samples of a picture are to be understood. The default: BT.709 in video range, chroma over the left columns.
struct PictureKind {
    AVPixelFormat format = AV_PIX_FMT_YUV420P;
    AVColorSpace matrix = AVCOL_SPC_BT709;
    AVColorPrimaries primaries = AVCOL_PRI_BT709;
    AVColorTransferCharacteristic transfer = AVCOL_TRC_BT709;
    AVColorRange range = AVCOL_RANGE_MPEG;
    AVChromaLocation chroma = AVCHROMA_LOC_LEFT;
    bool operator==(const PictureKind&) const = default;
};

struct H264Settings {
    enum class Use {
        Still,  ///< keeps more of a picture's grain
        Export, ///< each picture is done when it was given, so that it can be cancelled soon
        Movie,  ///< the fastest: several pictures are encoded at once
    };
    IntSize size; ///< even
    PictureKind kind;
    AVRational unit{1, 90'000};
    AVRational rate{30, 1}; ///< frames a second, as planned
    int crf = 24;
    Use use = Use::Movie;
};

/// H.264 High by libx264. The same pictures give the same bytes on any number of processors.
Result<SharedEncoder> openH264(const H264Settings& settings);

IntSize evenSize(IntSize size);

} // namespace lamina
