#pragma once

#include "platform/base/Deadline.h"
#include "platform/base/Result.h"
#include "platform/media/MediaModule_p.h"
#include "platform/media/ffmpeg/FFmpegHandles_p.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace lamina {

namespace cause {
inline constexpr const char* kNoClip = "not a clip that can be read";
inline constexpr const char* kClipWithoutPicture = "the clip holds no picture";
inline constexpr const char* kClipDamaged = "the clip is damaged";
inline constexpr const char* kClipTooLarge = "the picture of the clip is too large";
inline constexpr const char* kClipTooLong = "the clip takes too long to be read";
} // namespace cause

/// A clip's container: its tracks, and their packets in the order of the file. It reads the open file and nothing else:
/// whatever a container names beside it is refused.
class ClipSource {
public:
    /// Which tracks are read; others are passed over.
    enum class Tracks { Picture, PictureAndSound, Sound, Any };

    /// A clip that lacks the picture (of `Sound`: the sound; of `Any`: both) is an error.
    static Result<std::unique_ptr<ClipSource>> open(const ClipFile& file, Tracks tracks);
    ~ClipSource();
    ClipSource(const ClipSource&) = delete;
    ClipSource& operator=(const ClipSource&) = delete;

    const ClipFile& file() const { return m_file; }
    AVFormatContext* container() { return m_container; }
    AVStream* picture() { return m_picture; } ///< null when only sound is read, or there is none
    AVStream* sound() { return m_sound; }     ///< null when there is none, or it is not read

    /// The next packet of a track that is read; false at the end of the file. One that ends too early is an error.
    Result<bool> read(AVPacket* packet);
    /// To the last place from which everything at `seconds` of the picture can be decoded; false where that fails.
    bool seek(double seconds);
    /// The same by the container's own time, and for the sound where the picture isn't read.
    bool seekTo(double seconds);

    /// The time at which the picture begins, in seconds of the container.
    double start() const;
    /// How much of the clip was read, from 0 to 1: of its time, or of its bytes where it doesn't tell how long it is.
    double share() const;
    /// Gives up from now on only when cancelled, however long it takes.
    void waitForEver() { m_deadline.reset(); }
    /// Whether reading should stop, and the cause.
    bool isOver() const;
    std::string overCause() const;

private:
    explicit ClipSource(const ClipFile& file);
    int openContainer();
    Outcome chooseTracks(Tracks tracks);
    AVStream* findPicture();
    bool tellsDuration(const AVStream* stream) const;
    bool knowsOwnEnds() const;
    bool accepts(const AVStream* stream) const;
    Error failure(int error) const;
    bool endsTooEarly() const;
    void note(const AVPacket* packet);

    static int readBytes(void* self, std::uint8_t* bytes, int count);
    static std::int64_t moveTo(void* self, std::int64_t offset, int whence);
    static int isOverCallback(void* self);

    ClipFile m_file;
    Deadline m_deadline;
    AVIOContext* m_bytes = nullptr;
    AVFormatContext* m_container = nullptr;
    AVStream* m_picture = nullptr;
    AVStream* m_sound = nullptr;
    std::vector<bool> m_tellsDuration; ///< by the streams' indices
    std::int64_t m_size = 0;
    std::int64_t m_position = 0;
    std::int64_t m_farthest = 0;
    double m_end = 0;       ///< of the packets so far, in seconds of the container
    bool m_pastEnd = false; ///< something was looked for behind the end
};

} // namespace lamina
