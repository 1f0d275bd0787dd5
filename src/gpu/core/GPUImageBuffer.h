#pragma once

#include "gpu/core/FilterProgram.h"
#include "gpu/core/GPUImageFilter.h"
#include "gpu/core/GPUImageFramebuffer.h"
#include "platform/base/CMTime.h"

#include <deque>
#include <memory>

namespace lamina {

/// Hands each frame on `bufferSize` frames later, undrawn. While it fills, the frame in hand is handed on.
class GPUImageBuffer : public GPUImageFilter {
public:
    GPUImageBuffer() = default;
    ~GPUImageBuffer() override;

    unsigned bufferSize() const { return m_bufferSize; }
    /// Frames, 1 at first; 0 is ignored. Shrinking drops the oldest. From any thread.
    void setBufferSize(unsigned frames);

    void newFrameReadyAtTime(const CMTime& frameTime, int textureIndex) override;
    void renderToTextureWithVertices(const QuadCoordinates&, const QuadCoordinates&) override {}

private:
    std::deque<std::shared_ptr<GPUImageFramebuffer>> m_bufferedFramebuffers;
    unsigned m_bufferSize = 1;
};

} // namespace lamina
