#pragma once

#include "platform/base/Result.h"
#include "platform/media/MediaModule_p.h"
#include "platform/media/ffmpeg/FFmpegHandles_p.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace lamina {

/// What an encoder gave for a frame.
struct EncodedFrame {
    std::vector<Packet> packets;
    int error = 0; ///< FFmpeg's; 0: none
};

/// Encodes a frame, or, for null, what is left at the end.
EncodedFrame encodeFrame(AVCodecContext* encoder, const AVFrame* frame);

/// The file that a film becomes. Tracks are added, it is begun, packets come, it is finished. Errors have the file's
/// path as their subject.
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
    /// The next track, to be described before the file is begun; null when memory is short.
    AVStream* reserveTrack();
    const AVStream* track(int index) const { return m_container->streams[index]; }
    /// False when memory is short.
    static bool describe(AVStream* track, const AVCodecContext* encoder);
    /// Whether the container can say how frames are to be turned.
    bool tellsTurns() const { return !isMatroska(); }
    bool hasBegun() const { return m_hasBegun; }
    Outcome begin();
    /// Takes what an encoder gave. A packet that tells no duration gets `duration`, in the encoder's unit.
    Outcome write(const EncodedFrame& encoded, const AVCodecContext* encoder, const AVStream* track,
                  std::int64_t duration);
    /// Takes a packet with times in `unit`, over. What comes before the file is begun waits for that.
    Outcome write(Packet packet, AVRational unit, const AVStream* track);
    std::size_t waitingPackets() const { return m_waiting.size(); }
    /// Writes the index, moves it to the front and closes the file.
    Outcome finish();

    /// Tells how much is done, from 0 to 1; smaller values than before are passed over.
    void tell(double share);
    bool isCancelled() const;
    /// Null when nobody can cancel.
    const std::atomic<bool>* cancelled() const { return m_settings.cancelled; }
    /// An error of FFmpeg's, told as one of this file.
    Error failure(int error) const;

private:
    explicit MovieFile(const FilmSettings& settings);
    int openOutput();
    int writeHeader();
    bool isMatroska() const;
    bool isUnheard(const AVPacket& packet, AVCodecID codec) const;
    static int isCancelledCallback(void* self);

    const FilmSettings& m_settings;
    AVFormatContext* m_container = nullptr;
    bool m_hasBegun = false;
    std::vector<Packet> m_waiting; ///< their units are their own
    double m_told = -1;
};

} // namespace lamina
