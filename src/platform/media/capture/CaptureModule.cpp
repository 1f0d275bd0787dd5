#include "platform/media/capture/CaptureModule_p.h"

#include "platform/files/LoadedModule.h"

namespace lamina {

Result<const CaptureModule*> captureModule()
{
    static const Result<const CaptureModule*> module = loadModule<CaptureModule>(
        {"lamina-capture.so", kCaptureModuleEntry, Error{{}, "support for cameras is not installed"},
         Error{{}, "support for cameras can't be loaded"}});
    return module;
}

} // namespace lamina
