#pragma once

#include "platform/base/Causes.h"
#include "platform/base/Result.h"
#include "platform/image/codecs/PictureEncoding.h"
#include "platform/image/pixels/CGImage.h"

#include <cstdint>
#include <vector>

namespace lamina {

/// What writes one format, a file each: `XEncoder.cpp`. A failure inside names no subject; `encodePicture` sets it. No
/// exception but that of missing memory.
struct PictureEncoder {
    /// The file of a picture that is not empty and has no mask. One that is large in memory should let go of it as soon
    /// as it has what it needs.
    Result<std::vector<std::uint8_t>> (*encode)(CGImage image, const EncodeOptions& options);
};

extern const PictureEncoder kPNGEncoder;
extern const PictureEncoder kJPEGEncoder;
extern const PictureEncoder kTIFFEncoder;
extern const PictureEncoder kBMPEncoder;
extern const PictureEncoder kGIFEncoder;

} // namespace lamina
