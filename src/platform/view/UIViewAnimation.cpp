#include "platform/view/UIViewAnimation.h"

#include "platform/base/DispatchQueue.h"
#include "platform/view/PresentationHost.h"
#include "platform/view/UIViewAnimationRun_p.h"

#include <cmath>
#include <utility>
#include <vector>

namespace lamina {

namespace {

using Run = UIViewAnimationRun;

/// The animation whose block is running.
struct Recording {
    UIViewMotion motion;
    std::shared_ptr<Run> run; ///< null: nobody waits for its end
};

Recording* g_recording = nullptr;

double usable(double seconds)
{
    return std::isfinite(seconds) && seconds > 0 ? seconds : 0;
}

UIViewMotion motionOf(double duration, double delay, const UIViewAnimationOptions& options)
{
    const bool moves = PresentationHost::current()->showsMotion();
    return {moves ? usable(duration) : 0, moves ? usable(delay) : 0, options.curve, options.spring};
}

/// Those that were started and are not over, in their order.
std::vector<std::shared_ptr<Run>>& underWay()
{
    static auto* const runs = new std::vector<std::shared_ptr<Run>>;
    return *runs;
}

} // namespace

void animate(double duration, double delay, const UIViewAnimationOptions& options,
             const std::function<void()>& animations, std::function<void(bool finished)> completion)
{
    Recording recording{motionOf(duration, delay, options), nullptr};
    if (completion)
        recording.run = std::make_shared<Run>(std::move(completion));
    if (animations) {
        Recording* const outer = std::exchange(g_recording, &recording);
        animations();
        g_recording = outer;
    }
    // Only now: what this one takes over has been told by then.
    if (recording.run)
        Run::start(recording.run, recording.motion.delay + recording.motion.duration);
}

UIViewAnimationRun::UIViewAnimationRun(std::function<void(bool)> completion)
    : m_completion(std::move(completion))
{
}

void UIViewAnimationRun::start(const std::shared_ptr<UIViewAnimationRun>& run, double seconds)
{
    if (!run->m_completion)
        return;
    underWay().push_back(run);
    run->finishIn(seconds);
}

void UIViewAnimationRun::finishIn(double seconds)
{
    m_timer = DispatchTimer(DispatchQueue::main(), seconds, [this] {
        const auto completion = std::exchange(m_completion, nullptr);
        leave();
        completion(true);
    });
}

void UIViewAnimationRun::interrupt()
{
    if (!m_completion)
        return;
    m_timer.cancel();
    DispatchQueue::main().async([completion = std::exchange(m_completion, nullptr)] { completion(false); });
    leave();
}

/// May destroy this.
void UIViewAnimationRun::leave()
{
    std::erase_if(underWay(), [this](const auto& run) { return run.get() == this; });
}

void UIViewAnimationRun::finishForLostHost()
{
    for (const auto& run : underWay())
        run->finishIn(0);
}

UIViewAnimatable::UIViewAnimatable() = default;

UIViewAnimatable::~UIViewAnimatable()
{
    if (const auto run = m_run.lock())
        run->interrupt();
}

void UIViewAnimatable::set(bool differs)
{
    if (!g_recording && !differs)
        return;
    const std::shared_ptr<Run> run = g_recording ? g_recording->run : nullptr;
    if (const auto former = m_run.lock(); former && former != run)
        former->interrupt();
    m_run = run;
    m_motion = g_recording ? g_recording->motion : UIViewMotion();
}

bool UIViewAnimatable::isRecording()
{
    return g_recording != nullptr;
}

} // namespace lamina
