#include "cli/common/Messages.h"

#include "platform/base/ShownText.h"
#include "platform/base/StandardStreams.h"

#include <climits>
#include <cstddef>
#include <cstdio>
#include <unistd.h>

namespace lamina {

namespace {

/// What a message holds of a name, which whoever reads it wants whole, and of all else.
constexpr std::size_t kLongestSubject = PATH_MAX;
constexpr std::size_t kLongestCause = 1000;

std::string line(const Error& error)
{
    const std::string subject = shownText(beginningOf(error.subject, kLongestSubject));
    const std::string cause = shownText(beginningOf(error.cause, kLongestCause));
    return "lamina: " + Error{subject, cause}.message() + "\n";
}

} // namespace

ExitCode fail(const Error& error, ExitCode code)
{
    warn(error);
    return code;
}

void warn(const Error& warning)
{
    writeMessage(line(warning));
}

ExitCode failUsage(const std::string& cause, const std::string& command)
{
    writeMessage(line({{}, cause}) + "Run 'lamina " + (command.empty() ? "" : command + " ") +
                 "--help' to see how it is used.\n");
    return ExitCode::Usage;
}

ExitCode printData(const std::string& text)
{
    const bool written = std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0;
    return written ? ExitCode::Good : fail({"standard output", "can't be written"}, ExitCode::Output);
}

std::string beginning(std::string_view text)
{
    constexpr std::size_t kShown = 60;
    return beginningOf(text, kShown);
}

void note(const std::string& text)
{
    if (isatty(messageDescriptor()))
        writeMessage(shownText(text) + "\n");
}

} // namespace lamina
