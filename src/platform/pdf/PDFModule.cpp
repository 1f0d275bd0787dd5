#include "platform/pdf/PDFModule_p.h"

#include "platform/files/LoadedModule.h"

namespace lamina {

Result<const PDFModule*> pdfModule()
{
    static const Result<const PDFModule*> module =
        loadModule<PDFModule>({"lamina-pdf.so", kPDFModuleEntry, Error{{}, "support for PDF is not installed"},
                               Error{{}, "support for PDF can't be loaded"}});
    return module;
}

} // namespace lamina
