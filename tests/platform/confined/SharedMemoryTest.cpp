// Memory that two processes share: what one may still do to it when the other reads.

#include "platform/confined/SharedMemory.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <numeric>
#include <sys/mman.h>
#include <unistd.h>
#include <vector>

namespace lamina::test {
namespace {

TEST(SharedMemory, StaysAsItIsForWhoReads)
{
    Result<SharedMemory> memory = SharedMemory::make(1 << 20);
    ASSERT_TRUE(memory);
    EXPECT_NE(::ftruncate(memory->descriptor(), 0), 0);
    EXPECT_NE(::ftruncate(memory->descriptor(), 2 << 20), 0);

    std::uint8_t* const written = mapForWriting(memory->descriptor(), 5000);
    ASSERT_NE(written, nullptr);
    std::iota(written, written + 5000, std::uint8_t{0});
    EXPECT_EQ(memory->freeze(5000), nullptr) << "somebody can still write";
    ::munmap(written, 5000);

    EXPECT_EQ(memory->freeze(0), nullptr);
    EXPECT_EQ(memory->freeze((1 << 20) + 1), nullptr);
    const auto bytes = memory->freeze(5000);
    ASSERT_NE(bytes, nullptr);
    EXPECT_EQ(bytes.get()[4999], static_cast<std::uint8_t>(4999));
    EXPECT_EQ(mapForWriting(memory->descriptor(), 5000), nullptr);
    EXPECT_NE(::pwrite(memory->descriptor(), "x", 1, 0), 1);
}

TEST(SharedMemory, HoldsWhatASourceGives)
{
    constexpr std::size_t kSize = (3 << 20) + 17; // several pieces
    const auto fill = [](std::size_t end) {
        return [end](std::uint64_t offset, std::span<std::uint8_t> target) {
            const std::size_t count = std::min<std::size_t>(target.size(), end > offset ? end - offset : 0);
            for (std::size_t i = 0; i < count; ++i)
                target[i] = static_cast<std::uint8_t>((offset + i) % 251 + 1);
            return count;
        };
    };
    for (const std::size_t end : {kSize, kSize / 2}) {
        const Result<SharedMemory> memory = SharedMemory::filled(kSize, fill(end));
        ASSERT_TRUE(memory);
        std::vector<std::uint8_t> bytes(kSize);
        ASSERT_EQ(::pread(memory->descriptor(), bytes.data(), kSize, 0), static_cast<ssize_t>(kSize));
        EXPECT_EQ(bytes[end - 1], (end - 1) % 251 + 1);
        EXPECT_EQ(bytes.back(), end == kSize ? (kSize - 1) % 251 + 1 : 0);
        EXPECT_NE(::pwrite(memory->descriptor(), "x", 1, 0), 1);
    }
}

} // namespace
} // namespace lamina::test
