#pragma once

#include "export/functions/ExportWork.h"
#include "export/functions/PDFStandardFunction.h"
#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"

#include <cstdint>
#include <string>
#include <vector>

namespace lamina {

/// Prepares pictures for print, and writes documents of one page with marks that show where to cut. Pages are as
/// PDFStandardFunction says, with a trim and a bleed box. The documents of a picture from `convertToCMYK` are
/// PDF/X-1a:2001 for the condition FOGRA39, whose marks are on every plate; those of any other are plain PDF 1.4.
///
/// With w and h the picture's size in points, or those times 72 / `pixelsPerInch`, all else has the same measure on
/// every page: marks are 10 points long and margins `margin` points wide however fine the picture is.
///
/// The error's subject is the file concerned, or empty. Usable from any thread.
class PDFPrintFunction {
public:
    /// The one instance; it has no state.
    static const PDFPrintFunction& shared();

    /// The picture on white in device RGB, 8 bits a component in four bytes of which the last is not looked at: scale
    /// 1, orientation up, so that a page counts its pixels as points.
    Result<UIImage> convertToRGB(const UIImage& image) const;
    /// The same in inks of the printing condition FOGRA39, C M Y K in four bytes: perceptual with black point
    /// compensation. The picture carries the condition's profile, by which others show it.
    Result<UIImage> convertToCMYK(const UIImage& image) const;

    /// The bytes of a document of one page made from the picture: its size, nothing beside it.
    Result<std::vector<std::uint8_t>> pdfData(const UIImage& image) const;

    /// "Crop&Note.pdf": a page of w + 2 margin by h + 2 margin + 50, the picture in the middle half of its width, 50
    /// points from the top and half as high as the page without its 50, with marks at its corners and the note of
    /// `createNotesPDF`.
    Result<std::string> createCropAndNotePDF(const UIImage& image, double margin, const std::string& note,
                                             const PDFSettings& settings = {}) const;
    /// "Notes.pdf": PDFStandardFunction's page with a note.
    Result<std::string> createNotesPDF(const UIImage& image, const std::string& note,
                                       const PDFSettings& settings = {}) const;
    /// "CropMarks.pdf": the picture at (margin, margin) on a page that is 2 margin larger, with marks at its corners.
    Result<std::string> createCropMarksPDF(const UIImage& image, double margin, const PDFSettings& settings = {}) const;
};

/// Saving as "PDF print": converts to the colours chosen and writes the document that marks and notes ask for. The
/// picture that comes back is the converted one.
Result<ExportedFile> exportPDFPrint(const ExportSource& source, const ExportOptions& options, const ExportPlace& place,
                                    const ExportWatch& watch);

} // namespace lamina
