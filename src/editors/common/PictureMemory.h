#pragma once

#include "platform/image/pixels/UIImage.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_set>
#include <vector>

namespace lamina {

/// Adds up the memory of pictures that share their pixels: what was counted once costs nothing more. A plain value; the
/// pictures must outlive it, for their addresses are what it knows them by.
class PictureMemory {
public:
    /// Bytes that the picture adds to those counted so far: those of its pixels and of its mask.
    std::size_t add(const UIImage& picture);
    /// The same of a picture's file; null: none.
    std::size_t add(const std::shared_ptr<const std::vector<std::uint8_t>>& file);

private:
    std::unordered_set<const void*> m_counted;
};

} // namespace lamina
