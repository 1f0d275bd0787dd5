#pragma once

#include "gpu/core/FilterProgram.h"
#include "gpu/core/FramebufferHold.h"
#include "gpu/core/GPUImageFilter.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/CMTime.h"

#include <deque>

namespace lamina {

/// Hands each frame on `bufferSize` frames later, undrawn. While it fills, the frame in hand is handed on. It forgets
/// the frames of a source that is removed.
class GPUImageBuffer : public GPUImageFilter {
public:
    GPUImageBuffer() = default;

    unsigned bufferSize() const { return m_bufferSize; }
    /// Frames, 1 at first; 0 is ignored. Shrinking drops the oldest. From any thread.
    void setBufferSize(unsigned frames);

    void setInputSize(CGSize size, int textureIndex) override;
    void newFrameReadyAtTime(const CMTime& frameTime, int textureIndex) override;
    void renderToTextureWithVertices(const QuadCoordinates&, const QuadCoordinates&) override {}

private:
    std::deque<FramebufferHold> m_bufferedFramebuffers;
    unsigned m_bufferSize = 1;
};

} // namespace lamina
