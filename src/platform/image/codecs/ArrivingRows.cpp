#include "platform/image/codecs/ArrivingRows_p.h"

namespace lamina {

ArrivingRows::ArrivingRows(int width, int height)
    : m_width(width)
    , m_height(height)
    , m_buffer(std::make_shared<PixelBuffer>(PixelBuffer::allocate(bytesPerRow() * static_cast<std::size_t>(height))))
{
}

CGImage ArrivingRows::picture(int count, CGImageAlphaInfo alpha) const
{
    if (count <= 0)
        return {};
    const CGImageLayout layout = CGImageLayout::rgba(m_width, count, alpha);
    return CGImage::make(layout, std::shared_ptr<const std::uint8_t>(m_buffer, m_buffer->data()), layout.byteCount());
}

} // namespace lamina
