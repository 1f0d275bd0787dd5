#pragma once

#include "export/functions/ExportWork.h"
#include "platform/base/Result.h"
#include "platform/base/UIColor.h"
#include "platform/image/pixels/UIImage.h"

#include <string>

namespace lamina {

/// Pictures for PNG files: without state, usable from any thread. Contexts have the main screen's scale.
class PNGFunctionClass {
public:
    /// The one instance; never destroyed.
    static const PNGFunctionClass& shared();

    /// The colour over the whole of `width` × `height` points, and on it the picture at its own size, in the middle.
    /// The picture itself where the size is not possible or memory is short.
    UIImage addBackground(const UIImage& image, const UIColor& color, double width, double height) const;

    /// The picture on clear ground as a PNG file would give it back: one pixel a point, straight alpha. Itself where
    /// memory is short.
    UIImage flattenTransparent(const UIImage& image) const;
};

/// The work behind the type PNG: the picture at its new size, on white or with its transparency, as "default.png". The
/// result carries the picture as it came.
Result<ExportedFile> exportPNG(const ExportSource& source, const ExportOptions& options, const ExportPlace& place,
                               const ExportWatch& watch);

} // namespace lamina
