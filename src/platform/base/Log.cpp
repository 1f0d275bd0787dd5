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

/// With the beginnings of its lines a message stays within 4 KB, whatever somebody outside has put into it.
constexpr std::size_t kMostBytes = 3000;
constexpr int kMostLines = 60;

/// The message as everybody gets it: bounded, without characters that can't be printed but the ends of its lines.
std::string shownMessage(std::string_view text)
{
    while (text.ends_with('\n'))
        text.remove_suffix(1);
    const std::string beginning = beginningOf(text, kMostBytes);
    std::string_view rest = beginning;
    std::string shown;
    for (int line = 1;; ++line) {
        const std::size_t end = rest.find('\n');
        shown += shownText(rest.substr(0, end));
        if (end == std::string_view::npos)
            return shown;
        if (line == kMostLines)
            return shown + "...";
        shown += '\n';
        rest.remove_prefix(end + 1);
    }
}

void writeToStandardError(LogLevel level, std::string_view text)
{
    std::string lines;
    for (;;) {
        const std::size_t end = text.find('\n');
        lines.append(lineStart(level)).append(text.substr(0, end)).push_back('\n');
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
    const std::string shown = shownMessage(text);
    if (t_insideSink) { // the mutex is held by this thread already
        writeToStandardError(level, shown);
        return;
    }
    const std::lock_guard lock(s.mutex);
    if (s.sink)
        callSink(s.sink, level, shown);
    else
        writeToStandardError(level, shown);
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
