#include "platform/base/Clock.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/DispatchTimer.h"

#include <atomic>
#include <chrono>
#include <gtest/gtest.h>
#include <string>
#include <thread>

namespace lamina {
namespace {

TEST(MainQueue, IdleWaitsForAnswersAndTimers)
{
    MainQueue& main = DispatchQueue::main();
    DispatchQueue worker("worker");
    std::string order;
    worker.async([&, expected = main.expectWork()] {
        const auto thread = main.sync([&] {
            order += 's';
            return std::this_thread::get_id();
        });
        EXPECT_NE(thread, std::this_thread::get_id());
        main.async([&] { main.after(0.005, [&] { order += 't'; }); });
    });
    EXPECT_TRUE(main.runUntilIdle(10));
    EXPECT_EQ(order, "st");

    // Work that ends without an answer, and a timer that is taken back elsewhere, end the wait too; both come when the
    // main queue has most likely gone to sleep.
    const auto whenAsleep = [&](DispatchQueue::Block block) {
        worker.async([block = std::move(block)] {
            std::this_thread::sleep_for(std::chrono::milliseconds(3));
            block();
        });
        return main.runUntilIdle(10);
    };
    EXPECT_TRUE(whenAsleep([expected = main.expectWork()] {}));
    DispatchTimer timer(main, 1e12, [] {}); // beyond what the clock can count
    EXPECT_TRUE(whenAsleep([&] { timer.cancel(); }));
}

TEST(MainQueue, PumpingGivesUpInTime)
{
    MainQueue& main = DispatchQueue::main();
    const auto expected = main.expectWork();
    EXPECT_FALSE(main.runUntilIdle(0.005));
    std::function<void()> endless = [&] { main.async(endless); };
    endless();
    EXPECT_FALSE(main.runUntilIdle(0.005));
    endless = [] {};
    main.drain();
    EXPECT_FALSE(main.runUntil([] { return false; }, 0.005));
}

TEST(MainQueue, WakesItsOwnerOncePerPump)
{
    MainQueue& main = DispatchQueue::main();
    std::atomic<int> wakes{0};
    main.async([] {});
    main.setWakeHandler([&] { ++wakes; });
    EXPECT_EQ(wakes, 1) << "work that waited already";
    main.drain();
    std::jthread([&] {
        for (int i = 0; i < 10; ++i)
            main.async([] {});
    }).join();
    EXPECT_EQ(wakes, 2);
    std::string order;
    main.async([&] {
        order += 'a';
        main.async([&] { main.async([&] { order += 'c'; }); });
    });
    main.async([&] { order += 'b'; });
    main.runTurn();
    EXPECT_EQ(order, "ab");
    EXPECT_EQ(wakes, 3) << "what a turn leaves behind";
    main.drain();
    EXPECT_EQ(order, "abc");
    // A timer has to tell the owner as well: nobody pumps until then.
    const auto clock = std::make_shared<ManualClock>();
    Clock::setShared(clock);
    wakes = 0;
    main.after(1, [] {});
    clock->advance(1);
    EXPECT_EQ(wakes, 1);
    main.setWakeHandler({});
    main.drain();
    Clock::setShared(nullptr);
}

#ifndef NDEBUG
TEST(MainQueueDeathTest, SomeQueuesMayNotWaitForIt)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    MainQueue& main = DispatchQueue::main();
    DispatchQueue video("video");
    DispatchQueue helper("helper");
    video.forbidWaitingForMain();
    EXPECT_EQ(video.sync([&] { return helper.sync([] { return 1; }); }), 1) << "other queues are no matter";
    EXPECT_DEATH(video.sync([&] { helper.sync([&] { main.sync([] {}); }); }), "may not wait for the main queue");
    EXPECT_DEATH(std::jthread([&] { main.bindToCurrentThread(); }).join(); main.drain(), "another thread");
}
#endif

} // namespace
} // namespace lamina
