#include "platform/files/LoadedModule.h"

#include "platform/base/LazyLibrary.h"
#include "platform/base/Log.h"
#include "platform/files/ProgramFolder.h"

#include <string>

namespace lamina {

Result<const void*> openModule(const ModuleName& name)
{
    const std::string path = installedFile("LAMINA_MODULES", LAMINA_MODULE_FOLDER, name.file);
    if (path.empty())
        return name.missing;
    LazyLibrary library(path.c_str());
    const void* (*entry)() = nullptr;
    library.find(entry, name.entry);
    if (library.complete())
        return entry();
    if (const char* reason = dlerror()) // names the library that the system's loader lacks
        logWarning(reason);
    return name.broken;
}

Outcome checkModuleVersion(const ModuleName& name, std::string_view version)
{
    if (version == LAMINA_VERSION)
        return success();
    logWarning(std::string(name.file) + " is of another version");
    return name.broken;
}

} // namespace lamina
