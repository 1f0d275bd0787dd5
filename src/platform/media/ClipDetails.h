#pragma once

#include "platform/base/CGGeometry.h"

namespace lamina {

/// What a clip says of itself.
struct ClipDetails {
    IntSize size;         ///< of a frame as it is shown, in square pixels: turned by the track's matrix
    double duration = 0;  ///< of the picture, in seconds; 0 where the clip doesn't tell
    double frameRate = 0; ///< frames a second, on the average; 0 where it can't be told
    bool hasSound = false;
};

} // namespace lamina
