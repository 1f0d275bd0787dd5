#include "platform/base/DispatchQueue.h"
#include "LogCapture.h"
#include "platform/base/DispatchSemaphore.h"

#include <algorithm>
#include <cstddef>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdexcept>
#include <thread>
#include <vector>

namespace lamina {
namespace {

using testing::HasSubstr;

TEST(DispatchQueue, KeepsEachSubmittersOrderOnOneThreadAndEndsWithItsWork)
{
    std::vector<int> seen[2]; // touched by the queue alone
    std::vector<std::thread::id> ids;
    {
        DispatchQueue queue("order");
        const auto submit = [&](std::size_t submitter) {
            for (int i = 0; i < 500; ++i) {
                const auto block = [&, submitter, i] {
                    seen[submitter].push_back(i);
                    queue.async([&] { ids.push_back(std::this_thread::get_id()); });
                };
                i % 50 == 48 ? queue.sync(block) : queue.async(block);
            }
        };
        std::jthread other(submit, 0);
        submit(1);
    }
    EXPECT_EQ(ids.size(), 1000u);
    for (const std::vector<int>& numbers : seen) {
        EXPECT_EQ(numbers.size(), 500u);
        EXPECT_TRUE(std::ranges::is_sorted(numbers));
    }
    EXPECT_THAT(ids, testing::Each(ids.front()));
    EXPECT_NE(ids.front(), std::this_thread::get_id());
}

TEST(DispatchQueue, SyncGivesTheValueAndTheExceptionAndOthersAreLogged)
{
    test::LogCapture log;
    DispatchQueue queue("values");
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
    queue.async([] { throw std::runtime_error("no paper"); });
    queue.async([] { throw 7; });
    EXPECT_EQ(queue.sync([] { return 1; }), 1);
    ASSERT_EQ(log.messages.size(), 2u);
    EXPECT_THAT(log.messages[0].second, testing::AllOf(HasSubstr("values"), HasSubstr("no paper")));
}

TEST(DispatchQueue, KnowsWhereItRuns)
{
    static const char key = 0;
    int valueOfA = 0;
    DispatchQueue a("a");
    DispatchQueue b("b");
    MainQueue& main = DispatchQueue::main(); // this thread's even outside of its blocks
    main.bindToCurrentThread();
    a.setSpecific(&key, &valueOfA);
    EXPECT_TRUE(main.isCurrent());
    EXPECT_EQ(main.sync([] { return 3; }), 3);
    a.sync([&] {
        EXPECT_FALSE(main.isCurrent());
        EXPECT_EQ(DispatchQueue::currentSpecific(&key), &valueOfA);
        b.sync([&] { EXPECT_EQ(DispatchQueue::currentSpecific(&key), nullptr); });
    });
    a.setSpecific(&key, nullptr);
    a.sync([&] { EXPECT_EQ(DispatchQueue::currentSpecific(&key), nullptr); });
}

TEST(DispatchQueue, DestroyedByItsOwnBlockItFinishesAfterwards)
{
    auto queue = std::make_shared<DispatchQueue>("own end");
    DispatchSemaphore blockIsLastOwner;
    DispatchSemaphore finished;
    queue->async([&blockIsLastOwner, queue]() mutable {
        blockIsLastOwner.wait();
        queue.reset();
    });
    queue->async([&] { finished.signal(); });
    queue.reset();
    blockIsLastOwner.signal();
    EXPECT_TRUE(finished.wait(10));
}

TEST(DispatchSemaphore, CountsWakesAndTimesOut)
{
    DispatchSemaphore semaphore(2);
    EXPECT_TRUE(semaphore.tryWait());
    EXPECT_TRUE(semaphore.wait(0));
    EXPECT_FALSE(semaphore.tryWait());
    EXPECT_FALSE(semaphore.wait(0.005));
    const std::jthread other([&] { semaphore.signal(); });
    EXPECT_TRUE(semaphore.wait(10));
}

} // namespace
} // namespace lamina
