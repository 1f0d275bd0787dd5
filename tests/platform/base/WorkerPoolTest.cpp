#include "platform/base/WorkerPool.h"

#include <atomic>
#include <chrono>
#include <gtest/gtest.h>
#include <limits>
#include <mutex>
#include <stdexcept>
#include <thread>
#include <vector>

namespace lamina {
namespace {

class WorkerPoolTest : public testing::Test {
protected:
    WorkerPoolTest() { pool.setConcurrency(4); } // more than one, however few cores there are
    ~WorkerPoolTest() override { pool.setConcurrency(0); }
    WorkerPool& pool = WorkerPool::shared();
};

/// How often each row of [0, count) was handed out.
std::vector<int> visits(int count, int grain)
{
    std::vector<std::atomic<int>> rows(static_cast<std::size_t>(count));
    WorkerPool::shared().parallelFor(0, count, grain, [&](int first, int last) {
        EXPECT_LT(first, last);
        for (int y = first; y < last; ++y)
            ++rows.at(static_cast<std::size_t>(y));
    });
    return {rows.begin(), rows.end()};
}

TEST_F(WorkerPoolTest, HandsOutEveryRowOnce)
{
    for (const unsigned threads : {1u, 2u, 3u, 8u}) {
        pool.setConcurrency(threads);
        EXPECT_EQ(pool.concurrency(), threads);
        for (const int count : {0, 1, 2, 3, 16, 17, 64, 1000, 4099}) {
            for (const int grain : {-1, 0, 1, 5, 64, 5000}) {
                SCOPED_TRACE(testing::Message() << threads << " threads, " << count << " rows, grain " << grain);
                EXPECT_EQ(visits(count, grain), std::vector<int>(static_cast<std::size_t>(count), 1));
            }
        }
    }
    pool.parallelFor(7, 3, 1, [](int, int) { FAIL() << "an empty range"; });
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
        EXPECT_THROW(pool.parallelFor(0, 100, 1,
                                      [&](int first, int) {
                                          ++running;
                                          std::this_thread::yield();
                                          --running;
                                          if (first % 2 == round % 2)
                                              throw std::runtime_error("bad row");
                                      }),
                     std::runtime_error);
        EXPECT_EQ(running, 0) << "nobody may touch the rows any more";
    }
    EXPECT_EQ(visits(100, 1), std::vector<int>(100, 1)) << "the pool goes on";
}

TEST_F(WorkerPoolTest, ServesCallersAtTheSameTime)
{
    std::vector<std::jthread> callers;
    for (int c = 0; c < 3; ++c) {
        callers.emplace_back([] {
            for (int i = 1; i < 60; ++i)
                EXPECT_EQ(visits(i * 7, 1), std::vector<int>(static_cast<std::size_t>(i * 7), 1));
        });
    }
}

TEST_F(WorkerPoolTest, RowsAreSplitByTheirPixels)
{
    pool.setConcurrency(8);
    const auto smallestPiece = [](int rows, std::size_t pixelsPerRow) {
        std::mutex mutex;
        std::size_t smallest = std::numeric_limits<std::size_t>::max();
        parallelRows(0, rows, pixelsPerRow, [&](int first, int last) {
            const std::lock_guard lock(mutex);
            if (last < rows) // the last piece takes what is left
                smallest = std::min(smallest, static_cast<std::size_t>(last - first) * pixelsPerRow);
        });
        return smallest;
    };
    EXPECT_GE(smallestPiece(4000, 100), 16u * 1024);
    EXPECT_LE(smallestPiece(4000, 4000), 4000u * 4000 / 8) << "a large picture is shared by all";
    EXPECT_EQ(smallestPiece(100, 10), std::numeric_limits<std::size_t>::max()) << "a small picture is one piece";
    EXPECT_EQ(smallestPiece(100, 0), std::numeric_limits<std::size_t>::max());
}

} // namespace
} // namespace lamina
