#include "platform/base/Log.h"

#include "platform/base/ShownText.h"
#include "platform/base/StandardStreams.h"

#include <atomic>
#include <cstddef>
#include <mutex>
#include <string>
#include <utility>

namespace lamina {

namespace {

struct LogState {
    std::mutex mutex;
    LogSink sink;
    std::atomic<LogLevel> minimum{LogLevel::Info};
};

LogState& state()
{
    static LogState* const s = new LogState; // never destroyed: threads may log while the process ends
    return *s;
}

thread_local bool t_insideSink = false;

const char* lineStart(LogLevel level)
{
    switch (level) {
    case LogLevel::Debug:
        return "lamina: debug: ";
    case LogLevel::Info:
        return "lamina: ";
    case LogLevel::Warning:
        return "lamina: warning: ";
    case LogLevel::Error:
        return "lamina: error: ";
    }
    return "lamina: ";
}

void writeToStandardError(LogLevel level, std::string_view text)
{
    while (text.ends_with('\n'))
        text.remove_suffix(1);
    std::string lines;
    for (;;) {
        const std::size_t end = text.find('\n');
        lines.append(lineStart(level)).append(shownText(text.substr(0, end))).push_back('\n');
        if (end == std::string_view::npos)
            break;
        text.remove_prefix(end + 1);
    }
    writeMessage(lines);
}

void callSink(const LogSink& sink, LogLevel level, std::string_view text)
{
    t_insideSink = true;
    try {
        sink(level, text);
    } catch (...) {
        // Whoever logs must not fail because nobody can listen.
    }
    t_insideSink = false;
}

} // namespace

void log(LogLevel level, std::string_view text)
{
    LogState& s = state();
    if (level < s.minimum)
        return;
    if (t_insideSink) { // the mutex is held by this thread already
        writeToStandardError(level, text);
        return;
    }
    const std::lock_guard lock(s.mutex);
    if (s.sink)
        callSink(s.sink, level, text);
    else
        writeToStandardError(level, text);
}

void setMinimumLogLevel(LogLevel level)
{
    state().minimum = level;
}

LogSink setLogSink(LogSink sink)
{
    LogState& s = state();
    const std::lock_guard lock(s.mutex);
    return std::exchange(s.sink, std::move(sink));
}

} // namespace lamina
