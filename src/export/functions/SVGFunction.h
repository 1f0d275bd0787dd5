#pragma once

#include "export/functions/ExportWork.h"
#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"

#include <string>

namespace lamina {

/// SVG documents that hold a picture as a PNG: without state, usable from any thread.
class SVGFunction {
public:
    /// The one instance; never destroyed.
    static const SVGFunction& shared();

    /// The document, of that size in points, with the picture stretched over it. Empty when the picture has no PNG
    /// form: there is none, or memory is short.
    std::string svgString(const UIImage& image, double width, double height) const;

    /// Writes a document as UTF-8, whole or not at all, and gives its path: "UntitledSVG.svg" in the folder for
    /// documents, or where the place says.
    Result<std::string> saveSVG(const std::string& document, const ExportPlace& place = {}) const;
};

/// The work behind the type SVG: the picture at its own size, on white or with its transparency. The result carries
/// the picture as it is in the document.
Result<ExportedFile> exportSVG(const ExportSource& source, const ExportOptions& options, const ExportPlace& place,
                               const ExportWatch& watch);

} // namespace lamina
