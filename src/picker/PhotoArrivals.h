#pragma once

#include "platform/base/Result.h"
#include "platform/photos/PHAsset.h"
#include "platform/photos/PhotoSource.h"

#include <functional>
#include <vector>

namespace lamina {

/// What has become of photos that came from outside.
struct PhotoArrivals {
    std::vector<PHAsset> assets; ///< in their order
    std::vector<Error> refused;  ///< of those that are none: the name, and why
};

/// Makes assets of photos: files are shown by the library as they are, bytes are saved into it. Returns at once; the
/// handler is called once, on the main queue, which counts as busy until then. From the main thread.
void takeIntoLibrary(std::vector<PhotoSource> photos, std::function<void(const PhotoArrivals& arrivals)> handler);

} // namespace lamina
