#include "editors/common/PictureMemory.h"

namespace lamina {

std::size_t PictureMemory::add(const UIImage& picture)
{
    std::size_t added = 0;
    for (const CGImage* part = &picture.cgImage(); part != nullptr && *part; part = part->mask()) {
        if (m_counted.insert(part->bytes().data()).second)
            added += part->bytes().size();
    }
    return added;
}

} // namespace lamina
