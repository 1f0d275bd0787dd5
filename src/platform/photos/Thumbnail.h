#pragma once

#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"

#include <atomic>
#include <string>

namespace lamina {

/// The middle square of a picture file, upright and in sRGB, as `side` × `side` pixels, or as many as the picture's
/// shorter side has if those are fewer: nothing is enlarged. Premultiplied where the picture is translucent, else
/// skip-last; scale 1. Formats that can be read at a reduced size are.
///
/// Set `cancelled` from any thread to stop; the errors are those of `loadPicture`. Takes its time; usable from any
/// thread.
Result<UIImage> loadThumbnail(const std::string& path, int side, const std::atomic<bool>* cancelled = nullptr);

} // namespace lamina
