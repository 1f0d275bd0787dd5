#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/media/CVPixelBuffer.h"

#include <memory>

namespace lamina {

/// Memory for the frames of one device, which is used again once everybody has let go of a frame: what a camera takes
/// doesn't grow with the time that it runs. From any thread; frames may outlive it.
class FramePool {
public:
    FramePool();
    /// A frame whose rows have no padding (a row of chroma is one of Cb Cr for each two pixels) and hold anything. Null
    /// when memory is short.
    std::shared_ptr<CVPixelBuffer> make(IntSize size, CVPixelFormat format);

private:
    struct Idle;
    std::shared_ptr<Idle> m_idle;
};

} // namespace lamina
