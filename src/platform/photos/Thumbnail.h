#pragma once

#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"

#include <atomic>
#include <string>

namespace lamina {

/// The middle square of a picture file, upright and in sRGB, as `side` × `side` pixels (1 to 640), or as many as the
/// picture's shorter side has if those are fewer: nothing is enlarged. Scale 1; what is translucent lies on white. It
/// comes from the caches of thumbnails where these have it, and is kept there.
///
/// Set `cancelled` from any thread to stop; the errors are those of `loadPicture`. Takes its time; usable from any
/// thread.
Result<UIImage> loadThumbnail(const std::string& path, int side, const std::atomic<bool>* cancelled = nullptr);

} // namespace lamina
