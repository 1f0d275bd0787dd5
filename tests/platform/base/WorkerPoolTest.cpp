#include "platform/base/WorkerPool.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <gtest/gtest.h>
#include <limits>
#include <stdexcept>
#include <thread>
#include <vector>

namespace lamina {
namespace {

class WorkerPoolTest : public testing::Test {
protected:
    WorkerPoolTest() { pool.setConcurrency(4); } // more than one, however few cores there are
    ~WorkerPoolTest() override { pool.setConcurrency(0); }

    /// Each of `count` rows is handed out once.
    void expectEveryRow(int count, int grain)
    {
        std::vector<std::atomic<int>> rows(static_cast<std::size_t>(count));
        pool.parallelFor(0, count, grain, [&](int first, int last) {
            EXPECT_LT(first, last);
            for (int y = first; y < last; ++y)
                ++rows.at(static_cast<std::size_t>(y));
        });
        EXPECT_TRUE(std::all_of(rows.begin(), rows.end(), [](int visits) { return visits == 1; }))
            << pool.concurrency() << " threads, " << count << " rows, grain " << grain;
    }

    WorkerPool& pool = WorkerPool::shared();
};

TEST_F(WorkerPoolTest, HandsOutEveryRowOnceToCallersAtTheSameTime)
{
    for (const unsigned threads : {1u, 2u, 3u, 8u}) {
        pool.setConcurrency(threads);
        const auto call = [this] {
            for (const int count : {0, 1, 2, 3, 16, 17, 64, 4099}) {
                for (const int grain : {-1, 0, 1, 5, 64, 5000})
                    expectEveryRow(count, grain);
            }
        };
        const std::jthread first(call);
        const std::jthread second(call);
        call();
    }
    pool.parallelFor(7, 3, 1, [](int, int) { FAIL() << "an empty range"; });
}

TEST_F(WorkerPoolTest, SmallPicturesAreOnePiece)
{
    for (const std::size_t pixelsPerRow : {0u, 10u, 160u}) {
        std::atomic<int> pieces{0};
        parallelRows(0, 100, pixelsPerRow, [&](int, int) { ++pieces; });
        EXPECT_EQ(pieces, 1) << pixelsPerRow;
    }
}

TEST_F(WorkerPoolTest, CoversTheWholeRangeOfNumbers)
{
    constexpr int kLow = std::numeric_limits<int>::min();
    constexpr int kHigh = std::numeric_limits<int>::max();
    std::atomic<long long> rows{0};
    pool.parallelFor(kLow, kHigh, 1, [&](int first, int last) { rows += static_cast<long long>(last) - first; });
    EXPECT_EQ(rows, static_cast<long long>(kHigh) - kLow);
}

TEST_F(WorkerPoolTest, SpreadsOverThreadsAndRunsNestedCallsInline)
{
    std::atomic<int> inside{0};
    std::atomic<bool> together{false};
    // Two pieces for four threads: a nested call would find helpers.
    pool.parallelFor(0, 2, 1, [&](int, int) {
        const std::thread::id here = std::this_thread::get_id();
        pool.parallelFor(0, 1000, 1, [&](int, int) {
            std::this_thread::sleep_for(std::chrono::microseconds(100));
            EXPECT_EQ(std::this_thread::get_id(), here);
        });
        // Stays until a second thread has come, so that no piece is left to one thread alone.
        ++inside;
        for (int i = 0; i < 100'000 && !together; ++i) {
            together = together || inside > 1;
            std::this_thread::yield();
        }
    });
    EXPECT_TRUE(together);
}

TEST_F(WorkerPoolTest, ExceptionsReachTheCaller)
{
    for (int round = 0; round < 50; ++round) {
        std::atomic<int> running{0};
        const auto body = [&](int first, int) {
            ++running;
            std::this_thread::yield();
            --running;
            if (first % 2 == round % 2)
                throw std::runtime_error("bad row");
        };
        EXPECT_THROW(pool.parallelFor(0, 100, 1, body), std::runtime_error);
        EXPECT_EQ(running, 0) << "nobody may touch the rows any more";
    }
    expectEveryRow(100, 1);
}

} // namespace
} // namespace lamina
