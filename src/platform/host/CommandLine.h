#pragma once

#include "platform/application/ApplicationRequest.h"
#include "platform/host/Application.h"

#include <QStringList>

#include <optional>

namespace lamina {

/// Codes with which the application leaves.
namespace exitcode {
inline constexpr int kGood = 0;
inline constexpr int kFailed = 1;
inline constexpr int kWrongUsage = 2;
inline constexpr int kNotWritten = 4;
} // namespace exitcode

/// What the words of the command line ask for.
struct CommandLine {
    LaunchOptions options;
    /// A window of its own, whatever is open already: asked for, or since no other window can do what the options say.
    bool ownWindow = false;
    /// No window until the session bus asks for one.
    bool isService = false;
    /// The code with which to leave at once; none: go on.
    std::optional<int> leave;
};

/// Reads them; help, version and complaints are written here. Qt's own options have been taken out.
CommandLine parseCommandLine(const QStringList& arguments);

/// What a window that is open already is asked for.
ApplicationRequest requestOf(const LaunchOptions& options);

} // namespace lamina
