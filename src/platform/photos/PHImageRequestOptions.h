#pragma once

#include <cstddef>
#include <functional>
#include <string>

namespace lamina {

/// How a picture takes its place in the target size: wholly inside it, or covering all of it.
enum class PHImageContentMode { AspectFit = 0, AspectFill = 1 };

/// Which answers are wanted.
enum class PHImageRequestOptionsDeliveryMode {
    Opportunistic = 0,     ///< a coarse one first where one is quickly at hand, then the final one
    HighQualityFormat = 1, ///< the final one alone
    FastFormat = 2,        ///< the same as high quality here
};

/// What the target size means.
enum class PHImageRequestOptionsResizeMode {
    None = 0,  ///< nothing: the picture comes at its own size
    Fast = 1,  ///< reduced to what fits or covers the target, never enlarged
    Exact = 2, ///< fits or covers the target to the pixel, enlarged where it must be; one that covers it overhangs in
               ///< one direction, and nothing is cut. What would take more memory than any picture may comes at its own
               ///< size
};

/// How a picture is asked for.
struct PHImageRequestOptions {
    PHImageRequestOptionsDeliveryMode deliveryMode = PHImageRequestOptionsDeliveryMode::Opportunistic;
    /// Whether a picture that is not on this device may be fetched. The library's folders are all on it.
    bool networkAccessAllowed = false;
    PHImageRequestOptionsResizeMode resizeMode = PHImageRequestOptionsResizeMode::Fast;
    /// The answer comes before the request returns; the caller waits for file and decoder.
    bool synchronous = false;
    /// The most memory for the picture's pixels, in bytes. One of which more is wanted comes as large as this allows,
    /// so long as a target size is given; with the maximum size it fails.
    std::size_t memoryLimit = std::size_t{256} << 20;
    /// Hears, just before the result, what is to be said of a photo that is damaged and shown as far as it goes; the
    /// log tells it in any case, but for thumbnails. May be empty.
    std::function<void(const std::string& warning)> warningHandler = {};
};

} // namespace lamina
