#include "editors/collage/FilterSteps.h"

#include "gpu/core/GPUImageContext.h"

#include <cstddef>
#include <utility>

namespace lamina {

struct FilterSteps::State {
    std::vector<Step> steps;

    /// Whoever holds the steps keeps them going. Each is submitted behind what waits by then.
    static void run(const std::weak_ptr<State>& weak, std::size_t step)
    {
        GPUImageContext::sharedContextQueue().async([weak, step] {
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
