#pragma once

#include "platform/base/Result.h"
#include "platform/image/pixels/CGColorSpace.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/pdf/PDFModule_p.h"
#include "platform/pdf/PDFWriting.h"

#include <optional>

namespace lamina {

/// A picture as documents hold it.
struct PictureSamples {
    PDFSamples picture;
    std::optional<PDFSamples> alpha; ///< where any of it is translucent
    CGColorSpace space;              ///< of inks; sRGB otherwise
};

/// Takes the picture as it is shown: upright, through its mask. `watch` outlives what comes back, and is told and asked
/// while the samples are written.
Result<PictureSamples> pictureSamples(const UIImage& picture, const PDFWatch& watch);

} // namespace lamina
