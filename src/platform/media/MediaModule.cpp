#include "platform/media/MediaModule_p.h"

#include "platform/base/LazyLibrary.h"
#include "platform/files/ProgramFolder.h"

#include <cstring>
#include <string>

namespace lamina {

namespace {

/// The cause is what the system's loader says, which names the library that it lacks.
Error notLoaded()
{
    const char* reason = dlerror();
    return {{}, std::string("support for videos can't be loaded (") + (reason ? reason : "unknown") + ")"};
}

Result<const MediaModule*> load()
{
    const std::string path = installedFile("LAMINA_MODULES", LAMINA_MODULE_FOLDER, "lamina-media.so");
    if (path.empty())
        return Error{{}, "support for videos is not installed"};
    LazyLibrary library(path.c_str());
    const MediaModule* (*entry)() = nullptr;
    library.find(entry, kMediaModuleEntry);
    if (!library.complete())
        return notLoaded();
    const MediaModule* module = entry();
    if (std::strcmp(module->version, LAMINA_VERSION) != 0)
        return Error{{}, "the support for videos that is installed is of another version"};
    return module;
}

} // namespace

Result<const MediaModule*> mediaModule()
{
    static const Result<const MediaModule*> module = load();
    return module;
}

} // namespace lamina
