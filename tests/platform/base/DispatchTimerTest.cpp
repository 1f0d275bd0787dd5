#include "platform/base/DispatchTimer.h"
#include "LogCapture.h"
#include "platform/base/Clock.h"

#include <cmath>
#include <gtest/gtest.h>
#include <string>

namespace lamina {
namespace {

class DispatchTimerTest : public testing::Test {
protected:
    DispatchTimerTest() { Clock::setShared(clock); }
    ~DispatchTimerTest() override
    {
        DispatchQueue::main().drain();
        Clock::setShared(nullptr);
        EXPECT_TRUE(log.messages.empty()) << log.messages.front().second;
    }
    DispatchQueue::Block note(char name)
    {
        return [this, name] { fired += name; };
    }
    /// What fired on the main queue in these seconds.
    std::string firedIn(double seconds)
    {
        clock->advance(seconds);
        fired.clear();
        DispatchQueue::main().drain();
        return fired;
    }

    std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>();
    test::LogCapture log;
    MainQueue& main = DispatchQueue::main();
    std::string fired;
};

TEST_F(DispatchTimerTest, FireInTheOrderTheyAreDue)
{
    main.after(3, note('b'));
    main.after(1, note('a'));
    main.after(3, note('c'));
    EXPECT_EQ(firedIn(0.999), "");
    EXPECT_EQ(firedIn(0.001), "a");
    EXPECT_EQ(firedIn(10), "bc");
    main.after(1, note('x'));
    std::string steps;
    for (int i = 0; i < 10; ++i)
        steps += firedIn(0.1); // ten times a tenth is a little less than one
    EXPECT_EQ(steps, "x");
    // What is due at once keeps its place among other blocks.
    main.async(note('1'));
    main.after(0, note('2'));
    main.after(-5, note('3'));
    main.after(std::nan(""), note('4'));
    main.async(note('5'));
    EXPECT_EQ(firedIn(0), "12345");
}

TEST_F(DispatchTimerTest, NeverFireAfterCancelling)
{
    const auto owned = std::make_shared<int>();
    DispatchTimer early(main, 1, [owned] { ADD_FAILURE() << "it was cancelled"; });
    DispatchTimer late(main, 1, note('b'));
    EXPECT_TRUE(early.isPending());
    early.cancel();
    EXPECT_FALSE(early.isPending());
    EXPECT_EQ(owned.use_count(), 1) << "a cancelled block is let go at once";
    main.async([&] { late.cancel(); }); // due by then, and queued behind this block
    EXPECT_EQ(firedIn(2), "");

    DispatchTimer timer(main, 1, note('c'));
    timer = DispatchTimer(main, 2, note('d')); // takes the place, so that c is cancelled
    {
        const DispatchTimer scoped(main, 1, note('e'));
    }
    DispatchTimer moved = std::move(timer);
    EXPECT_FALSE(timer.isPending()); // NOLINT: a moved-from timer is no timer
    EXPECT_EQ(firedIn(5), "d");
    EXPECT_FALSE(moved.isPending());
}

TEST_F(DispatchTimerTest, MayBeReplacedByItsOwnBlock)
{
    DispatchTimer timer;
    std::function<void()> again = [&] {
        fired += 'x';
        timer = DispatchTimer(main, 1, again);
    };
    again();
    EXPECT_EQ(firedIn(1), "x");
    EXPECT_EQ(firedIn(1), "x");
    EXPECT_TRUE(timer.isPending());
}

TEST_F(DispatchTimerTest, FireOnTheirQueueAndEndWithIt)
{
    bool onQueue = false;
    const auto owned = std::make_shared<int>();
    {
        DispatchQueue queue("timed");
        queue.after(1, [&] { onQueue = queue.isCurrent(); });
        queue.after(2, [owned] { ADD_FAILURE() << "its queue is gone"; });
        clock->advance(1);
    }
    EXPECT_TRUE(onQueue);
    EXPECT_EQ(owned.use_count(), 1);
    clock->advance(5);
}

} // namespace
} // namespace lamina
