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
    const std::string line = "lamina: " + onOneLine(error.subject) + ": " + onOneLine(error.cause) + "\n";
    std::fputs(line.c_str(), stderr);
    return code;
}

void note(const std::string& text)
{
    if (isatty(STDERR_FILENO))
        std::fprintf(stderr, "%s\n", text.c_str());
}

} // namespace lamina
