#include "NoThreads.h"
#include "platform/base/Clock.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/DispatchTimer.h"
#include "platform/base/WorkerPool.h"

#include <cstdlib>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <unistd.h>
#include <vector>

namespace lamina {
namespace {

using Told = std::vector<std::string>;

/// Two queues that hand each other work, as those of GL contexts do.
void workOnTwoQueues(Told& told)
{
    DispatchQueue a("a");
    DispatchQueue b("b");
    a.async([&] {
        a.async([&] { told.emplace_back("later"); });
        b.async([&] {
            told.emplace_back(b.isCurrent() ? "b" : "elsewhere");
            a.sync([&] { told.emplace_back("back in a"); });
        });
        told.emplace_back(a.isCurrent() ? "a" : "elsewhere");
    });
    told.emplace_back(a.sync([&] { return a.isCurrent() ? "sync" : "elsewhere"; }));
    a.async([] { throw 7; });
    told.emplace_back(a.isCurrent() ? "still" : "over");
}

/// A queue that goes with a block of its own.
void letGoFromInside(Told& told)
{
    auto queue = std::make_unique<DispatchQueue>("c");
    queue->async([&] {
        queue->async([&] { told.emplace_back("last"); });
        queue.reset();
        told.emplace_back("gone");
    });
}

void waitForTimers(Told& told)
{
    DispatchQueue queue("d");
    DispatchQueue::main().after(0.03, [&] { told.emplace_back("main's timer"); });
    queue.after(0.01, [&] {
        told.emplace_back("timer");
        queue.after(0, [&] { told.emplace_back("at once"); });
    });
    DispatchQueue::main().runUntilIdle(5);
}

/// A queue that goes while the block of its timer is queued: the clock is at that of another one, due at the same time.
void letGoWithATimerDue(Told& told)
{
    const auto clock = std::make_shared<ManualClock>();
    Clock::setShared(clock);
    DispatchQueue queue("e");
    auto other = std::make_unique<DispatchQueue>("f");
    queue.after(1, [&] {
        other.reset();
        told.emplace_back("gone");
    });
    other->after(1, [&] { told.emplace_back("due"); });
    clock->advance(1);
}

/// Whoever pumps the main queue is told that there are timers to be looked for.
void wakeWhoHasToLook(Told& told)
{
    DispatchQueue::main().setWakeHandler([&] { told.emplace_back("awake"); });
    DispatchQueue queue("g");
    queue.after(1e6, [] {});
    DispatchQueue::main().setWakeHandler({});
}

void divideRows(Told& told)
{
    int sum = 0;
    WorkerPool::shared().parallelFor(0, 100, 1, [&](int first, int last) { sum += last - first; });
    told.push_back(std::to_string(sum));
}

TEST(NoThreads, TheWorkIsDoneByWhoHandsItOver)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root may become a user who has no thread left";
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // a process that has no clock's thread from another test
    const struct {
        void (*work)(Told& told);
        Told expected;
    } cases[] = {
        {workOnTwoQueues, {"b", "back in a", "a", "later", "sync", "over"}},
        {letGoFromInside, {"gone", "last"}},
        {waitForTimers, {"timer", "at once", "main's timer"}},
        {letGoWithATimerDue, {"due", "gone"}},
        {wakeWhoHasToLook, {"awake"}},
        {divideRows, {"100"}},
    };
    for (const auto& [work, expected] : cases) {
        const auto doAlone = [work = work, &expected = expected] {
            ::alarm(20);
            if (!test::takeThreadsAway())
                ::_exit(2);
            Told told;
            work(told);
            EXPECT_EQ(told, expected);
            ::_exit(testing::Test::HasFailure() ? 1 : 0);
        };
        EXPECT_EXIT(doAlone(), testing::ExitedWithCode(0), "");
    }
}

} // namespace
} // namespace lamina
