#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/base/CMTime.h"
#include "platform/base/Result.h"
#include "platform/media/AVAsset.h"
#include "platform/media/CMSampleBuffer.h"
#include "platform/media/CVPixelBuffer.h"
#include "platform/media/ClipDetails.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// What the module with FFmpeg does, as functions that are looked up when it is loaded. It reads and writes by open
/// descriptors and plain memory, so that it shares no state with the libraries of the program. An error of writing has
/// the path of FilmSettings as its subject, any other none.
namespace lamina {

class MovieWriting;

/// When to give up.
struct Patience {
    const std::atomic<bool>* cancelled = nullptr;
    double seconds = 0; ///< for finding one's way in; 0: without end
};

/// A clip to be read: a regular file that stands open for as long as the call lasts.
struct ClipFile {
    int descriptor = -1;
    std::size_t memoryLimit = 0; ///< bytes for one frame of RGBA
    Patience patience;
};

/// Rows of R G B and a byte that is not looked at.
struct PictureRows {
    const std::uint8_t* pixels = nullptr;
    std::size_t bytesPerRow = 0;
    IntSize size;
};

/// How a film is written.
struct FilmSettings {
    std::string path; ///< of an empty file that may be read too
    int crf = 24;
    const std::function<void(double)>* progress = nullptr;
    const std::atomic<bool>* cancelled = nullptr;
    const char* container = "mp4"; ///< by FFmpeg's name: mp4, mov or matroska
    double fragmentSeconds = 0;    ///< above 0: in fragments of about so long, each playable once it is there
    std::map<std::string, std::string> metadata = {};
};

/// A picture and its sound.
struct StillFilm {
    PictureRows picture;
    int frames = 0;                ///< of 1/30 second
    std::optional<ClipFile> sound; ///< repeated as often as needed
};

/// What a movie says of itself.
struct AssetDetails {
    CMTime startTime;
    CMTime duration;
    std::vector<AVVideoTrack> video;
    std::vector<AVAudioTrack> audio;
};

/// Which track of a movie is read, and how.
struct TrackRequest {
    enum class Content { Pictures, Sound, StoredSound };
    using MakeBuffer = std::shared_ptr<CVPixelBuffer> (*)(IntSize size, CVPixelFormat format);

    Content content = Content::Pictures;
    CMTime startTime;  ///< what counts as zero, in the movie's own time
    CMTimeRange range; ///< counted from there
    CVPixelFormat format = CVPixelFormat::BGRA;
    IntSize size; ///< of the frames
    MakeBuffer makeBuffer = nullptr;
};

/// One track of a movie, piece by piece; each reads the file by itself. By one thread at a time.
class TrackReading {
public:
    virtual ~TrackReading() = default;
    /// The next piece; an invalid one at the end. After an error nothing more comes.
    virtual Result<CMSampleBuffer> next() = 0;
};

/// The functions. Every error is a value; nothing is thrown.
struct MediaModule {
    /// Gives memory for rows of RGBA without padding, or null.
    using Allocate = std::function<std::uint8_t*(IntSize size)>;
    /// The size of the frames of a film, for that of a clip's.
    using SizeRule = std::function<IntSize(IntSize size)>;

    const char* version; ///< of Lamina, which must be the program's
    Result<ClipDetails> (*details)(const ClipFile& clip);
    /// The time of the frame found; its rows are in the memory that `allocate` gave, which is asked once.
    Result<double> (*frame)(const ClipFile& clip, double seconds, ClipDetails& details, const Allocate& allocate);
    Outcome (*writeStill)(const StillFilm& still, const FilmSettings& settings);
    Outcome (*convert)(const ClipFile& clip, const SizeRule& size, const FilmSettings& settings);
    /// In such a container; an error when an encoder is missing.
    Result<std::unique_ptr<MovieWriting>> (*writeMovie)(const char* container);
    /// Writes what stands in a file of fragments once more, as a plain movie.
    Outcome (*rewriteMovie)(const std::string& fragments, const FilmSettings& settings);
    Result<AssetDetails> (*asset)(const ClipFile& clip);
    /// The file stands open for as long as the reading lives; the patience's seconds count for the way in alone.
    Result<std::unique_ptr<TrackReading>> (*readTrack)(const ClipFile& clip, const TrackRequest& request);
};

/// The name under which the module gives its functions: `const MediaModule* laminaMediaModule()`.
inline constexpr const char* kMediaModuleEntry = "laminaMediaModule";

/// The module, loaded when it is first asked for. The error, without a subject, is the same at every call.
Result<const MediaModule*> mediaModule();

} // namespace lamina
