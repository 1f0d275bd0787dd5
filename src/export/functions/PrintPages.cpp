#include "export/functions/PrintPages_p.h"

#include "export/functions/ExportPlaces.h"
#include "export/functions/PrintProfile.h"
#include "platform/image/pixels/CGColorSpace.h"
#include "platform/pdf/PDFWriting.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <utility>

namespace lamina {

namespace {

/// What the document may claim: the condition whose profile the picture carries, if it is ours.
Result<std::optional<PDFOutputIntent>> outputIntent(const UIImage& image)
{
    const CGColorSpace& space = image.cgImage().colorSpace();
    if (space.model() != CGColorSpace::Model::CMYK)
        return std::optional<PDFOutputIntent>();
    const Result<CGColorSpace> ours = printColorSpace();
    if (!ours)
        return ours.error();
    if (!(space == *ours))
        return std::optional<PDFOutputIntent>();
    Result<std::vector<std::uint8_t>> deflated = compressedPrintProfile();
    if (!deflated)
        return deflated.error();
    return std::optional<PDFOutputIntent>({kPrintCondition, "http://www.color.org",
                                           "Offset on coated paper, ISO 12647-2:2004/Amd 1:2007",
                                           *std::move(deflated)});
}

} // namespace

CGSize sizeOnPage(const UIImage& image, const PDFSettings& settings)
{
    const double factor = 72 / settings.pixelsPerInch;
    const CGSize size = image.size();
    return {size.width * factor, size.height * factor};
}

PDFPage plainPage(CGSize picture)
{
    PDFPage page;
    page.size = picture;
    page.picture = {{}, picture};
    return page;
}

PDFText noteText(CGSize picture, const std::string& note)
{
    constexpr CGSize kRoom{150, 30};
    constexpr double kSize = 25;
    return {note, {{picture.width - kRoom.width, picture.height}, kRoom}, kSize};
}

PDFPage notesPage(CGSize picture, const std::string& note)
{
    PDFPage page;
    page.size = {picture.width, picture.height + 100};
    page.picture = {picture.width / 4, 50, picture.width / 2, picture.height / 2};
    page.text = noteText(picture, note);
    return page;
}

std::vector<CGRect> cropMarks(CGSize page, double margin)
{
    constexpr double kLength = 10;
    constexpr double kWidth = 0.5;
    const double a = margin - kWidth / 2;
    const double b = page.width - kLength;
    const double c = page.width - margin + kWidth / 2;
    const double d = page.height - margin - kWidth / 2;
    const double e = page.height - kLength;
    return {{0, a, kLength, kWidth}, {a, 0, kWidth, kLength}, {b, a, kLength, kWidth}, {c, 0, kWidth, kLength},
            {0, d, kLength, kWidth}, {a, e, kWidth, kLength}, {b, d, kLength, kWidth}, {c, e, kWidth, kLength}};
}

Result<std::string> writePage(const UIImage& image, PDFPage page, const std::string& name, const PDFSettings& settings)
{
    Result<std::string> path = exportPath(settings.place, name);
    if (!path)
        return path;
    page.title = std::filesystem::path(*path).stem().string();
    if (settings.forPrint) {
        Result<std::optional<PDFOutputIntent>> intent = outputIntent(image);
        if (!intent)
            return Error{*path, intent.error().cause};
        page.intent = *std::move(intent);
        if (!page.trim)
            page.trim = CGRect{{}, page.size};
    }
    const Outcome written = writePDF(image, page, *path, {settings.watch.progress, settings.watch.cancelled});
    return written ? path : written.error();
}

} // namespace lamina
