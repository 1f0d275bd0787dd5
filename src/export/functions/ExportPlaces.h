#pragma once

#include "export/functions/ExportWork.h"
#include "platform/base/Result.h"

#include <string>

// Where exports put their files.

namespace lamina {

/// The path at which an export's file is to be written: in the folder that the place names, else in `standardFolder`,
/// which is made, under the name that it gives, else `standardName`. What stands there is replaced by writing: in
/// our own folders that is the export before, anywhere else what the user has named. A link of ours that leads
/// elsewhere is refused where the user has named nothing, since the file at its end isn't ours; so is a file name that
/// leads into another folder.
///
/// The error's subject is the folder or the path. Usable from any thread.
Result<std::string> exportPath(const ExportPlace& place, const std::string& standardFolder,
                               const std::string& standardName);

/// The same in the folder for documents.
Result<std::string> exportPath(const ExportPlace& place, const std::string& standardName);

} // namespace lamina
