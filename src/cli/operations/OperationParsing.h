#pragma once

#include "cli/operations/Operations.h"
#include "platform/base/Result.h"

#include <string>
#include <vector>

namespace lamina {

/// One operation of a command line, ready to be performed once its pictures are read.
struct OperationStep {
    std::string text; ///< as it was typed
    const Operation* operation = nullptr;
    OperationValues values;

    /// The names of the files that its arguments are, "-" for standard input.
    std::vector<std::string> files() const;
};

/// What may follow the name: "=WxH[,MODE]", "[=BIAS]" or nothing.
std::string argumentSyntax(const Operation& operation);

/// Reads "NAME" or "NAME=ARGS". The error's subject is the text as typed; its cause names the argument and shows an
/// example, or names the nearest operation.
Result<OperationStep> parseOperation(const std::string& text);

} // namespace lamina
