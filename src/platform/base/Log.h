#pragma once

#include <functional>
#include <string_view>

namespace lamina {

/// How much a message matters, in rising order.
enum class LogLevel { Debug, Info, Warning, Error };

/// Writes one message. It goes to standard error as a line "lamina: text" (with the level's name before the text,
/// except for `Info`) unless a sink is installed. A text of several lines stays together, each with the same beginning.
/// What can't be printed becomes '?' (`shownText`), and of a long text the beginning is written, 3000 bytes and 60
/// lines at most: it may come from outside. From any thread; messages never interleave.
void log(LogLevel level, std::string_view text);

/// `log` at each level.
inline void logDebug(std::string_view text)
{
    log(LogLevel::Debug, text);
}
inline void logInfo(std::string_view text)
{
    log(LogLevel::Info, text);
}
inline void logWarning(std::string_view text)
{
    log(LogLevel::Warning, text);
}
inline void logError(std::string_view text)
{
    log(LogLevel::Error, text);
}

/// Messages below the level are dropped. Default: `Info`. From any thread.
void setMinimumLogLevel(LogLevel level);

/// Takes messages instead of standard error. Calls come one at a time, on the thread that logs; what the sink itself
/// logs goes to standard error, and an exception it throws is dropped.
using LogSink = std::function<void(LogLevel level, std::string_view text)>;

/// Installs a sink (an empty one: standard error again) and gives back the one before. No call of the old sink is under
/// way when this returns. From any thread, but not from a sink.
LogSink setLogSink(LogSink sink);

} // namespace lamina
