#pragma once

#include "platform/base/Result.h"

#include <atomic>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace lamina {

class NYXProgressiveImageView;

/// What a progressive view and its queue share, and their way to each other. It outlives the view for as long as the
/// queue needs it; what is asked of a view that has gone is dropped.
class ProgressiveState : public std::enable_shared_from_this<ProgressiveState> {
public:
    explicit ProgressiveState(NYXProgressiveImageView& view)
        : m_view(&view)
    {
    }

    /// The view is being destroyed: nobody waits for the main thread any more. Main thread.
    void viewGoes();
    /// Set once the view has gone; looked at by decoders as well.
    const std::atomic<bool>& gone() const { return m_gone; }
    /// Null once it has gone. Main thread.
    NYXProgressiveImageView* view() const { return m_view; }

    /// Runs `body` on the main thread, unless the view has gone by then, and returns when it has run or the view has
    /// gone. `body` asks `view` after each call of a stranger's, which may have destroyed it. An exception that leaves
    /// it is the main queue's to log.
    void onMainAndWait(std::function<void(ProgressiveState& state)> body);

    enum class Phase { Idle, ReadingCache, Downloading };
    std::atomic<Phase> phase{Phase::Idle};
    std::atomic<bool> caching{false};

    std::string url() const;
    void setURL(std::string url);
    std::optional<Error> error() const;
    void setError(std::optional<Error> error);

private:
    NYXProgressiveImageView* m_view;
    std::atomic<bool> m_gone{false};
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    std::string m_url;
    std::optional<Error> m_error;
};

} // namespace lamina
