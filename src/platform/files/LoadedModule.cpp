#include "platform/files/LoadedModule.h"

#include "platform/base/LazyLibrary.h"
#include "platform/files/ProgramFolder.h"

#include <string>

namespace lamina {

namespace {

std::string supportFor(const ModuleName& name)
{
    return std::string("support for ") + name.purpose;
}

} // namespace

Result<const void*> openModule(const ModuleName& name)
{
    const std::string path = installedFile("LAMINA_MODULES", LAMINA_MODULE_FOLDER, name.file);
    if (path.empty())
        return Error{{}, supportFor(name) + " is not installed"};
    LazyLibrary library(path.c_str());
    const void* (*entry)() = nullptr;
    library.find(entry, name.entry);
    if (library.complete())
        return entry();
    const char* reason = dlerror(); // names the library that the system's loader lacks
    return Error{{}, supportFor(name) + " can't be loaded (" + (reason ? reason : "unknown") + ")"};
}

Outcome checkModuleVersion(const ModuleName& name, std::string_view version)
{
    if (version == LAMINA_VERSION)
        return success();
    return Error{{}, "the " + supportFor(name) + " that is installed is of another version"};
}

} // namespace lamina
