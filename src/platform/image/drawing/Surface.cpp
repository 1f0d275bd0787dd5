#include "platform/image/drawing/Surface_p.h"

#include "platform/image/pixels/PixelKernels.h"

#include <atomic>
#include <cstring>
#include <utility>

namespace lamina {

std::optional<Surface> Surface::make(SurfaceKind kind, const IntRect& bounds, std::size_t bytesPerRow)
{
    Surface surface;
    surface.m_kind = kind;
    surface.m_bounds = bounds;
    if (bounds.isEmpty())
        return std::nullopt;
    const std::size_t needed = static_cast<std::size_t>(bounds.width) * static_cast<std::size_t>(surface.channels());
    surface.m_bytesPerRow = bytesPerRow == 0 ? needed : bytesPerRow;
    std::size_t size = 0;
    if (surface.m_bytesPerRow < needed ||
        __builtin_mul_overflow(surface.m_bytesPerRow, static_cast<std::size_t>(bounds.height), &size))
        return std::nullopt;
    PixelBuffer buffer = PixelBuffer::zeroed(size);
    if (!buffer)
        return std::nullopt;
    surface.m_data = buffer.data();
    surface.m_owner = std::move(buffer).share();
    return surface;
}

bool Surface::detach()
{
    if (m_owner.use_count() == 1) {
        // Another thread may just have let its picture go: what it read must be over before we write.
        std::atomic_thread_fence(std::memory_order_acquire);
        return true;
    }
    PixelBuffer copy = PixelBuffer::allocate(byteCount());
    if (!copy)
        return false;
    std::memcpy(copy.data(), m_data, byteCount());
    m_data = copy.data();
    m_owner = std::move(copy).share();
    return true;
}

void Surface::makeOpaque()
{
    for (int y = m_bounds.y; y < m_bounds.bottom(); ++y)
        kernels::setOpaque(at(m_bounds.x, y), static_cast<std::size_t>(m_bounds.width));
}

} // namespace lamina
