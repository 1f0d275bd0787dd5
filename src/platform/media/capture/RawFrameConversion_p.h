#pragma once

#include "platform/media/CVPixelBuffer.h"
#include "platform/media/capture/FramePool_p.h"
#include "platform/media/capture/RawFrame.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace lamina {

/// Turns the frames of one device into those that the program works with. By one thread at a time.
///
/// Y, Cb and Cr stay what they are but for their levels, and keep their matrix; colours become Y, Cb and Cr by BT.601,
/// with the mean of two by two pixels as chroma. JPEG files are in full range, by BT.601.
class RawFrameConverter {
public:
    /// A frame in one of the formats with planes, its rows tight, tagged with its matrix. Null where it isn't what it
    /// says it is (a row or a plane is short, a JPEG file is damaged), and when memory is short.
    std::shared_ptr<CVPixelBuffer> converted(const RawFrame& frame, CVPixelFormat format);

private:
    struct Rows;

    std::shared_ptr<CVPixelBuffer> fromYCbCr(const RawFrame& frame, CVPixelFormat format);
    std::shared_ptr<CVPixelBuffer> fromColors(const RawFrame& frame, CVPixelFormat format);
    std::shared_ptr<CVPixelBuffer> fromFile(const RawFrame& frame, CVPixelFormat format);

    FramePool m_pool;
    std::vector<std::uint8_t> m_room; ///< for some rows
};

} // namespace lamina
