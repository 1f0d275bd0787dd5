#pragma once

#include "platform/base/Log.h"

#include <string>
#include <utility>
#include <vector>

namespace lamina::test {

/// Collects messages for as long as it lives.
class LogCapture {
public:
    LogCapture()
        : m_former(setLogSink([this](LogLevel level, std::string_view text) { messages.emplace_back(level, text); }))
    {
    }
    ~LogCapture() { setLogSink(std::move(m_former)); }
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    /// All messages, each a line.
    std::string text() const
    {
        std::string all;
        for (const auto& [level, message] : messages)
            all += message + '\n';
        return all;
    }

    /// To be read when nobody logs any more.
    std::vector<std::pair<LogLevel, std::string>> messages;

private:
    LogSink m_former;
};

} // namespace lamina::test
