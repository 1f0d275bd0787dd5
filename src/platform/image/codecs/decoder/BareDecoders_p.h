#pragma once

#include "platform/image/codecs/PictureDecoder_p.h"

namespace lamina {

/// HEIC and TIFF where their libraries are: for the program behind the wall, and for tests.
extern const PictureDecoder kHEICDecoder;
extern const PictureDecoder kTIFFDecoder;

} // namespace lamina
