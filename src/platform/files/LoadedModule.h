#pragma once

#include "platform/base/Result.h"

#include <string_view>

// Parts of this program that are loaded with their first use, since what they stand on costs each run of a command some
// milliseconds, used or not. They lie in the folder that the variable LAMINA_MODULES of the environment names, or in
// the installation's.

namespace lamina {

/// What is to be loaded.
struct ModuleName {
    const char* file;  ///< "lamina-media.so"
    const char* entry; ///< the function that gives the module's table; it takes nothing and is in C's naming
    Error missing;     ///< what the user is told where it is not installed, without a subject
    Error broken;      ///< the same where it, or what it stands on, can't be loaded; the log says why
};

/// The table that the entry gives. The error has no subject. The module stays loaded.
Result<const void*> openModule(const ModuleName& name);
/// Success when the version is this program's own: tables of others have another form.
Outcome checkModuleVersion(const ModuleName& name, std::string_view version);

/// The same for a table of functions whose member `version` says which Lamina it belongs to. Callers keep the result in
/// a local static, which makes the loading safe for threads.
template <class Module>
Result<const Module*> loadModule(const ModuleName& name)
{
    const Result<const void*> table = openModule(name);
    if (!table)
        return table.error();
    const auto* module = static_cast<const Module*>(*table);
    const Outcome ours = checkModuleVersion(name, module->version);
    return ours ? Result<const Module*>(module) : ours.error();
}

} // namespace lamina
