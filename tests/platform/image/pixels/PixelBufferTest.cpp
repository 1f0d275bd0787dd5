#include "platform/image/pixels/PixelBuffer.h"

#include "platform/base/MemoryWarning.h"
#include "platform/base/NotificationCenter.h"

#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>
#include <thread>
#include <vector>

namespace lamina {
namespace {

constexpr std::size_t kMega = std::size_t{1} << 20;

class PixelBuffers : public testing::Test {
protected:
    void SetUp() override { PixelBuffer::releaseIdle(); }
    void TearDown() override { PixelBuffer::releaseIdle(); }
};

/// As long as the highest use of memory lies above what a test takes, all that may be kept is kept.
void raiseTheMost()
{
    const PixelBuffer high = PixelBuffer::allocate(300 * kMega);
    ASSERT_TRUE(high);
}

TEST_F(PixelBuffers, AreAlignedAndAsLargeAsWanted)
{
    for (const std::size_t size : {std::size_t{0}, std::size_t{1}, kMega - 1, kMega, 4 * kMega, 5 * kMega + 17}) {
        PixelBuffer buffer = PixelBuffer::allocate(size);
        ASSERT_TRUE(buffer) << size;
        EXPECT_EQ(buffer.size(), size);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(buffer.data()) % 64, 0u) << size;
        std::memset(buffer.data(), 0xAB, size);
        if (size > 0) {
            EXPECT_EQ(buffer.data()[size - 1], 0xAB);
        }
    }
    EXPECT_FALSE(PixelBuffer::allocate(~std::size_t{0}));
    EXPECT_FALSE(PixelBuffer::zeroed(~std::size_t{0} - 100));
}

TEST_F(PixelBuffers, ServeTheNextOnesOfAboutTheirSize)
{
    const std::uint8_t* first = nullptr;
    {
        PixelBuffer buffer = PixelBuffer::allocate(8 * kMega);
        first = buffer.data();
        std::memset(buffer.data(), 0xCD, buffer.size());
        const std::shared_ptr<const std::uint8_t> shared = std::move(buffer).share();
        EXPECT_EQ(PixelBuffer::idleBytes(), 0u);
    }
    EXPECT_GE(PixelBuffer::idleBytes(), 8 * kMega);
    PixelBuffer next = PixelBuffer::zeroed(8 * kMega - 5);
    EXPECT_EQ(next.data(), first);
    EXPECT_TRUE(std::all_of(next.data(), next.data() + next.size(), [](std::uint8_t b) { return b == 0; }));
    EXPECT_EQ(PixelBuffer::idleBytes(), 0u);
}

TEST_F(PixelBuffers, KeepTwoBlocksAnd64MegabytesAtMost)
{
    raiseTheMost();
    EXPECT_EQ(PixelBuffer::idleBytes(), 0u); // too large to be kept
    static_cast<void>(PixelBuffer::allocate(kMega - 64));
    EXPECT_EQ(PixelBuffer::idleBytes(), 0u); // too small
    {
        const PixelBuffer a = PixelBuffer::allocate(2 * kMega);
        const PixelBuffer b = PixelBuffer::allocate(3 * kMega);
        const PixelBuffer c = PixelBuffer::allocate(5 * kMega);
    }
    const std::size_t two = PixelBuffer::idleBytes();
    EXPECT_GE(two, 5 * kMega); // those let go last, a and b
    EXPECT_LT(two, 6 * kMega);
    static_cast<void>(PixelBuffer::allocate(62 * kMega));
    EXPECT_GE(PixelBuffer::idleBytes(), 62 * kMega);
    EXPECT_LE(PixelBuffer::idleBytes(), 64 * kMega);
}

TEST_F(PixelBuffers, GiveIdleBlocksBackWhenMemoryIsShort)
{
    const PixelBuffer used = PixelBuffer::zeroed(2 * kMega);
    static_cast<void>(PixelBuffer::allocate(3 * kMega));
    EXPECT_GE(PixelBuffer::idleBytes(), 3 * kMega);
    std::thread([] {
        NotificationCenter::defaultCenter().post(UIApplicationDidReceiveMemoryWarningNotification);
    }).join();
    EXPECT_EQ(PixelBuffer::idleBytes(), 0u);
    EXPECT_EQ(used.data()[2 * kMega - 1], 0);
}

// A new block of another size beside the largest one ever would take more than any picture did.
TEST_F(PixelBuffers, NeverRaiseTheMostMemoryTaken)
{
    const PixelBuffer most = PixelBuffer::allocate(400 * kMega); // more than all tests before
    {
        const PixelBuffer beside = PixelBuffer::allocate(20 * kMega);
    }
    EXPECT_GE(PixelBuffer::idleBytes(), 20 * kMega);
    const PixelBuffer other = PixelBuffer::allocate(10 * kMega);
    EXPECT_EQ(PixelBuffer::idleBytes(), 0u);
}

TEST_F(PixelBuffers, BelongToOneThreadAtATime)
{
    std::vector<std::thread> threads;
    std::vector<int> spoiled(4);
    for (std::size_t t = 0; t < spoiled.size(); ++t) {
        threads.emplace_back([&spoiled, t] {
            for (int round = 0; round < 50; ++round) {
                PixelBuffer buffer = PixelBuffer::allocate(kMega + 4096 * static_cast<std::size_t>(round % 3));
                const int mark = static_cast<int>(16 * t) + round % 16;
                std::memset(buffer.data(), mark, buffer.size());
                std::this_thread::yield();
                const auto isMark = [mark](std::uint8_t b) { return b == mark; };
                spoiled[t] += std::all_of(buffer.data(), buffer.data() + buffer.size(), isMark) ? 0 : 1;
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(spoiled, std::vector<int>(4, 0));
}

} // namespace
} // namespace lamina
