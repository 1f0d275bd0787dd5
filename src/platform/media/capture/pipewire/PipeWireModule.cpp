#include "platform/base/Causes.h"
#include "platform/base/Result.h"
#include "platform/media/capture/CaptureModule_p.h"
#include "platform/media/capture/pipewire/PipeWireConnection_p.h"

#include <cstdlib>
#include <mutex>
#include <new>
#include <pipewire/pipewire.h>
#include <utility>

namespace lamina {

namespace {

/// Nothing is thrown at the program, which may have been built otherwise.
Result<std::unique_ptr<CaptureConnection>> connect(int descriptor, CaptureConnectionHandlers handlers)
{
    static std::once_flag once;
    std::call_once(once, [] {
        pw_init(nullptr, nullptr);
        if (!std::getenv("PIPEWIRE_DEBUG"))
            pw_log_set_level(SPA_LOG_LEVEL_NONE); // what matters comes back as a value
    });
    try {
        return PipeWireConnection::connect(descriptor, std::move(handlers));
    } catch (const std::bad_alloc&) {
        return Error{{}, cause::kNoMemory};
    }
}

const CaptureModule kModule{LAMINA_VERSION, connect};

} // namespace

} // namespace lamina

extern "C" __attribute__((visibility("default"))) const lamina::CaptureModule* laminaCaptureModule()
{
    return &lamina::kModule;
}
