#include "export/functions/ExportWork.h"

#include "export/functions/JPGFunction.h"
#include "export/functions/MP4Function.h"
#include "export/functions/PDFPrintFunction.h"
#include "export/functions/PDFStandardFunction.h"
#include "export/functions/PNGFunctionClass.h"
#include "export/functions/SVGFunction.h"
#include "export/functions/TiffFunction.h"

#include <array>
#include <cstddef>

namespace lamina {

namespace {

/// By the type's number.
constexpr std::array<ExportFunction, kSavingTypeCount> kFunctions = {
    exportJPG, exportPNG, exportPDFStandard, exportPDFPrint, exportSVG, exportMP4, exportTIFF,
};

} // namespace

Result<ExportedFile> runExport(SavingtypeMethod type, const ExportSource& source, const ExportOptions& options,
                               const ExportPlace& place, const ExportWatch& watch)
{
    return kFunctions[static_cast<std::size_t>(type)](source, options, place, watch);
}

} // namespace lamina
