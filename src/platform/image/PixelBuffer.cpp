#include "platform/image/PixelBuffer.h"

#include <cstdlib>
#include <cstring>

namespace lamina {

namespace {
constexpr std::size_t kAlignment = 64;
}

void PixelBuffer::Free::operator()(std::uint8_t* memory) const noexcept
{
    std::free(memory);
}

PixelBuffer PixelBuffer::allocate(std::size_t size)
{
    PixelBuffer buffer;
    const std::size_t rounded = (size + kAlignment - 1) / kAlignment * kAlignment;
    if (rounded < size)
        return buffer;
    buffer.m_data.reset(static_cast<std::uint8_t*>(std::aligned_alloc(kAlignment, rounded == 0 ? kAlignment : rounded)));
    buffer.m_size = buffer.m_data ? size : 0;
    return buffer;
}

PixelBuffer PixelBuffer::zeroed(std::size_t size)
{
    PixelBuffer buffer = allocate(size);
    if (buffer)
        std::memset(buffer.data(), 0, size);
    return buffer;
}

std::shared_ptr<const std::uint8_t> PixelBuffer::share() &&
{
    m_size = 0;
    return std::shared_ptr<const std::uint8_t>(m_data.release(), Free{});
}

} // namespace lamina
