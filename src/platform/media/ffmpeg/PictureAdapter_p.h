#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/base/Result.h"
#include "platform/media/CVPixelBuffer.h"
#include "platform/media/ffmpeg/FFmpegHandles_p.h"
#include "platform/media/ffmpeg/H264Encoder_p.h"

#include <memory>

namespace lamina {

/// The kind in which such pixels go to an encoder with the least work: as they are where it takes them.
PictureKind encodedKind(const CVPixelBuffer& pixels);

/// Makes frames of one kind and size of whatever comes. Those that fit are not touched.
class PictureAdapter {
public:
    /// `size`: before it is made even.
    PictureAdapter(const PictureKind& kind, IntSize size)
        : m_kind(kind)
        , m_size(size)
    {
    }

    /// The frame, without a time; it may be the same again next time, changed.
    Result<Frame> adapt(const std::shared_ptr<CVPixelBuffer>& pixels);

private:
    Outcome prepareFrame();
    Outcome prepareScaler(const AVFrame& source);
    Outcome fill(const AVFrame& source);
    void copyPlanes(const AVFrame& source);
    void repeatLast();

    PictureKind m_kind;
    IntSize m_size;
    Frame m_frame;
    Scaler m_scaler;
    PictureKind m_scaledKind;
    IntSize m_scaledSize;
};

} // namespace lamina
