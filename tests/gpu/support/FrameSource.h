#pragma once

#include "TestPictures.h"
#include "gpu/core/GPUImageOutput.h"
#include "gpu/core/GPUImageRotationMode.h"
#include "gpu/core/PictureTexture.h"

#include <cstddef>
#include <memory>

namespace lamina::test {

/// A stream of frames out of the pool, as a camera or a movie gives them. Each push has reached all targets when it
/// returns.
class FrameSource : public GPUImageOutput {
public:
    /// One colour.
    void push(IntSize size, Rgba color, const CMTime& time);
    /// The pixels of a picture of R G B A bytes.
    void push(const CGImage& picture, const CMTime& time);
    /// As above, with a framebuffer that is kept and never counted: what a still picture does.
    void pushStill(const CGImage& picture);

    void setRotation(GPUImageRotationMode rotation) { m_rotation = rotation; }
    /// As if its frames had one channel.
    void setMonochrome(bool monochrome) { m_isMonochrome = monochrome; }

private:
    GPUImageRotationMode m_rotation = kGPUImageNoRotation;
    bool m_isMonochrome = false;
    std::unique_ptr<PictureTexture> m_still;
};

/// The number of framebuffers that wait in the pool once all that has been returned so far is there.
std::size_t idleFramebuffers();
/// Empties the pool.
void emptyPool();

inline CMTime second(int number)
{
    return CMTime::make(number, 1);
}

} // namespace lamina::test
