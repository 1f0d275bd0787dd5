#include "cli/Messages.h"

#include <algorithm>
#include <cstdio>
#include <unistd.h>

namespace lamina {

namespace {

std::string onOneLine(std::string text)
{
    std::replace_if(
        text.begin(), text.end(), [](char c) { return (c >= 0 && c < ' ') || c == '\x7f'; }, '?');
    return text;
}

} // namespace

ExitCode fail(const Error& error, ExitCode code)
{
    warn(error);
    return code;
}

void warn(const Error& warning)
{
    const std::string line = "lamina: " + onOneLine(warning.subject) + ": " + onOneLine(warning.cause) + "\n";
    std::fputs(line.c_str(), stderr);
}

ExitCode printData(const std::string& text)
{
    const bool written = std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0;
    return written ? ExitCode::Good : fail({"standard output", "can't be written"}, ExitCode::Output);
}

std::string beginning(std::string_view text)
{
    constexpr std::size_t kShown = 60;
    return text.size() <= kShown ? std::string(text) : std::string(text.substr(0, kShown)) + "...";
}

void note(const std::string& text)
{
    if (isatty(STDERR_FILENO))
        std::fprintf(stderr, "%s\n", text.c_str());
}

} // namespace lamina
