#include "gpu/endpoints/PictureBuffers.h"

#include <cstddef>
#include <utility>

namespace lamina {

std::uint8_t* PictureBuffers::begin(IntSize size)
{
    if (size != IntSize{m_layout.width, m_layout.height})
        letGo();
    m_layout = CGImageLayout::rgba(size.width, size.height, CGImageAlphaInfo::NoneSkipLast);
    m_current = m_buffers[0].shared.use_count() > 1 ? 1 : 0;
    Memory& memory = m_buffers.at(m_current);
    if (memory.shared.use_count() != 1) { // there is none, or its picture is still read
        PixelBuffer fresh = PixelBuffer::allocate(m_layout.byteCount());
        memory.own = fresh.data();
        memory.shared = std::move(fresh).share();
    }
    return memory.own;
}

CGImage PictureBuffers::end()
{
    return CGImage::make(m_layout, m_buffers.at(m_current).shared, m_layout.byteCount());
}

void PictureBuffers::letGo()
{
    m_buffers = {};
}

} // namespace lamina
