#pragma once

#include "gpu/core/FramebufferKind.h"
#include "gpu/core/GPUImageFramebuffer.h"
#include "gpu/core/GPUTextureOptions.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/NotificationCenter.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace lamina {

/// The pool of framebuffers, by exact size and texture options, so that no GL object is made per frame. Idle ones are
/// kept up to a bound on their bytes; beyond it the longest unused go first, and at a memory warning all of them. All
/// of it runs on the video processing queue; the operations hop there themselves.
class GPUImageFramebufferCache {
public:
    /// More idle bytes than this are not kept.
    static constexpr std::size_t kIdleByteLimit = std::size_t{256} << 20;

    GPUImageFramebufferCache();
    ~GPUImageFramebufferCache();
    GPUImageFramebufferCache(const GPUImageFramebufferCache&) = delete;
    GPUImageFramebufferCache& operator=(const GPUImageFramebufferCache&) = delete;

    /// What framebuffers of one kind have in common, as a text: sides to a tenth of a pixel, the options, "-NOFB" for
    /// textures only. The pool itself goes by `FramebufferKind`, which is equal where this is.
    static std::string hashForSize(CGSize size, const GPUTextureOptions& options, bool onlyTexture);

    /// An idle one of the kind, the last returned first, or a new one. It comes with a count of 1, the caller's.
    std::shared_ptr<GPUImageFramebuffer> fetchFramebufferForSize(CGSize size, const GPUTextureOptions& options,
                                                                 bool onlyTexture);
    /// With the default options.
    std::shared_ptr<GPUImageFramebuffer> fetchFramebufferForSize(CGSize size, bool onlyTexture);

    /// Called by the last `unlock`; on the queue it has happened when this returns.
    void returnFramebufferToCache(const std::shared_ptr<GPUImageFramebuffer>& framebuffer);

    /// Drops all idle ones. Those in use return to an empty pool later.
    void purgeAllUnassignedFramebuffers();

    /// Keeps a framebuffer alive while a picture reads its pixels.
    void addFramebufferToActiveImageCaptureList(const std::shared_ptr<GPUImageFramebuffer>& framebuffer);
    /// Lets it go again.
    void removeFramebufferFromActiveImageCaptureList(const std::shared_ptr<GPUImageFramebuffer>& framebuffer);

    /// For those who watch the pool: how many wait in it.
    std::size_t idleCount();
    /// For those who watch: made but not yet deleted framebuffers of all pools, in use and idle. From any thread.
    static std::size_t livingCount();

private:
    struct Idle {
        std::shared_ptr<GPUImageFramebuffer> framebuffer;
        std::uint64_t returned; ///< running number of the return
        std::size_t bytes;      ///< that it holds
    };
    /// Those of one kind, in the order of their return.
    using IdleOfKind = std::vector<Idle>;

    std::shared_ptr<GPUImageFramebuffer> takeIdle(const FramebufferKind& kind);
    void put(std::shared_ptr<GPUImageFramebuffer> framebuffer);
    void dropOldest();

    std::unordered_map<FramebufferKind, IdleOfKind> m_idle;
    std::size_t m_idleCount = 0;
    std::vector<std::shared_ptr<GPUImageFramebuffer>> m_activeImageCaptureList;
    std::size_t m_idleBytes = 0;
    std::uint64_t m_returns = 0;
    NotificationObserver m_memoryWarningObserver;
};

} // namespace lamina
