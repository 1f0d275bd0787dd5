#pragma once

#include "platform/image/pixels/UIImage.h"

#include <atomic>

namespace lamina {

/// `picture.upright()`, which takes a while for a large picture: once `cancelled` is set, from any thread, it ends
/// within some rows with the empty picture.
UIImage upright(const UIImage& picture, const std::atomic<bool>* cancelled);

} // namespace lamina
