#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/base/CMTime.h"
#include "platform/base/Result.h"
#include "platform/media/AVAsset.h"
#include "platform/media/AVAssetReader.h"
#include "platform/media/CMSampleBuffer.h"
#include "platform/media/CVPixelBuffer.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

namespace lamina {

class DispatchQueue;

/// How far a writer has come.
enum class AVAssetWriterStatus { Unknown = 0, Writing = 1, Completed = 2, Failed = 3, Cancelled = 4 };

/// Containers, by the names that settings use.
inline constexpr const char* kAVFileTypeQuickTimeMovie = "com.apple.quicktime-movie"; ///< .mov
inline constexpr const char* kAVFileTypeMPEG4 = "public.mpeg-4";                      ///< .mp4
inline constexpr const char* kAVFileTypeMatroska = "org.matroska.mkv";                ///< .mkv

/// H.264, High profile, 4:2:0 of 8 bits. An odd side is made even by its last row or column, once more.
struct AVVideoSettings {
    IntSize size;         ///< of the frames that come
    int crf = 24;         ///< x264's measure of loss, 1 to 51
    double frameRate = 0; ///< frames a second, on the average; 0: not known
};

/// AAC; what comes is resampled to it, and gaps are filled with silence.
struct AVAudioSettings {
    int sampleRate = 44100;
    int channels = 1;
    int bitsPerSecond = 64000;
};

/// One track of a movie on its way in. From any thread, but one append at a time.
class AVAssetWriterInput {
public:
    virtual ~AVAssetWriterInput() = default;
    /// What its pieces are.
    virtual AVTrackMediaType mediaType() const = 0;

    /// True: whoever appends drops what comes while it isn't ready, instead of waiting. Before `startWriting`.
    virtual void setExpectsMediaDataInRealTime(bool realTime) = 0;
    /// False at first.
    virtual bool expectsMediaDataInRealTime() const = 0;
    /// How players are to turn the frames. Before `startWriting`.
    virtual void setTransform(const AVTrackTransform& transform) = 0;
    /// None at first.
    virtual AVTrackTransform transform() const = 0;

    /// Whether a piece may be appended now: fewer than three of them wait to be encoded.
    virtual bool isReadyForMoreMediaData() const = 0;
    /// Waits until it is ready, finished, or its writer writes no longer; at most `seconds`. Whether it is ready.
    virtual bool waitUntilReady(double seconds) = 0;
    /// Video takes frames of the settings' size in `BGRA`, `RGBA`, `BiPlanar420…` or `AsDecoded`; sound takes
    /// numbers, or packets where the input has no settings. False when it failed: the writer's `error` says why.
    virtual bool appendSampleBuffer(const CMSampleBuffer& sample) = 0;
    /// Nothing more comes; once is enough.
    virtual void markAsFinished() = 0;
    /// Whether that was said.
    virtual bool isFinished() const = 0;
    /// Runs `block` on the queue as often as the input becomes ready, until it is finished or the writer's end.
    virtual void requestMediaDataWhenReady(DispatchQueue& queue, std::function<void()> block) = 0;
};

/// Writes a movie: to an unfinished file beside the target, in fragments that a player can play when writing breaks
/// off, then as a plain file with its index in front, which takes the target's name. The same pieces give the same
/// bytes, on any number of processors.
///
/// From any thread. Destroyed before its end it cancels.
class AVAssetWriter {
public:
    virtual ~AVAssetWriter() = default;

    /// Creates nothing yet. An error: the module isn't installed, the type isn't known, or an encoder is missing, by
    /// name. The error's subject is the path.
    static Result<std::unique_ptr<AVAssetWriter>> make(const std::string& path, const std::string& fileType);

    /// Before `startWriting`: how much of the movie a fragment holds; zero or invalid: no fragments, nothing playable
    /// before the end.
    virtual void setMovieFragmentInterval(const CMTime& interval) = 0;
    /// Title, comment and such, by FFmpeg's names. Before `startWriting`.
    virtual void setMetadata(const std::map<std::string, std::string>& metadata) = 0;
    /// As it was set.
    virtual const std::map<std::string, std::string>& metadata() const = 0;

    /// A track of pictures. Before `startWriting`.
    virtual Result<std::shared_ptr<AVAssetWriterInput>> addVideoInput(const AVVideoSettings& settings) = 0;
    /// A track of sound that is encoded. Before `startWriting`.
    virtual Result<std::shared_ptr<AVAssetWriterInput>> addAudioInput(const AVAudioSettings& settings) = 0;
    /// Packets of the asset's sound are passed on as they are stored; the error names the codec where the container
    /// can't hold it. Before `startWriting`.
    virtual Result<std::shared_ptr<AVAssetWriterInput>> addStoredAudioInput(const AVURLAsset& asset) = 0;

    /// Creates the unfinished file.
    virtual Outcome startWriting() = 0;
    /// The time of the pieces that becomes zero in the movie; what lies before it is cut. Once.
    virtual void startSessionAtSourceTime(const CMTime& time) = 0;
    /// How far it has come.
    virtual AVAssetWriterStatus status() const = 0;
    /// Why it failed; nothing otherwise.
    virtual std::optional<Error> error() const = 0;
    /// Nothing stays, and the target is as it was.
    virtual void cancelWriting() = 0;
    /// Encodes what waits, writes the index, takes the target's name; then runs the handler, on a thread of its own.
    virtual void finishWriting(std::function<void()> handler) = 0;
};

} // namespace lamina
