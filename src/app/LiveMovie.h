#pragma once

#include "app/LiveSource.h"
#include "gpu/endpoints/GPUImageMovie.h"
#include "platform/base/CMTime.h"
#include "platform/base/Result.h"
#include "platform/media/AVAsset.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace lamina {

class LiveMovieSound;

/// A movie as the source of the live screen: played at its own pace, over and over, from where it was stopped.
///
/// Each stretch that is played is a `GPUImageMovie` of its own, which ends with a stop, a jump and the movie's end.
class LiveMovie : public LiveSource {
public:
    /// Finds the movie's tracks in the background and tells the main thread; an error where it is none, or has no
    /// picture.
    static void open(const std::string& path,
                     std::function<void(const Result<std::shared_ptr<const AVURLAsset>>&)> done);

    LiveMovie(std::shared_ptr<LiveFrames> frames, std::shared_ptr<const AVURLAsset> asset);
    ~LiveMovie() override;

    Outcome start() override;
    void stop() override;
    bool isRunning() const override { return m_pass != nullptr; }
    bool isLive() const override { return false; }
    bool hasSound() const override { return !m_asset->audioTracks().empty(); }
    void setRecorder(std::shared_ptr<GPUImageAudioEncodingTarget> recorder) override;

    const std::string& path() const { return m_asset->path(); }
    /// Seconds.
    double duration() const { return m_asset->duration().seconds(); }
    /// Seconds, of the frame that is seen.
    double position() const;
    /// Plays from there on.
    void seek(double seconds);

private:
    class Ending;

    void begin(const CMTime& from);
    void end();
    void ended(const GPUImageMovie* pass, const std::optional<Error>& error);
    CMTime reached() const;

    std::shared_ptr<const AVURLAsset> m_asset;
    CMTime m_position = kCMTimeZero; ///< where the stretch began, or will begin
    std::shared_ptr<GPUImageMovie> m_pass;
    std::shared_ptr<Ending> m_ending;
    std::shared_ptr<GPUImageAudioEncodingTarget> m_recorder;
    std::shared_ptr<LiveMovieSound> m_sound; ///< of the stretch
    CMTime m_offset = kCMTimeZero;           ///< from the movie's times to the recording's
    CMTime m_recordedEnd = kCMTimeZero;      ///< where the recording's next stretch begins
};

} // namespace lamina
