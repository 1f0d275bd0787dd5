#include "export/functions/PDFStandardFunction.h"

#include "export/functions/PrintPages_p.h"

#include <utility>

namespace lamina {

const PDFStandardFunction& PDFStandardFunction::shared()
{
    static const PDFStandardFunction instance;
    return instance;
}

Result<std::string> PDFStandardFunction::createPDF(const UIImage& image, const PDFSettings& settings) const
{
    return writePage(image, plainPage(sizeOnPage(image, settings)), "UntitledPdf.pdf", settings);
}

Result<std::string> PDFStandardFunction::createNotesPDF(const UIImage& image, const std::string& note,
                                                        const PDFSettings& settings) const
{
    return writePage(image, notesPage(sizeOnPage(image, settings), note), "NotesPDF.pdf", settings);
}

Result<ExportedFile> exportPDFStandard(const ExportSource& source, const ExportOptions& options,
                                       const ExportPlace& place, const ExportWatch& watch)
{
    const PDFStandardFunction& function = PDFStandardFunction::shared();
    const PDFSettings settings{place, watch};
    Result<std::string> path = options.notes ? function.createNotesPDF(source.picture, kPDFNoteText, settings)
                                             : function.createPDF(source.picture, settings);
    if (!path)
        return path.error();
    return ExportedFile{source.picture, *std::move(path), {}};
}

} // namespace lamina
