#include "platform/media/capture/FramePool_p.h"

#include "platform/image/pixels/PixelBuffer.h"

#include <cstddef>
#include <mutex>
#include <utility>
#include <vector>

namespace lamina {

/// Blocks that nobody uses, all of one size.
struct FramePool::Idle {
    static constexpr std::size_t kMostBlocks = 4;

    std::mutex mutex;
    std::size_t size = 0;
    std::vector<PixelBuffer> blocks;

    PixelBuffer take(std::size_t wanted)
    {
        {
            const std::scoped_lock lock(mutex);
            if (std::exchange(size, wanted) != wanted)
                blocks.clear();
            if (!blocks.empty()) {
                PixelBuffer block = std::move(blocks.back());
                blocks.pop_back();
                return block;
            }
        }
        return PixelBuffer::allocate(wanted);
    }

    void giveBack(PixelBuffer block)
    {
        const std::scoped_lock lock(mutex);
        if (block.size() == size && blocks.size() < kMostBlocks)
            blocks.push_back(std::move(block));
    }
};

FramePool::FramePool()
    : m_idle(std::make_shared<Idle>())
{
}

std::shared_ptr<CVPixelBuffer> FramePool::make(IntSize size, CVPixelFormat format)
{
    const auto width = static_cast<std::size_t>(size.width);
    const auto height = static_cast<std::size_t>(size.height);
    const bool isPlanar = format != CVPixelFormat::BGRA && format != CVPixelFormat::RGBA;
    const IntSize half{(size.width + 1) / 2, (size.height + 1) / 2};
    const std::size_t rowBytes = isPlanar ? width : 4 * width;
    const std::size_t chromaBytes = 2 * static_cast<std::size_t>(half.width);
    const std::size_t all = rowBytes * height + (isPlanar ? chromaBytes * static_cast<std::size_t>(half.height) : 0);
    PixelBuffer block = m_idle->take(all);
    if (!block)
        return nullptr;
    const std::shared_ptr<PixelBuffer> memory(new PixelBuffer(std::move(block)),
                                              [idle = std::weak_ptr(m_idle)](PixelBuffer* used) {
                                                  const std::unique_ptr<PixelBuffer> last(used);
                                                  if (const auto pool = idle.lock())
                                                      pool->giveBack(std::move(*used));
                                              });
    std::vector<CVPixelBuffer::Plane> planes{{memory->data(), rowBytes, size}};
    if (isPlanar)
        planes.push_back({memory->data() + rowBytes * height, chromaBytes, half});
    return std::make_shared<CVPixelBuffer>(size, format, std::move(planes), memory);
}

} // namespace lamina
