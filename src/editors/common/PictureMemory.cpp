#include "editors/common/PictureMemory.h"

#include "platform/image/pixels/CGImage.h"

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

std::size_t PictureMemory::add(const std::shared_ptr<const std::vector<std::uint8_t>>& file)
{
    return file && m_counted.insert(file.get()).second ? file->size() : 0;
}

} // namespace lamina
