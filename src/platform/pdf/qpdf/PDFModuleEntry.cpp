#include "platform/base/Causes.h"
#include "platform/base/Log.h"
#include "platform/base/Result.h"
#include "platform/pdf/PDFModule_p.h"
#include "platform/pdf/qpdf/DocumentFile_p.h"
#include "platform/pdf/qpdf/PageDocument_p.h"

#include <exception>
#include <new>

namespace lamina {

namespace {

/// Nothing is thrown at the program, which may have been built otherwise.
Outcome write(const PDFParts& parts, const PDFSink& sink)
{
    try {
        PageDocument(parts).write(sink);
        return success();
    } catch (const CallbackFailure& failure) {
        return failure.error;
    } catch (const std::bad_alloc&) {
        return Error{{}, cause::kNoMemory};
    } catch (const std::exception& failure) {
        logWarning(failure.what());
        return Error{{}, "the document can't be made"};
    }
}

const PDFModule kModule{LAMINA_VERSION, write};

} // namespace

} // namespace lamina

extern "C" __attribute__((visibility("default"))) const lamina::PDFModule* laminaPDFModule()
{
    return &lamina::kModule;
}
