#pragma once

#include "export/functions/ExportWork.h"
#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"

#include <string>

namespace lamina {

/// The line below a picture.
inline constexpr const char* kPDFNoteText = "Page 1 of 1";

/// What a document is beside what is drawn on its page.
struct PDFSettings {
    ExportPlace place = {};    ///< where its file goes, if not under its own name in the folder for documents
    ExportWatch watch = {};    ///< how the writing is followed, and stopped
    double pixelsPerInch = 72; ///< how large a point of the picture is; at 72 it is a point of the page
    /// For a print shop: the page says where it is cut, and a picture in CMYK with a profile makes a PDF/X-1a:2001.
    bool forPrint = false;
};

/// Writes documents of one page that show a picture at its own pixels, embedded once and without loss. Sizes are in
/// points, y runs down. Pictures are PDF 1.4 in sRGB, what is transparent stays so by a soft mask; pictures in CMYK
/// stay in it. The title is the file's name, the dates are those of SOURCE_DATE_EPOCH or else fixed: the same picture
/// gives the same bytes.
///
/// The results are paths of files written whole. The error's subject is the file concerned. Usable from any thread.
class PDFStandardFunction {
public:
    /// The one instance; it has no state.
    static const PDFStandardFunction& shared();

    /// "UntitledPdf.pdf": the picture alone, on a page of its size.
    Result<std::string> createPDF(const UIImage& image, const PDFSettings& settings = {}) const;

    /// "NotesPDF.pdf": the picture at half its size, 50 points below the top of a page that is 100 points higher than
    /// the picture, and `note` in bold letters of 25 points at (w - 150, h), 150 wide and 30 high, of which it shows
    /// what has room in one line.
    Result<std::string> createNotesPDF(const UIImage& image, const std::string& note,
                                       const PDFSettings& settings = {}) const;
};

/// Saving as "PDF standard": with notes by `createNotesPDF`, else by `createPDF`. The picture that comes back is the
/// source's.
Result<ExportedFile> exportPDFStandard(const ExportSource& source, const ExportOptions& options,
                                       const ExportPlace& place, const ExportWatch& watch);

} // namespace lamina
