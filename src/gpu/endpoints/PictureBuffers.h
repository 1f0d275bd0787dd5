#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/PixelBuffer.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace lamina {

/// Two pictures' memory, of which one may be on show while the other is drawn: as long as nobody else holds them, none
/// is made after the first two. One thread at a time.
class PictureBuffers {
public:
    /// Memory for an opaque picture of this size that nobody reads. Null: memory is short.
    std::uint8_t* begin(IntSize size);
    /// The picture of what was written since.
    CGImage end();
    /// Forgets all memory; what is still read stays with its readers.
    void letGo();

private:
    struct Memory {
        std::shared_ptr<const std::uint8_t> shared;
        std::uint8_t* own = nullptr;
    };

    std::array<Memory, 2> m_buffers;
    std::size_t m_current = 0;
    CGImageLayout m_layout;
};

} // namespace lamina
