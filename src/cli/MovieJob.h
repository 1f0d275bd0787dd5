#pragma once

#include "cli/ExitCode.h"
#include "cli/MovieChain.h"
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

    const AVVideoTrack& picture() const { return asset->videoTracks().front(); }
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

    /// Waits for `finish` on the main thread, whose queue goes on meanwhile, and tells ten times a second how much of
    /// the job is done, 0 to 1.
    void waitFor(const MovieJob& job, const std::function<void(double)>& tell);

private:
    double share(const MovieJob& job) const;

    std::atomic<int> m_frames{0};
    std::atomic<double> m_seconds{0};
    std::atomic<bool> m_isOver{false};
};

/// The sound that is made where packets can't be passed on: the asset's rate and channels, as far as AAC has them.
AVAudioSettings soundSettings(const AVAudioTrack& sound);

/// How a job ends whose reader and writer have come to theirs: what failed first is what is told, and nothing is left
/// behind then.
MovieEnd endOf(const MovieJob& job, const std::optional<Error>& reading, AVAssetWriter& writer,
               MovieProgress& progress);

} // namespace lamina
