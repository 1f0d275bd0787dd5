#pragma once

namespace lamina {

/// How a picture takes its place in the target size: wholly inside it, or covering all of it.
enum class PHImageContentMode { AspectFit = 0, AspectFill = 1 };

/// Which answers are wanted. All of them come to the same here: one answer, in full quality.
enum class PHImageRequestOptionsDeliveryMode { Opportunistic = 0, HighQualityFormat = 1, FastFormat = 2 };

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
};

} // namespace lamina
