#pragma once

#include "cli/common/ExitCode.h"
#include "cli/export/ExportTypes.h"
#include "export/functions/ExportWork.h"

#include <string>

namespace lamina {

/// What a command has to export, and where to.
struct ExportJob {
    const ExportType* type = nullptr;
    ExportSource source;
    ExportOptions options;
    std::string output;   ///< a name for which `exportPlaceOf` gives a place
    std::string input;    ///< what the source was read from: failures that concern it are those of an input
    std::string command;  ///< whose failure it is where no file is concerned
    bool isQuiet = false; ///< no progress and no note
};

/// Exports, shows how far it is on a terminal, and notes the file that was written.
ExitCode deliverExport(const ExportJob& job);

} // namespace lamina
