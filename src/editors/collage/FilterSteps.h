#pragma once

#include <functional>
#include <memory>
#include <vector>

namespace lamina {

/// Steps of GL work that nobody waits for, in their order, on the video processing queue: what others submit has its
/// turn between any two. The rest is left undone when this goes. Main thread, but for the steps; they own all that they
/// touch.
class FilterSteps {
public:
    using Step = std::function<void()>;

    /// None.
    FilterSteps() = default;
    /// Begins at once.
    explicit FilterSteps(std::vector<Step> steps);

private:
    struct State;

    std::shared_ptr<State> m_state;
};

} // namespace lamina
