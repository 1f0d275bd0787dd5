#pragma once

#include "platform/base/Result.h"
#include "platform/media/MediaModule_p.h"
#include "platform/media/ffmpeg/FFmpegHandles_p.h"

#include <cstdint>
#include <memory>
#include <string>

namespace lamina {

/// The MP4 file that a film becomes. Tracks are added, then it is begun, then packets come, then it is finished. Errors
/// have the file's path as their subject.
class MovieFile {
public:
    /// `settings` outlives it.
    static Result<std::unique_ptr<MovieFile>> open(const FilmSettings& settings);
    ~MovieFile();
    MovieFile(const MovieFile&) = delete;
    MovieFile& operator=(const MovieFile&) = delete;

    const std::string& path() const { return m_settings.path; }

    /// A track for what an encoder that stands open gives; null when memory is short.
    AVStream* addTrack(const AVCodecContext* encoder);
    Outcome begin();
    /// Encodes a frame, or, for null, what is left at the end, and takes the packets. A packet that tells no duration
    /// gets `duration`, in the encoder's unit.
    Outcome encode(AVCodecContext* encoder, const AVFrame* frame, AVStream* track, std::int64_t duration);
    /// Writes the index, moves it to the front and closes the file.
    Outcome finish();

    /// Tells how much is done, from 0 to 1; smaller values than before are passed over.
    void tell(double share);
    bool isCancelled() const;
    /// An error of FFmpeg's, told as one of this file.
    Error failure(int error) const;

private:
    explicit MovieFile(const FilmSettings& settings);
    int openOutput();
    static int isCancelledCallback(void* self);

    const FilmSettings& m_settings;
    AVFormatContext* m_container = nullptr;
    Packet m_packet;
    double m_told = -1;
};

} // namespace lamina
