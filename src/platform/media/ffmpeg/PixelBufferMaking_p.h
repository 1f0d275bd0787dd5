#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/base/Result.h"
#include "platform/media/CVPixelBuffer.h"
#include "platform/media/MediaModule_p.h"
#include "platform/media/ffmpeg/FFmpegHandles_p.h"
#include "platform/media/ffmpeg/FrameScaling_p.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace lamina {

/// Makes buffers of one format and size of decoded frames.
class PixelBufferMaker {
public:
    PixelBufferMaker(CVPixelFormat format, IntSize size, TrackRequest::MakeBuffer makeBuffer);

    Result<std::shared_ptr<CVPixelBuffer>> make(Frame frame);

private:
    Result<std::shared_ptr<CVPixelBuffer>> wrap(Frame frame);
    Result<Frame> converted(const AVFrame& frame);
    Outcome fill(CVPixelBuffer& buffer, const AVFrame& frame);

    CVPixelFormat m_format;
    IntSize m_size;
    TrackRequest::MakeBuffer m_makeBuffer;
    FrameScaler m_scaler;
    std::vector<std::uint8_t> m_rows; ///< of a plane that the scaler can't write in place
    BufferPool m_pool;                ///< of frames as a decoder gives them
};

} // namespace lamina
