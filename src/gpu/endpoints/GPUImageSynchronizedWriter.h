#pragma once

#include <functional>

namespace lamina {

/// A writer that pulls what it writes: `GPUImageMovieWriter`, as a movie that is read in lockstep with it sees it.
/// The writer is a target of the graph too, and the movie's `audioEncodingTarget` where there is sound.
class GPUImageSynchronizedWriter {
public:
    virtual ~GPUImageSynchronizedWriter() = default;

    /// Brings the next piece by way of the graph, or of `processAudioBuffer`, before it returns; false when there is
    /// none any more, and the input is then finished.
    using InputReadyCallback = std::function<bool()>;
    /// Set before `enableSynchronizationCallbacks` and replaced at the movie's end, often within a call of the very
    /// callback: the writer calls a copy, and these don't wait for a call that is under way. From any thread.
    virtual void setVideoInputReadyCallback(InputReadyCallback callback) = 0;
    /// The same for sound.
    virtual void setAudioInputReadyCallback(InputReadyCallback callback) = 0;
    /// From now on each input calls its callback whenever it is ready, on a queue of its own.
    virtual void enableSynchronizationCallbacks() = 0;
};

} // namespace lamina
