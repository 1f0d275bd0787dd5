#pragma once

#include "platform/image/pixels/UIImage.h"

#include <cstddef>
#include <memory>
#include <span>
#include <string_view>

namespace lamina {

class GPUImageOutput;

inline constexpr int kFirstCollageFilter = 500;
inline constexpr std::size_t kCollageFilterCount = 14;

/// A look of the filter panel.
struct CollageFilter {
    int tag;
    const char* name; ///< English, translated where it is shown
    /// A new filter as its class makes it; null: the picture stays as it is. From any thread.
    std::shared_ptr<GPUImageOutput> (*make)();
    /// Of that filter, by which its properties are described; empty where there is none.
    std::string_view className = {};

    /// The picture through the look; empty when it fails. From any thread.
    UIImage applied(const UIImage& picture) const;
};

/// All looks, in the order of the panel and of their tags.
std::span<const CollageFilter> collageFilters();
/// The one of that tag; null: there is none.
const CollageFilter* findCollageFilter(int tag);

} // namespace lamina
