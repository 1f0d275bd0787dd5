#include "platform/pdf/PDFModule_p.h"

#include "platform/files/LoadedModule.h"

namespace lamina {

Result<const PDFModule*> pdfModule()
{
    static const Result<const PDFModule*> module =
        loadModule<PDFModule>({"lamina-pdf.so", kPDFModuleEntry, "PDF documents"});
    return module;
}

} // namespace lamina
