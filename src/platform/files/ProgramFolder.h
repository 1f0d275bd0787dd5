#pragma once

#include <string>

namespace lamina {

/// The folder in which this program's executable stands: what is installed with it is found from there. Empty when the
/// system doesn't tell. Usable from any thread.
std::string programFolder();

/// The first that exists: the named file in the folder that the variable `variable` of the environment names, or in
/// `folder`, a path that is read from the program's own folder, such as "../share/lamina/sounds". Empty when it stands
/// in neither. Usable from any thread.
std::string installedFile(const char* variable, const std::string& folder, const std::string& name);

} // namespace lamina
