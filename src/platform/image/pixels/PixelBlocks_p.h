#pragma once

#include "platform/base/NotificationCenter.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <mutex>

namespace lamina {

/// Large blocks of memory straight from the system, and the few idle ones that are kept (see PixelBuffer). Usable from
/// any thread.
class PixelBlocks {
public:
    /// From here on a buffer is a block of its own.
    static constexpr std::size_t kSmallest = std::size_t{1} << 20;
    static constexpr std::size_t kMostIdleBytes = std::size_t{64} << 20;

    struct Block {
        std::uint8_t* memory = nullptr; ///< at a page's beginning; null when there was none to be had
        std::size_t capacity = 0;       ///< at least what was asked for
        bool isZeroed = false;
    };

    static PixelBlocks& shared();

    /// A block of `size` bytes or more: an idle one of about that size, or a new one. Without memory when none is to be
    /// had.
    Block take(std::size_t size);
    /// Takes a block back, of which memory and capacity are looked at.
    void giveBack(const Block& block) noexcept;

    void releaseIdle();
    std::size_t idleBytes();

private:
    PixelBlocks();

    std::size_t sumOfIdle() const;
    Block takeIdle(std::size_t size);
    void dropOldest();

    std::mutex m_mutex;
    std::array<Block, 2> m_idle; ///< the one that came last first; null where there is none
    std::size_t m_used = 0;      ///< bytes of the blocks that are out
    std::size_t m_mostUsed = 0;
    NotificationObserver m_memoryWarning; ///< for good, as these blocks are
};

} // namespace lamina
