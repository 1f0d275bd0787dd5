#include "platform/image/pixels/PixelBuffer.h"

#include "platform/base/WorkerPool.h"
#include "platform/image/pixels/PixelBlocks_p.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace lamina {

namespace {

constexpr std::size_t kAlignment = 64;

/// Large blocks are cleared by all cores.
void clear(std::uint8_t* memory, std::size_t size)
{
    constexpr std::size_t kPiece = std::size_t{1} << 16;
    const auto pieces = static_cast<int>((size + kPiece - 1) / kPiece);
    parallelRows(0, pieces, kPiece / 8, [&](int first, int last) {
        const std::size_t begin = static_cast<std::size_t>(first) * kPiece;
        std::memset(memory + begin, 0, std::min(size, static_cast<std::size_t>(last) * kPiece) - begin);
    });
}

} // namespace

void PixelBuffer::Free::operator()(std::uint8_t* memory) const noexcept
{
    if (capacity == 0)
        std::free(memory);
    else if (capacity != kBorrowed)
        PixelBlocks::shared().giveBack({memory, capacity, false});
}

PixelBuffer PixelBuffer::make(std::size_t size, bool zeroed)
{
    PixelBuffer buffer;
    PixelBlocks::Block block;
    if (size >= PixelBlocks::kSmallest) {
        block = PixelBlocks::shared().take(size);
    } else {
        const std::size_t rounded = std::max(kAlignment, (size + kAlignment - 1) / kAlignment * kAlignment);
        block.memory = static_cast<std::uint8_t*>(std::aligned_alloc(kAlignment, rounded));
    }
    if (!block.memory)
        return buffer;
    buffer.m_data = std::unique_ptr<std::uint8_t, Free>(block.memory, Free(block.capacity));
    buffer.m_size = size;
    if (zeroed && !block.isZeroed)
        clear(block.memory, size);
    return buffer;
}

PixelBuffer PixelBuffer::allocate(std::size_t size)
{
    return make(size, false);
}

PixelBuffer PixelBuffer::zeroed(std::size_t size)
{
    return make(size, true);
}

PixelBuffer PixelBuffer::borrowed(std::uint8_t* memory, std::size_t size)
{
    PixelBuffer buffer;
    buffer.m_data = std::unique_ptr<std::uint8_t, Free>(memory, Free(Free::kBorrowed));
    buffer.m_size = size;
    return buffer;
}

std::shared_ptr<const std::uint8_t> PixelBuffer::share() &&
{
    m_size = 0;
    const Free free = m_data.get_deleter();
    return std::shared_ptr<const std::uint8_t>(m_data.release(), free);
}

void PixelBuffer::releaseIdle()
{
    PixelBlocks::shared().releaseIdle();
}

std::size_t PixelBuffer::idleBytes()
{
    return PixelBlocks::shared().idleBytes();
}

} // namespace lamina
