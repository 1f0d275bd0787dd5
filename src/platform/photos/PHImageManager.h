#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/photos/PHAsset.h"
#include "platform/photos/PHImageRequestOptions.h"

#include <cstdint>
#include <functional>
#include <memory>

namespace lamina {

/// Names a request of one manager while it is under way.
using PHImageRequestID = std::int32_t;
inline constexpr PHImageRequestID PHInvalidImageRequestID = 0;

/// A target size that asks for all pixels there are.
inline constexpr CGSize PHImageManagerMaximumSize{-1, -1};

/// Gives pictures of the library's assets at the size at which they are needed. Operations may be called from any
/// thread.
class PHImageManager {
public:
    /// Hears a picture: upright, scale 1, in sRGB. The empty picture when the file can't be read or memory is short;
    /// that one is final, and the log tells the cause.
    using ResultHandler = std::function<void(const UIImage& result)>;

    PHImageManager();
    /// Cancels what is under way. Main thread.
    virtual ~PHImageManager();
    PHImageManager(const PHImageManager&) = delete;
    PHImageManager& operator=(const PHImageManager&) = delete;

    /// Gives the asset's picture for `targetSize` (pixels, rounded to whole ones; a side that is not positive and
    /// finite asks for the maximum size). The decoder reduces on the way where its format can.
    ///
    /// A synchronous request calls the handler once, before this returns, and its identifier is
    /// `PHInvalidImageRequestID`. Any other calls it on later turns of the main queue, which counts as busy until then:
    /// once with the final picture, and before that, when the delivery is opportunistic, perhaps with a coarser and
    /// smaller one that was at hand, such as the thumbnail that a camera puts into its files.
    ///
    /// Thumbnails (at most 640 pixels a side) are made by two threads, the newest request first, and come from caches
    /// in memory and on disk where these have them; what is translucent lies on white in them.
    PHImageRequestID requestImageForAsset(const PHAsset& asset, CGSize targetSize, PHImageContentMode contentMode,
                                          const PHImageRequestOptions& options, ResultHandler resultHandler);

    /// Stops a request; called on the main thread, its handler is not called any more. A thumbnail that waits is not
    /// begun. One that is finished or unknown is ignored.
    void cancelImageRequest(PHImageRequestID requestID);

private:
    class Requests;
    std::shared_ptr<Requests> m_requests;
};

} // namespace lamina
