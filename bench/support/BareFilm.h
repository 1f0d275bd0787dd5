#pragma once

#include "platform/image/pixels/CGImage.h"

#include <memory>

namespace lamina::bench {

/// What x264 alone takes for a film of a still picture: libavcodec is given the same frame again and again, and its
/// packets are dropped. No sound, no file, no conversion of colours, the encoder's own choice of code.
class BareFilm {
public:
    /// Converts the picture, of any size, to 4:2:0; R G B and a byte more.
    explicit BareFilm(const CGImage& picture);
    ~BareFilm();
    BareFilm(const BareFilm&) = delete;
    BareFilm& operator=(const BareFilm&) = delete;

    /// Encodes so many frames as High, veryfast, without B-frames, by two threads that share each frame. Gives the
    /// bytes of all packets; 0 where x264 is missing.
    long encode(int frames, int crf) const;

private:
    struct Picture;
    std::unique_ptr<Picture> m_picture;
};

} // namespace lamina::bench
