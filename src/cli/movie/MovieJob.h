#pragma once

#include "cli/common/ExitCode.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/CMTime.h"
#include "platform/base/Result.h"
#include "platform/media/AVAsset.h"
#include "platform/media/AVAssetWriter.h"

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace lamina {

class MovieChain;

/// The sides of a track's frames as they are seen.
IntSize uprightSize(const AVVideoTrack& picture);

/// A movie that is to become another.
struct MovieJob {
    std::shared_ptr<const AVURLAsset> asset; ///< that has a picture
    std::string output;
    std::string fileType; ///< of AVAssetWriter
    int crf = 18;
    CMTimeRange range;
    std::optional<IntSize> size; ///< of the output, upright; none: what comes out of the filters
    bool isMute = false;
    const MovieChain* chain = nullptr; ///< that was read

    /// Its track.
    const AVVideoTrack& picture() const { return asset->videoTracks().front(); }
    /// Of the frames, upright.
    IntSize shownSize() const { return uprightSize(picture()); }
    /// Null where there is none, or none is wanted.
    const AVAudioTrack* sound() const
    {
        return isMute || asset->audioTracks().empty() ? nullptr : &asset->audioTracks().front();
    }
};

/// What became of it.
struct MovieEnd {
    ExitCode code = ExitCode::Good;
    Error error = {}; ///< of any other code
    int frames = 0;

    /// What became of one that went wrong.
    static MovieEnd failed(Error error, ExitCode code) { return {code, std::move(error), 0}; }
};

/// How far a conversion is. From any thread.
class MovieProgress {
public:
    /// A frame of that time of the asset has been handed to the writer.
    void count(const CMTime& time)
    {
        ++m_frames;
        m_seconds = time.seconds();
    }
    /// The work is over, for good or not.
    void finish();
    int frames() const { return m_frames; }
    bool isOver() const { return m_isOver; }

    /// Waits for `finish` on the main thread, whose queue goes on meanwhile, and calls `meanwhile` ten times a second.
    void wait(const std::function<void()>& meanwhile = {}) const;
    /// The same, telling how much of the job is done, 0 to 1.
    void waitFor(const MovieJob& job, const std::function<void(double)>& tell) const;

private:
    double share(const MovieJob& job) const;

    std::atomic<int> m_frames{0};
    std::atomic<double> m_seconds{0};
    std::atomic<bool> m_isOver{false};
};

/// The sound that is made where packets can't be passed on: the asset's rate and channels, as far as AAC has them.
AVAudioSettings soundSettings(const AVAudioTrack& sound);

/// The end of a writer, whichever class it is.
struct WriterControl {
    std::function<std::optional<Error>()> error; ///< why nothing, or nothing more, can be written
    std::function<void()> cancel;
    std::function<void(std::function<void()>)> finish; ///< calls what it is given once the file stands, or can't
};

/// How a movie ends whose frames are all handed over, or that broke off: what failed first is told, and nothing is left
/// behind then. `input`: where frames come from; `reading`: what that has failed with; `meanwhile` is called ten times
/// a second while the file is finished.
MovieEnd endOf(const std::string& input, const std::optional<Error>& reading, const WriterControl& writing,
               const MovieProgress& progress, const std::function<void()>& meanwhile = {});

} // namespace lamina
