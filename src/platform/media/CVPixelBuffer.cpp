#include "platform/media/CVPixelBuffer.h"

#include "platform/image/pixels/PixelBuffer.h"

#include <utility>

namespace lamina {

std::shared_ptr<CVPixelBuffer> CVPixelBuffer::make(IntSize size, CVPixelFormat format)
{
    const auto width = static_cast<std::size_t>(size.width);
    const auto height = static_cast<std::size_t>(size.height);
    const bool isPlanar = format != CVPixelFormat::BGRA && format != CVPixelFormat::RGBA;
    const std::size_t rowBytes = isPlanar ? (width + 15) / 16 * 16 : 4 * width;
    const IntSize half{(size.width + 1) / 2, (size.height + 1) / 2};
    const std::size_t chromaBytes = isPlanar ? rowBytes * static_cast<std::size_t>(half.height) : 0;
    auto memory = std::make_shared<PixelBuffer>(PixelBuffer::allocate(rowBytes * height + chromaBytes));
    if (!*memory)
        return nullptr;
    std::vector<Plane> planes{{memory->data(), rowBytes, size}};
    if (isPlanar)
        planes.push_back({memory->data() + rowBytes * height, rowBytes, half});
    return std::make_shared<CVPixelBuffer>(size, format, std::move(planes), std::move(memory));
}

} // namespace lamina
