#pragma once

#include "app/LiveFilters.h"
#include "app/LiveFrames.h"
#include "gpu/core/GPUImageInput.h"
#include "gpu/core/GPUImageOutput.h"
#include "platform/base/CGGeometry.h"
#include "platform/image/pixels/UIImage.h"

#include <array>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace lamina {

/// The graph of the live screen behind its frames: the look, then the effects that are on, then whoever takes the
/// result. What is changed is changed between two frames, and nobody waits for it: the source knows nothing of it.
///
/// Held by std::shared_ptr. From any thread.
class LiveChain : public std::enable_shared_from_this<LiveChain> {
public:
    explicit LiveChain(std::shared_ptr<LiveFrames> frames);
    /// Takes the graph apart.
    ~LiveChain();
    LiveChain(const LiveChain&) = delete;
    LiveChain& operator=(const LiveChain&) = delete;

    /// From the next frame on; of several that follow quickly the last counts. With `again` the last frame goes through
    /// them at once.
    void apply(const LiveFilters& filters, bool again);
    /// Takes the frames as they come from the source.
    void addBefore(std::shared_ptr<GPUImageInput> target);
    /// Takes what comes out.
    void addAfter(std::shared_ptr<GPUImageInput> target);
    /// It gets no more.
    void removeAfter(const std::shared_ptr<GPUImageInput>& target);

    /// The last frame through all filters in its own size, upright; empty where there is none or memory is short. Told
    /// on a thread that is not the main one.
    void takePicture(std::function<void(const UIImage&)> done) const;
    /// The last frame as it came, no larger than `within`; told likewise.
    void takeSource(CGSize within, std::function<void(const UIImage&)> done) const;

private:
    using Stage = std::shared_ptr<GPUImageOutput>;

    void change();
    void link();
    void unlink();
    void setValues();
    bool isLinkedAs(const LiveFilters& filters) const;

    std::shared_ptr<LiveFrames> m_frames;
    std::mutex m_mutex; ///< for what follows
    std::optional<LiveFilters> m_wanted;
    bool m_again = false;

    // On the video processing queue.
    LiveFilters m_filters;
    bool m_linked = false;
    Stage m_look;
    std::array<Stage, kLiveEffectCount> m_effects;
    Stage m_tail;
    std::vector<std::shared_ptr<GPUImageInput>> m_before;
    std::vector<std::shared_ptr<GPUImageInput>> m_after;
};

} // namespace lamina
