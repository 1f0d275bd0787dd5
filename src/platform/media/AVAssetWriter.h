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

    /// Whether a piece may be appended now: fewer than three of them wait to be encoded, or one where it is large and
    /// not in real time; of sound in real time, which nobody can give again, fewer than two hundred.
    virtual bool isReadyForMoreMediaData() const = 0;
    /// Waits until it is ready, finished, or its writer writes no longer; at most `seconds`. Whether it is ready.
    virtual bool waitUntilReady(double seconds) = 0;
    /// Video takes frames of the settings' size in `BGRA`, `RGBA`, `BiPlanar420…` or `AsDecoded`; sound takes
    /// numbers, or packets where the input has no settings; the first frame tells the tags of all. Frames that are not
    /// after the one before are passed over. False, and nothing was taken, when it isn't ready, or the piece is no such
    /// one.
    virtual bool appendSampleBuffer(const CMSampleBuffer& sample) = 0;
    /// Nothing more comes; once is enough.
    virtual void markAsFinished() = 0;
    /// Whether that was said.
    virtual bool isFinished() const = 0;
    /// Runs `block` on the queue as often as the input becomes ready, until it is finished or the writer's end; when
    /// writing has failed it runs once more, to see that. The queue must live as long as the block, which may hold it.
    /// A block that appended nothing runs again after a hundredth of a second.
    virtual void requestMediaDataWhenReady(DispatchQueue& queue, std::function<void()> block) = 0;
};

/// Writes a movie that takes the target's name at its end, as a plain file with its index in front. Until then it is
/// one of two:
///
/// - a *conversion*, without fragments: it can be made again, and a kill or Ctrl-C leaves nothing that stays;
/// - a *recording*, in fragments, which can't: it grows as "STEM.recording-1a2b3c4d.EXT" beside the target. A kill or
///   the loss of power leaves that to be played, and so does a failure, whose cause then names it.
///
/// Times come back exactly in .mp4 and .mov where their timescale is one of the first frame's or divides 90,000;
/// Matroska knows milliseconds. Matroska can't say that frames are turned either: they are turned themselves. The same
/// pieces give the same bytes, on any number of processors.
///
/// An input that runs a second ahead of another waits for it, but no longer than a quarter of a second of real time;
/// for the first frame of a movie without fragments a minute: it tells how all are encoded. Inputs that come in real
/// time are not waited for.
///
/// From any thread. Destroyed before its end it cancels.
class AVAssetWriter {
public:
    virtual ~AVAssetWriter() = default;

    /// Creates nothing yet. An error: the module isn't installed, the type isn't known, or an encoder is missing, by
    /// name. The error's subject is the path.
    static Result<std::unique_ptr<AVAssetWriter>> make(const std::string& path, const std::string& fileType);

    /// Before `startWriting`: how much of the movie a fragment holds, which makes it a recording; zero or invalid, as
    /// at first: a conversion.
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
    /// Nothing stays, and the target is as it was. Within 100 ms: a frame that is being encoded is left to itself.
    virtual void cancelWriting() = 0;
    /// Returns at once. Encodes what waits, writes the index, takes the target's name; then, also when it failed or is
    /// cancelled, runs the handler, on a thread of its own. A writer that isn't writing only runs the handler.
    virtual void finishWriting(std::function<void()> handler) = 0;
};

} // namespace lamina
