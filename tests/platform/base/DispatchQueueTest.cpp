#include "platform/base/DispatchQueue.h"
#include "LogCapture.h"
#include "platform/base/DispatchSemaphore.h"

#include <atomic>
#include <cstddef>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdexcept>
#include <thread>
#include <vector>

namespace lamina {
namespace {

using testing::HasSubstr;

TEST(DispatchQueue, KeepsEachSubmittersOrderOnOneThread)
{
    constexpr int kThreads = 8;
    constexpr int kBlocks = 500;
    DispatchQueue queue("order");
    std::vector<std::vector<int>> seen(kThreads); // touched by the queue alone
    std::vector<std::thread::id> ids;
    {
        std::vector<std::jthread> threads;
        for (int t = 0; t < kThreads; ++t) {
            threads.emplace_back([&, t] {
                for (int i = 0; i < kBlocks; ++i) {
                    const auto block = [&, t, i] {
                        seen[static_cast<std::size_t>(t)].push_back(i);
                        ids.push_back(std::this_thread::get_id());
                    };
                    if (i % 50 == 49)
                        queue.sync(block);
                    else
                        queue.async(block);
                }
            });
        }
    }
    queue.sync([] {});
    std::vector<int> wanted(kBlocks);
    for (int i = 0; i < kBlocks; ++i)
        wanted[static_cast<std::size_t>(i)] = i;
    EXPECT_THAT(seen, testing::Each(wanted));
    EXPECT_EQ(ids.size(), std::size_t{kThreads * kBlocks});
    EXPECT_THAT(ids, testing::Each(ids.front()));
    EXPECT_NE(ids.front(), std::this_thread::get_id());
}

TEST(DispatchQueue, SyncGivesTheValueAndTheException)
{
    LogCapture log;
    DispatchQueue queue("values");
    int number = 4;
    EXPECT_EQ(queue.sync([&] { return number + 1; }), 5);
    queue.sync([&]() -> int& { return number; }) = 9;
    EXPECT_EQ(number, 9);
    EXPECT_EQ(*queue.sync([] { return std::make_unique<int>(3); }), 3);
    // From the queue itself it runs at once, ahead of what waits.
    std::vector<int> order;
    queue.sync([&] {
        queue.async([&] { order.push_back(2); });
        queue.sync([&] { order.push_back(1); });
    });
    queue.sync([] {});
    EXPECT_EQ(order, (std::vector<int>{1, 2}));
    EXPECT_THROW(queue.sync([] { throw std::runtime_error("broken"); }), std::runtime_error);
    EXPECT_TRUE(log.messages.empty()) << "the caller has it";
}

TEST(DispatchQueue, GoesOnAfterABlockThrew)
{
    LogCapture log;
    DispatchQueue queue("stubborn");
    queue.async([] { throw std::runtime_error("no paper"); });
    queue.async([] { throw 7; });
    EXPECT_EQ(queue.sync([] { return 1; }), 1);
    ASSERT_EQ(log.messages.size(), 2u);
    EXPECT_EQ(log.messages[0].first, LogLevel::Error);
    EXPECT_THAT(log.messages[0].second, testing::AllOf(HasSubstr("stubborn"), HasSubstr("no paper")));
}

TEST(DispatchQueue, KnowsWhereItRuns)
{
    static const char key = 0;
    int valueOfA = 0;
    DispatchQueue a("a");
    DispatchQueue b("b");
    a.setSpecific(&key, &valueOfA);
    EXPECT_FALSE(a.isCurrent());
    EXPECT_EQ(DispatchQueue::currentSpecific(&key), nullptr);
    a.sync([&] {
        EXPECT_TRUE(a.isCurrent());
        EXPECT_FALSE(b.isCurrent());
        EXPECT_EQ(DispatchQueue::currentSpecific(&key), &valueOfA);
        b.sync([&] { EXPECT_EQ(DispatchQueue::currentSpecific(&key), nullptr); });
        a.setSpecific(&key, nullptr);
        EXPECT_EQ(DispatchQueue::currentSpecific(&key), nullptr);
    });
}

TEST(DispatchQueue, DestructorWaitsForAllWork)
{
    std::atomic<int> done{0};
    {
        DispatchQueue queue("ending");
        for (int i = 0; i < 100; ++i)
            queue.async([&] {
                queue.async([&] { ++done; });
                ++done;
            });
    }
    EXPECT_EQ(done, 200);
    DispatchQueue neverUsed("idle"); // has no thread to end
}

TEST(DispatchQueue, DestroyedByItsOwnBlockItFinishesAfterwards)
{
    auto queue = std::make_shared<DispatchQueue>("own end");
    const std::weak_ptr<DispatchQueue> watch = queue;
    DispatchSemaphore lastOwnerIsTheBlock;
    DispatchSemaphore finished;
    std::vector<int> order;
    queue->async([&order, &lastOwnerIsTheBlock, queue]() mutable {
        lastOwnerIsTheBlock.wait();
        queue.reset();
        order.push_back(1);
    });
    queue->async([&] {
        order.push_back(2);
        EXPECT_TRUE(watch.expired());
        finished.signal();
    });
    queue.reset();
    lastOwnerIsTheBlock.signal();
    ASSERT_TRUE(finished.wait(10));
    EXPECT_EQ(order, (std::vector<int>{1, 2}));
}

TEST(DispatchSemaphore, CountsAndTimesOut)
{
    DispatchSemaphore semaphore(2);
    EXPECT_TRUE(semaphore.tryWait());
    EXPECT_TRUE(semaphore.wait(0));
    EXPECT_FALSE(semaphore.tryWait());
    EXPECT_FALSE(semaphore.wait(0.005));
    EXPECT_FALSE(semaphore.wait(-1));
    constexpr int kRounds = 2000;
    DispatchSemaphore answer;
    std::jthread other([&] {
        for (int i = 0; i < kRounds; ++i) {
            semaphore.wait();
            answer.signal();
        }
    });
    for (int i = 0; i < kRounds; ++i) {
        semaphore.signal();
        ASSERT_TRUE(answer.wait(10));
    }
    EXPECT_FALSE(answer.tryWait());
}

} // namespace
} // namespace lamina
