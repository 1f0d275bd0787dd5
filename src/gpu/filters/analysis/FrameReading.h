#pragma once

#include "gpu/core/GPUImageFramebuffer.h"

#include <cstdint>
#include <span>
#include <vector>

namespace lamina {

/// Pixels of frames in the processor's memory, which is kept from frame to frame and grows with the largest of them.
class FrameReading {
public:
    /// The pixels of what was drawn into the framebuffer: R G B A bytes, the picture's top row first, without gaps.
    /// Good until the next reading. On the queue; waits until all of it is drawn.
    std::span<const std::uint8_t> read(GPUImageFramebuffer& framebuffer);

private:
    std::vector<std::uint8_t> m_bytes;
};

} // namespace lamina
