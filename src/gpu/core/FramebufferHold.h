#pragma once

#include "gpu/core/GPUImageFramebuffer.h"

#include <memory>

namespace lamina {

/// A framebuffer with the one count that its holder has on it, given back exactly once. A framebuffer whose users were
/// not counted when it was taken is held without a count, whatever becomes of it later: a still picture's texture goes
/// back to the pool at the picture's end.
///
/// On the video processing queue; only destruction may happen elsewhere and leaves the count to the queue.
class FramebufferHold {
public:
    FramebufferHold() = default;
    ~FramebufferHold();
    FramebufferHold(FramebufferHold&& other) noexcept;
    FramebufferHold& operator=(FramebufferHold&& other) noexcept;

    /// Takes over a count that the caller has, as after a fetch. Gives the former framebuffer's back.
    FramebufferHold& operator=(std::shared_ptr<GPUImageFramebuffer> withItsCount);
    /// Takes a count of its own. Gives the former framebuffer's back.
    void take(std::shared_ptr<GPUImageFramebuffer> framebuffer);

    /// Gives the count back and, if there was one, lets go of the framebuffer: the next to fetch it may be this very
    /// holder for its output, and nothing may be drawn from a texture into itself.
    void giveBack();
    /// Gives the count back and lets go in any case.
    void reset();
    /// Lets go; the count is the caller's.
    std::shared_ptr<GPUImageFramebuffer> release();

    /// Whether a count is held.
    bool isCounted() const { return m_isCounted; }
    operator const std::shared_ptr<GPUImageFramebuffer>&() const { return m_framebuffer; }
    explicit operator bool() const { return m_framebuffer != nullptr; }
    GPUImageFramebuffer* operator->() const { return m_framebuffer.get(); }
    GPUImageFramebuffer& operator*() const { return *m_framebuffer; }

private:
    std::shared_ptr<GPUImageFramebuffer> m_framebuffer;
    bool m_isCounted = false;
};

} // namespace lamina
