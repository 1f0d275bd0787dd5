#pragma once

#include "platform/image/pixels/UIImage.h"

#include <functional>
#include <memory>

namespace lamina {

/// Pictures that take too long for the main thread, made one at a time beside it. Of what is asked for while one is
/// made only the newest counts: it takes the place of what waits. What has begun lands too, in order, and the newest
/// always does: so a slider is followed as fast as the pictures come, and ends with its last value.
///
/// All instances of a lane share one thread. Main thread only, but for the work itself; the main queue doesn't count as
/// idle while something is outstanding.
class LatestWork {
public:
    /// Makes a picture, on the thread for it; empty: it failed. It owns all that it touches.
    using Work = std::function<UIImage()>;
    /// Gets it on the main thread, once. It may call any of the operations below.
    using Landed = std::function<void(const UIImage& picture)>;

    /// Pictures of one lane don't wait for those of another.
    enum class Lane { Exact, Coarse };

    explicit LatestWork(Lane lane = Lane::Exact);
    /// As `forget`; what has begun ends by itself.
    ~LatestWork();
    LatestWork(const LatestWork&) = delete;
    LatestWork& operator=(const LatestWork&) = delete;

    /// Never runs anything before it returns.
    void run(Work work, Landed landed);
    /// Waits for what is outstanding and lands it: nothing is when this returns, what landing asks for included.
    void land();
    /// What is outstanding never lands.
    void forget();
    /// Whether something is outstanding. Within a landing: something else.
    bool isBusy() const;

private:
    struct Job;
    struct State;

    std::shared_ptr<State> m_state;
};

} // namespace lamina
