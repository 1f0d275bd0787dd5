#include "platform/base/Clock.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/DispatchTimer.h"

#include <atomic>
#include <chrono>
#include <gtest/gtest.h>
#include <thread>

namespace lamina {
namespace {

MainQueue& mainQueue()
{
    return DispatchQueue::main();
}

TEST(MainQueue, DrainsWhatBlocksSubmitAndATurnDoesNot)
{
    std::string order;
    const auto submitBoth = [&] {
        mainQueue().async([&] {
            order += 'a';
            mainQueue().async([&] { order += 'c'; });
        });
        mainQueue().async([&] { order += 'b'; });
    };
    submitBoth();
    mainQueue().runTurn();
    EXPECT_EQ(order, "ab");
    submitBoth();
    mainQueue().drain();
    EXPECT_EQ(order, "abcabc");
}

TEST(MainQueue, IsTheMainThreadsEvenOutsideBlocks)
{
    static const char key = 0;
    int value = 0;
    mainQueue().bindToCurrentThread();
    mainQueue().setSpecific(&key, &value);
    EXPECT_TRUE(mainQueue().isCurrent());
    EXPECT_EQ(DispatchQueue::currentSpecific(&key), &value);
    EXPECT_EQ(mainQueue().sync([] { return 3; }), 3);
    std::jthread([] {
        EXPECT_FALSE(mainQueue().isCurrent());
        EXPECT_EQ(DispatchQueue::currentSpecific(&key), nullptr);
    }).join();
    mainQueue().setSpecific(&key, nullptr);
}

TEST(MainQueue, IdleWaitsForAnswersAndTimers)
{
    DispatchQueue worker("worker");
    std::string order;
    worker.async([&, expected = mainQueue().expectWork()] {
        const auto thread = mainQueue().sync([&] {
            order += 's';
            return std::this_thread::get_id();
        });
        EXPECT_NE(thread, std::this_thread::get_id());
        mainQueue().async([&] { mainQueue().after(0.005, [&] { order += 't'; }); });
    });
    EXPECT_TRUE(mainQueue().runUntilIdle(10));
    EXPECT_EQ(order, "st");

    // Work that ends without an answer, and a timer that is taken back elsewhere, end the wait too; both come when the
    // main queue has most likely gone to sleep.
    const auto whenAsleep = [&](DispatchQueue::Block block) {
        worker.async([block = std::move(block)] {
            std::this_thread::sleep_for(std::chrono::milliseconds(3));
            block();
        });
        return mainQueue().runUntilIdle(10);
    };
    EXPECT_TRUE(whenAsleep([expected = mainQueue().expectWork()] {}));
    DispatchTimer timer(mainQueue(), 1000, [] {});
    EXPECT_TRUE(whenAsleep([&] { timer.cancel(); }));
}

TEST(MainQueue, PumpingGivesUpInTime)
{
    const auto expected = mainQueue().expectWork();
    EXPECT_FALSE(mainQueue().runUntilIdle(0.005));
    std::function<void()> endless = [&] { mainQueue().async(endless); };
    endless();
    EXPECT_FALSE(mainQueue().runUntilIdle(0.005));
    endless = [] {};
    mainQueue().drain();

    bool done = false;
    std::jthread other([&] { mainQueue().async([&] { done = true; }); });
    EXPECT_TRUE(mainQueue().runUntil([&] { return done; }, 10));
    EXPECT_FALSE(mainQueue().runUntil([] { return false; }, 0.005));
}

TEST(MainQueue, WakesItsOwnerOncePerPump)
{
    std::atomic<int> wakes{0};
    mainQueue().async([] {});
    mainQueue().setWakeHandler([&] { ++wakes; });
    EXPECT_EQ(wakes, 1) << "work that waited already";
    mainQueue().drain();
    std::jthread([] {
        for (int i = 0; i < 10; ++i)
            mainQueue().async([] {});
    }).join();
    EXPECT_EQ(wakes, 2);
    mainQueue().async([] { mainQueue().async([] {}); });
    mainQueue().runTurn();
    EXPECT_EQ(wakes, 3) << "what a turn leaves behind";
    mainQueue().drain();
    // A timer has to tell the owner as well: nobody pumps until then.
    const auto clock = std::make_shared<ManualClock>();
    Clock::setShared(clock);
    mainQueue().after(1, [] {});
    EXPECT_EQ(wakes, 3);
    clock->advance(1);
    EXPECT_EQ(wakes, 4);
    mainQueue().setWakeHandler({});
    mainQueue().drain();
    Clock::setShared(nullptr);
}

#ifndef NDEBUG
TEST(MainQueueDeathTest, SomeQueuesMayNotWaitForIt)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    DispatchQueue video("video");
    DispatchQueue helper("helper");
    video.forbidWaitingForMain();
    EXPECT_EQ(video.sync([&] { return helper.sync([] { return 1; }); }), 1) << "other queues are no matter";
    EXPECT_DEATH(video.sync([] { mainQueue().sync([] {}); }), "may not wait for the main queue");
    EXPECT_DEATH(video.sync([&] { helper.sync([] { mainQueue().sync([] {}); }); }), "may not wait for the main queue");
    EXPECT_DEATH(std::jthread([] { mainQueue().bindToCurrentThread(); }).join(); mainQueue().drain(), "another thread");
}
#endif

} // namespace
} // namespace lamina
