#include "editors/common/LatestWork.h"

#include "platform/base/DispatchQueue.h"

#include <utility>

namespace lamina {

namespace {

/// Never destroyed: what an editor has left behind ends here, and nobody waits for it.
DispatchQueue& workQueue(LatestWork::Lane lane)
{
    static auto* const exact = new DispatchQueue("lamina.pictures.latest");
    static auto* const coarse = new DispatchQueue("lamina.pictures.coarse");
    return lane == LatestWork::Lane::Exact ? *exact : *coarse;
}

} // namespace

/// `work` and `picture` are the thread's until its block has ended; the rest is the main thread's.
struct LatestWork::Job {
    Work work;
    Landed landed;
    UIImage picture = {};
    MainQueue::ExpectedWork expected = DispatchQueue::main().expectWork();
};

struct LatestWork::State : std::enable_shared_from_this<State> {
    explicit State(Lane of)
        : lane(of)
    {
    }

    const Lane lane;
    std::shared_ptr<Job> begun;
    std::shared_ptr<Job> waiting;

    void begin(std::shared_ptr<Job> job)
    {
        begun = std::move(job);
        workQueue(lane).async([job = begun, weak = weak_from_this()] {
            job->picture = std::exchange(job->work, {})();
            DispatchQueue::main().async([job, weak] {
                const auto state = weak.lock();
                if (state && state->begun == job)
                    state->finish();
            });
        });
    }

    /// The next one is made while this one lands.
    void finish()
    {
        const auto self = shared_from_this(); // landing may end the owner
        const auto job = std::exchange(begun, nullptr);
        if (waiting)
            begin(std::exchange(waiting, nullptr));
        job->landed(job->picture);
    }
};

LatestWork::LatestWork(Lane lane)
    : m_state(std::make_shared<State>(lane))
{
}

LatestWork::~LatestWork()
{
    forget();
}

void LatestWork::run(Work work, Landed landed)
{
    auto job = std::make_shared<Job>(Job{std::move(work), std::move(landed)});
    if (m_state->begun)
        m_state->waiting = std::move(job);
    else
        m_state->begin(std::move(job));
}

void LatestWork::land()
{
    const auto state = m_state;
    while (state->begun) {
        workQueue(state->lane).sync([] {});
        state->finish();
    }
}

void LatestWork::forget()
{
    m_state->begun.reset();
    m_state->waiting.reset();
}

bool LatestWork::isBusy() const
{
    return m_state->begun != nullptr;
}

} // namespace lamina
