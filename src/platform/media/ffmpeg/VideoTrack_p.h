#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/base/Result.h"
#include "platform/media/MediaModule_p.h"
#include "platform/media/ffmpeg/FFmpegHandles_p.h"
#include "platform/media/ffmpeg/MovieFile_p.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace lamina {

/// The track of pictures of a film: H.264 High, each picture as long as told.
class VideoTrack {
public:
    /// What the film shows: a still lets the encoder keep more of its grain.
    enum class Content { Still, Motion };

    /// Before the file is begun. `size`: of the pictures; `rate`: frames a second, on the average.
    static Result<std::unique_ptr<VideoTrack>> add(MovieFile& file, IntSize size, AVRational rate, int crf,
                                                   Content content);

    /// Takes the next picture over, of the size told, in R G B and a byte more.
    Outcome setPicture(const PictureRows& picture);
    /// Shows the picture from `time` on, in seconds; what is not after the picture before is dropped. `duration`, in
    /// seconds, counts for the last one alone.
    Outcome show(double time, double duration);
    /// Nothing comes any more.
    Outcome finish();

private:
    explicit VideoTrack(MovieFile& file)
        : m_file(file)
    {
    }
    Outcome open(IntSize size, AVRational rate, int crf, Content content);
    bool prepareFrame();
    PictureRows withEvenSides(const PictureRows& picture);
    Outcome encode(const AVFrame* frame);

    MovieFile& m_file;
    SharedEncoder m_encoder;
    AVStream* m_track = nullptr;
    Frame m_frame;
    Scaler m_scaler;
    std::vector<std::uint8_t> m_padded; ///< the picture with even sides
    std::int64_t m_last = -1;
    std::int64_t m_duration = 0;
};

} // namespace lamina
