#include "editors/collage/FilterSteps.h"

#include "gpu/core/GPUImageContext.h"
#include "platform/base/DispatchQueue.h"

#include <cstddef>
#include <utility>

namespace lamina {

struct FilterSteps::State {
    std::vector<Step> steps;

    /// Whoever holds the steps keeps them going. Each is submitted behind what waits by then. The main queue counts as
    /// busy meanwhile: who leaves the process waits for the driver, which may be compiling.
    static void run(const std::weak_ptr<State>& weak, std::size_t step)
    {
        GPUImageContext::sharedContextQueue().async([weak, step, expected = DispatchQueue::main().expectWork()] {
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
