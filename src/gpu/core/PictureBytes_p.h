#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/gl/GLHeaders.h"
#include "platform/image/pixels/CGImage.h"

#include <cstdint>
#include <span>

namespace lamina {

/// The bytes of a picture as they go up to a texture, four to a pixel without padding.
struct PictureBytes {
    CGImage pixels; ///< holds the bytes
    GLenum format = GL_RGBA;
    bool premultiplied = false;
    bool alphaFirst = false;
    bool littleEndian = false;
};

/// The picture's own bytes, if textures can take them as they are: four bytes a pixel of 8 bits, no padding, and an
/// order that GL knows. Otherwise the result has no pixels.
PictureBytes bytesAsTheyAre(const CGImage& image);

/// The picture drawn over `size`: B G R A in memory, premultiplied. Without pixels when the size is empty or memory is
/// short.
PictureBytes bytesDrawnAnew(const CGImage& image, IntSize size);

/// Divides the colours of 32-bit pixels by their alpha, in place. A colour above its alpha overflows into its
/// neighbour, and one over zero alpha fills its place with ones: what is no premultiplied picture does not come out as
/// one.
void removePremultiplication(std::span<std::uint32_t> pixels, bool alphaFirst, bool littleEndian);

} // namespace lamina
