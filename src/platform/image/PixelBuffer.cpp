#include "platform/image/PixelBuffer.h"

#include <cstdlib>
#include <cstring>
#include <limits>
#include <sys/mman.h>

namespace lamina {

namespace {

constexpr std::size_t kAlignment = 64;

// Fresh memory costs a fault per page, which for a photo's worth of small pages is as dear as the work on its pixels.
constexpr std::size_t kHugePage = std::size_t{2} << 20;

} // namespace

void PixelBuffer::Free::operator()(std::uint8_t* memory) const noexcept
{
    std::free(memory);
}

PixelBuffer PixelBuffer::allocate(std::size_t size)
{
    PixelBuffer buffer;
    const std::size_t alignment = size >= 2 * kHugePage ? kHugePage : kAlignment;
    const std::size_t wanted = size == 0 ? kAlignment : size;
    if (wanted > std::numeric_limits<std::size_t>::max() - alignment)
        return buffer;
    const std::size_t rounded = (wanted + kAlignment - 1) / kAlignment * kAlignment;
    void* memory = nullptr;
    if (::posix_memalign(&memory, alignment, rounded) != 0)
        return buffer;
    if (alignment == kHugePage)
        ::madvise(memory, rounded / kHugePage * kHugePage, MADV_HUGEPAGE); // a hint; nothing is lost where it fails
    buffer.m_data.reset(static_cast<std::uint8_t*>(memory));
    buffer.m_size = size;
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
