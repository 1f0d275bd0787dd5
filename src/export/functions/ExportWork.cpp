#include "export/functions/ExportWork.h"

#include "export/functions/MP4Function.h"
#include "export/functions/PDFPrintFunction.h"
#include "export/functions/PDFStandardFunction.h"

#include <array>
#include <cstddef>

namespace lamina {

namespace {

/// By the type's number.
constexpr std::array<ExportFunction, kSavingTypeCount> kFunctions = {
    nullptr, // jpg
    nullptr, // png
    exportPDFStandard, exportPDFPrint,
    nullptr, // svg
    exportMP4,
    nullptr, // tiff
};

} // namespace

Result<ExportedFile> runExport(SavingtypeMethod type, const ExportSource& source, const ExportOptions& options,
                               const ExportPlace& place, const ExportWatch& watch)
{
    const ExportFunction run = kFunctions[static_cast<std::size_t>(type)];
    if (!run)
        return Error{{}, "this type can't be saved yet"};
    return run(source, options, place, watch);
}

} // namespace lamina
