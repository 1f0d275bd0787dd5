#pragma once

#include "platform/base/Result.h"
#include "platform/files/FileWriting.h"

#include <string>

namespace lamina {

/// What fills a file that is being written with what is in the file `path`, as it is at this moment or later, in pieces
/// and not through memory: `writeFileAtomically(to, *contentsOf(from))` copies. It may be used more than once. What
/// only the owner of that file, or its group, may read is closed to the others in the copy too. The error's subject is
/// the path; what is no regular file is refused. Usable from any thread.
Result<FileFiller> contentsOf(const std::string& path);

} // namespace lamina
