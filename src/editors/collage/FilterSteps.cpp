#include "editors/collage/FilterSteps.h"

#include "gpu/core/VideoProcessingQueue.h"

#include <cstddef>
#include <utility>

namespace lamina {

struct FilterSteps::State {
    std::vector<Step> steps;

    /// Whoever holds the steps keeps them going.
    static void run(const std::weak_ptr<State>& weak, std::size_t step)
    {
        runAsynchronouslyOnVideoProcessingQueue([weak, step] {
            const auto state = weak.lock();
            if (!state || step >= state->steps.size())
                return;
            std::exchange(state->steps[step], {})();
            run(weak, step + 1);
        });
    }
};

FilterSteps::FilterSteps(std::vector<Step> steps)
    : m_state(std::make_shared<State>(State{std::move(steps)}))
{
    State::run(m_state, 0);
}

} // namespace lamina
