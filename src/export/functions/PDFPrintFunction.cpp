#include "export/functions/PDFPrintFunction.h"

#include "export/functions/PrintPages_p.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/Causes.h"
#include "platform/pdf/PDFPage.h"
#include "platform/pdf/PDFWriting.h"

#include <utility>

namespace lamina {

namespace {

constexpr double kMargin = 20;

PDFSettings forPrint(PDFSettings settings)
{
    settings.forPrint = true;
    return settings;
}

/// Marks at the edges of the page, which is cut between them.
void addCropMarks(PDFPage& page, double margin)
{
    page.marks = cropMarks(page.size, margin);
    page.trim = CGRect({}, page.size).insetBy(margin, margin);
}

/// The document that the options ask for.
Result<std::string> createDocument(const UIImage& converted, const ExportOptions& options, const PDFSettings& settings)
{
    const PDFPrintFunction& function = PDFPrintFunction::shared();
    if (options.cropMarks && options.notes)
        return function.createCropAndNotePDF(converted, kMargin, kPDFNoteText, settings);
    if (options.cropMarks)
        return function.createCropMarksPDF(converted, kMargin, settings);
    if (options.notes)
        return function.createNotesPDF(converted, kPDFNoteText, settings);
    return PDFStandardFunction::shared().createPDF(converted, settings);
}

} // namespace

const PDFPrintFunction& PDFPrintFunction::shared()
{
    static const PDFPrintFunction instance;
    return instance;
}

Result<std::vector<std::uint8_t>> PDFPrintFunction::pdfData(const UIImage& image) const
{
    return pdfBytes(image, plainPage(image.size()));
}

Result<std::string> PDFPrintFunction::createCropAndNotePDF(const UIImage& image, double margin, const std::string& note,
                                                           const PDFSettings& settings) const
{
    constexpr double kNoteHeight = 50;
    const CGSize picture = sizeOnPage(image, settings);
    const double height = picture.height + 2 * margin;
    PDFPage page;
    page.size = {picture.width + 2 * margin, height + kNoteHeight};
    page.picture = {page.size.width / 4, 50, page.size.width / 2, height / 2};
    addCropMarks(page, margin);
    page.text = noteText(picture, note);
    return writePage(image, std::move(page), "Crop&Note.pdf", forPrint(settings));
}

Result<std::string> PDFPrintFunction::createNotesPDF(const UIImage& image, const std::string& note,
                                                     const PDFSettings& settings) const
{
    return writePage(image, notesPage(sizeOnPage(image, settings), note), "Notes.pdf", forPrint(settings));
}

Result<std::string> PDFPrintFunction::createCropMarksPDF(const UIImage& image, double margin,
                                                         const PDFSettings& settings) const
{
    const CGSize picture = sizeOnPage(image, settings);
    PDFPage page;
    page.size = {picture.width + 2 * margin, picture.height + 2 * margin};
    page.picture = {{margin, margin}, picture};
    addCropMarks(page, margin);
    return writePage(image, std::move(page), "CropMarks.pdf", forPrint(settings));
}

Result<ExportedFile> exportPDFPrint(const ExportSource& source, const ExportOptions& options, const ExportPlace& place,
                                    const ExportWatch& watch)
{
    const PDFPrintFunction& function = PDFPrintFunction::shared();
    Result<UIImage> converted = options.colors == PrintColors::CMYK ? function.convertToCMYK(source.picture)
                                                                    : function.convertToRGB(source.picture);
    if (!converted)
        return converted.error();
    if (watch.isCancelled())
        return Error{{}, cause::kCancelled};
    Result<std::string> path = createDocument(*converted, options, {place, watch, options.pixelsPerInch, true});
    if (!path)
        return path.error();
    return ExportedFile{*std::move(converted), *std::move(path), {}};
}

} // namespace lamina
