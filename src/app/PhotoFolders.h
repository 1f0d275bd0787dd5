#pragma once

#include "platform/base/Result.h"

#include <string>
#include <vector>

// The folders of photos that the user has added to the library, beside their own for pictures. They are kept in
// "photos.ini" of the `stateFolder`, as "file:" URLs or absolute paths in the list `folders`. Main thread.

namespace lamina {

/// Absolute paths without a slash at their end, each once; whether they are there does not matter.
std::vector<std::string> keptPhotoFolders();

/// Keeps these from now on, and the library has them. The error's subject is the file.
Outcome keepPhotoFolders(const std::vector<std::string>& folders);

/// The library has those that are kept, and those that are `given` while this process lives; relative ones count from
/// the working directory.
void openPhotoFolders(std::vector<std::string> given);

} // namespace lamina
