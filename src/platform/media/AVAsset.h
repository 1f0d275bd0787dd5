#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/base/CMTime.h"
#include "platform/base/Result.h"
#include "platform/files/FileReading.h"
#include "platform/media/CVPixelBuffer.h"

#include <atomic>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace lamina {

/// From `start` on, for `duration`; an invalid or infinite duration means to the end.
struct CMTimeRange {
    CMTime start = kCMTimeZero;
    CMTime duration = kCMTimePositiveInfinity;
};

/// How the stored rows of a track must be turned to be seen upright: quarters clockwise, after a mirroring from left to
/// right. Other matrices are taken for the nearest of these.
struct AVTrackTransform {
    int quarters = 0; ///< 0 to 3
    bool mirrors = false;

    /// Whether width and height change places.
    bool swapsSides() const { return quarters % 2 != 0; }
    friend bool operator==(const AVTrackTransform&, const AVTrackTransform&) = default;
};

/// What a movie says of its picture.
struct AVVideoTrack {
    IntSize naturalSize; ///< of the frames as readers give them: stored rows, in square pixels, not turned
    AVTrackTransform preferredTransform;
    double nominalFrameRate = 0;    ///< frames a second on the average; 0 where it can't be told
    CMTime startTime = kCMTimeZero; ///< of the first frame, in the movie's own time
    bool isFullRange = false;       ///< as tagged: black is 0 and white is 255, not 16 and 235
    std::string codec;
};

/// What a movie says of its sound.
struct AVAudioTrack {
    int sampleRate = 0;
    int channels = 0;
    std::string codec;
};

/// A movie file that can be read: it stands open as long as the asset lives. Only the file itself is read, whatever it
/// names beside it; containers and codecs are those of a list. From any thread.
class AVURLAsset {
public:
    /// Finds its tracks; blocks, for at most ten seconds. One picture that is no cover, and one sound; a movie may lack
    /// either, not both. The subject of an error is the path. `cancelled` may end it early.
    static Result<std::shared_ptr<const AVURLAsset>> make(const std::string& path,
                                                          const std::atomic<bool>* cancelled = nullptr);

    /// As it was given.
    const std::string& path() const { return m_path; }
    /// Of the open file; its offset is nobody's.
    int descriptor() const { return m_file.descriptor.get(); }
    /// What its times count from, in the movie's own time: the first frame, or the first sound where there is no
    /// picture or it comes more than a tenth of a second later.
    CMTime startTime() const { return m_startTime; }
    /// Of the whole from there on, sound included; zero where the movie doesn't tell.
    CMTime duration() const { return m_duration; }
    /// At most one each.
    const std::vector<AVVideoTrack>& videoTracks() const { return m_video; }
    const std::vector<AVAudioTrack>& audioTracks() const { return m_audio; }

private:
    AVURLAsset(std::string path, OpenedFile file)
        : m_path(std::move(path))
        , m_file(std::move(file))
    {
    }

    std::string m_path;
    OpenedFile m_file;
    CMTime m_startTime = kCMTimeZero;
    CMTime m_duration = kCMTimeZero;
    std::vector<AVVideoTrack> m_video;
    std::vector<AVAudioTrack> m_audio;
};

} // namespace lamina
