#pragma once

#include "platform/photos/index/PhotoStore_p.h"

#include <memory>
#include <string>

namespace lamina {

/// Rows in memory alone, beginning with these. An empty identity becomes a new one.
std::unique_ptr<PhotoStore> makeMemoryPhotoStore(StoreContents contents);

/// 16 hexadecimal digits by chance.
std::string makeIndexIdentity();

} // namespace lamina
