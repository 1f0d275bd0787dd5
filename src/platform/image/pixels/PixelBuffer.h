#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace lamina {

/// Memory for pixels: aligned to 64 bytes, movable, freed with its last owner. Not initialised unless `zeroed`: it may
/// hold bytes of pictures that are gone. Empty when the memory could not be had, which callers test.
///
/// Memory fresh from the system costs as much as all the work on a photo's pixels: every page is a fault, and the
/// system clears it before we write it. So up to two blocks of 1 MB or more, 64 MB together, are kept when their owners
/// let them go, and serve the next buffers of about their size. They never raise the most memory that buffers have
/// taken: where a new block and the idle ones together would pass that, the idle ones go first; and all of them go when
/// the system runs short of memory (`UIApplicationDidReceiveMemoryWarningNotification`). Blocks from 4 MB on ask for
/// huge pages, each of which saves 512 faults.
///
/// All of it is usable from any thread.
class PixelBuffer {
public:
    PixelBuffer() = default;
    /// `size` bytes that hold anything.
    static PixelBuffer allocate(std::size_t size);
    /// `size` bytes of 0.
    static PixelBuffer zeroed(std::size_t size);
    /// Memory that stays another's, who keeps it for longer than the buffer lives.
    static PixelBuffer borrowed(std::uint8_t* memory, std::size_t size);

    std::uint8_t* data() { return m_data.get(); }
    const std::uint8_t* data() const { return m_data.get(); }
    std::size_t size() const { return m_size; }
    explicit operator bool() const { return m_data != nullptr; }

    /// Gives the memory up to readers that share it.
    std::shared_ptr<const std::uint8_t> share() &&;

    /// Gives the blocks that are kept back to the system: for when memory is short, or the work on pictures is over.
    static void releaseIdle();
    /// Bytes kept for later buffers at the moment.
    static std::size_t idleBytes();

private:
    struct Free {
        static constexpr std::size_t kBorrowed = ~std::size_t{0};
        std::size_t capacity; ///< of a block from the system; 0: from the heap; kBorrowed: not ours
        Free() noexcept
            : Free(0)
        {
        }
        explicit Free(std::size_t ofBlock) noexcept
            : capacity(ofBlock)
        {
        }
        void operator()(std::uint8_t* memory) const noexcept;
    };
    static PixelBuffer make(std::size_t size, bool zeroed);

    std::unique_ptr<std::uint8_t, Free> m_data;
    std::size_t m_size = 0;
};

} // namespace lamina
