#pragma once

#include "platform/image/pixels/CGImage.h"

#include <cstddef>
#include <string>

// What exports cannot beat: the libraries beneath them at the same settings, with nothing around. All take pictures of
// R G B A without padding and end the program where a library fails. Each gives the bytes that came of it.

namespace lamina::bench {

/// Paeth's filter on every row, then libdeflate at level 1.
std::size_t filterAndDeflate(const CGImage& image);
/// libpng at its level 6, with its own choice of filters.
std::size_t pngOfLevelSix(const CGImage& image);
/// libjpeg-turbo: best quality without loss of colour, and back to pixels.
std::size_t jpegThereAndBack(const CGImage& image);
/// libtiff: R G B A in LZW with differences, into a file.
std::size_t tiffOfLZW(const CGImage& image, const std::string& path);
/// zlib at level 1 on R G B, a half of the rows on each of two threads.
std::size_t deflateRGB(const CGImage& image);
/// lcms2 to the inks of a profile, a half of the rows on each of two threads, and zlib as above on these.
std::size_t inksAndDeflate(const CGImage& image, const std::string& profile);
/// x264 as FFmpeg drives it: 90 frames of one picture, whose conversion to Y Cb Cr is left out.
std::size_t x264Alone(int width, int height);

} // namespace lamina::bench
