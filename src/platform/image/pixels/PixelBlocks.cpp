#include "platform/image/pixels/PixelBlocks_p.h"

#include "platform/base/MemoryWarning.h"

#include <algorithm>
#include <limits>
#include <sys/mman.h>

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/asan_interface.h>
#endif

namespace lamina {

namespace {

constexpr std::size_t kPage = 4096;
constexpr std::size_t kHugePage = std::size_t{2} << 20;

// The address sanitizer reports who touches an idle block, or passes the end of what was asked for.
#if defined(__SANITIZE_ADDRESS__)
constexpr std::size_t kGuard = 64;

void allow(std::uint8_t* memory, std::size_t size)
{
    ASAN_UNPOISON_MEMORY_REGION(memory, size);
}

void forbid(std::uint8_t* memory, std::size_t size)
{
    ASAN_POISON_MEMORY_REGION(memory, size);
}
#else
constexpr std::size_t kGuard = 0;

void allow(std::uint8_t* /*memory*/, std::size_t /*size*/) {}
void forbid(std::uint8_t* /*memory*/, std::size_t /*size*/) {}
#endif

constexpr std::size_t roundedUp(std::size_t size, std::size_t step)
{
    return (size + step - 1) / step * step;
}

/// Zeroed, as all memory fresh from the system is.
PixelBlocks::Block mapBlock(std::size_t size)
{
    const std::size_t alignment = size >= 2 * kHugePage ? kHugePage : kPage;
    const std::size_t capacity = roundedUp(size + kGuard, kPage);
    const std::size_t mapped = capacity + alignment - kPage;
    void* const memory = ::mmap(nullptr, mapped, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED)
        return {};
    auto* const begin = static_cast<std::uint8_t*>(memory);
    const std::size_t before =
        roundedUp(reinterpret_cast<std::uintptr_t>(begin), alignment) - reinterpret_cast<std::uintptr_t>(begin);
    if (before > 0)
        ::munmap(begin, before);
    if (before + capacity < mapped)
        ::munmap(begin + before + capacity, mapped - before - capacity);
    if (alignment == kHugePage)
        ::madvise(begin + before, capacity / kHugePage * kHugePage, MADV_HUGEPAGE); // a hint: nothing hangs on it
    return {begin + before, capacity, true};
}

void unmap(PixelBlocks::Block& block)
{
    if (!block.memory)
        return;
    allow(block.memory, block.capacity);
    ::munmap(block.memory, block.capacity);
    block = {};
}

} // namespace

PixelBlocks::PixelBlocks()
    : m_memoryWarning(NotificationCenter::defaultCenter().addObserver(UIApplicationDidReceiveMemoryWarningNotification,
                                                                      [this](const Notification&) { releaseIdle(); }))
{
}

PixelBlocks& PixelBlocks::shared()
{
    static PixelBlocks* const blocks = new PixelBlocks; // never destroyed: pictures may outlive other statics
    return *blocks;
}

std::size_t PixelBlocks::sumOfIdle() const
{
    return m_idle[0].capacity + m_idle[1].capacity;
}

PixelBlocks::Block PixelBlocks::takeIdle(std::size_t size)
{
    Block* best = nullptr;
    for (Block& block : m_idle) {
        const bool fits =
            block.capacity >= size + kGuard && block.capacity - size <= size / 4; // a rest is lost while in use
        if (fits && (!best || block.capacity < best->capacity))
            best = &block;
    }
    if (!best)
        return {};
    const Block taken = *best;
    *best = {};
    return taken;
}

void PixelBlocks::dropOldest()
{
    unmap(m_idle[1].memory ? m_idle[1] : m_idle[0]);
}

PixelBlocks::Block PixelBlocks::take(std::size_t size)
{
    if (size > std::numeric_limits<std::size_t>::max() / 4) // sums with it below must not overflow
        return {};
    const std::lock_guard lock(m_mutex);
    Block block = takeIdle(size);
    if (!block.memory) {
        const std::size_t most = std::max(m_mostUsed, m_used + size);
        while (sumOfIdle() > 0 && m_used + size + sumOfIdle() > most)
            dropOldest();
        block = mapBlock(size);
        if (!block.memory && sumOfIdle() > 0) {
            while (sumOfIdle() > 0)
                dropOldest();
            block = mapBlock(size);
        }
    }
    m_used += block.capacity;
    m_mostUsed = std::max(m_mostUsed, m_used);
    if (block.memory) {
        allow(block.memory, size);
        forbid(block.memory + size, block.capacity - size);
    }
    return block;
}

void PixelBlocks::giveBack(const Block& block) noexcept
{
    const std::lock_guard lock(m_mutex);
    m_used -= block.capacity;
    Block idle{block.memory, block.capacity, false};
    if (idle.capacity > kMostIdleBytes) {
        unmap(idle);
        return;
    }
    while (sumOfIdle() + idle.capacity > kMostIdleBytes || (m_idle[0].memory && m_idle[1].memory))
        dropOldest();
    forbid(idle.memory, idle.capacity);
    if (m_idle[0].memory)
        m_idle[1] = m_idle[0];
    m_idle[0] = idle;
}

void PixelBlocks::releaseIdle()
{
    const std::lock_guard lock(m_mutex);
    while (sumOfIdle() > 0)
        dropOldest();
}

std::size_t PixelBlocks::idleBytes()
{
    const std::lock_guard lock(m_mutex);
    return sumOfIdle();
}

} // namespace lamina
