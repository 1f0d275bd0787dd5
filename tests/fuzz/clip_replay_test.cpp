// Reads every clip of the corpus, each in a process of its own, and compares what comes with the corpus's manifest.

#include "ClipCheck.h"
#include "ProcessUsage.h"

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>

namespace lamina::test {
namespace {

namespace fs = std::filesystem;

/// Outcomes by the files' names.
std::map<std::string, std::string> manifest()
{
    std::map<std::string, std::string> outcomes;
    std::ifstream file(LAMINA_CORPUS "/manifest");
    for (std::string line; std::getline(file, line);) {
        std::istringstream columns(line);
        std::array<std::string, 3> column;
        for (std::string& text : column)
            std::getline(columns, text, '\t');
        if (column[0].starts_with("clip/"))
            outcomes[column[0].substr(5)] = column[2];
    }
    return outcomes;
}

/// Reads the clip, and tells "OUTCOME\tFAULT" by a pipe what it came to.
[[noreturn]] void readAndTell(const std::string& path, int pipe)
{
    ::alarm(60); // what hangs is ended by a signal
    const ClipReport report = ClipCheck::read(path);
    const std::string told = report.outcome() + "\t" + report.fault;
    std::_Exit(::write(pipe, told.data(), told.size()) == static_cast<ssize_t>(told.size()) ? 0 : 1);
}

struct Told {
    std::string outcome;
    std::string fault;
    ProcessUsage usage;
};

Told replayed(const std::string& path)
{
    std::array<int, 2> pipe{};
    if (::pipe(pipe.data()) != 0)
        return {};
    const pid_t child = ::fork();
    if (child == 0)
        readAndTell(path, pipe[1]);
    ::close(pipe[1]);
    std::array<char, 1000> text{};
    const ssize_t count = ::read(pipe[0], text.data(), text.size());
    ::close(pipe[0]);
    int status = 0;
    rusage usage{};
    ::wait4(child, &status, 0, &usage);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0 || count <= 0)
        return {"", "a crash", usageOf(usage)};
    const std::string told(text.data(), static_cast<std::size_t>(count));
    const std::size_t tab = told.find('\t');
    return {told.substr(0, tab), told.substr(tab + 1), usageOf(usage)};
}

TEST(ClipReplay, EveryClipComesToASoundEndWithLittle)
{
#if defined(__SANITIZE_ADDRESS__)
    constexpr double kMostSeconds = 20;
    constexpr long kMostKilobytes = 1'600'000;
#else
    constexpr double kMostSeconds = 2;
    constexpr long kMostKilobytes = 640'000;
#endif
    const std::map<std::string, std::string> outcomes = manifest();
    std::size_t compared = 0;
    for (const auto& entry : fs::directory_iterator(LAMINA_CORPUS "/clip")) {
        const std::string name = entry.path().filename();
        SCOPED_TRACE(name);
        const Told told = replayed(entry.path());
        EXPECT_EQ(told.fault, "") << told.outcome;
        EXPECT_LT(told.usage.processorSeconds, kMostSeconds);
        EXPECT_LT(told.usage.peakKilobytes, kMostKilobytes);
        const bool isPlain =
            told.outcome.find("frames") != std::string::npos && told.outcome.find(';') == std::string::npos;
        EXPECT_FALSE(name.starts_with("cut-") && isPlain) << told.outcome;
        const auto outcome = outcomes.find(name);
        if (outcome == outcomes.end())
            continue;
        ++compared;
        EXPECT_EQ(told.outcome, outcome->second);
    }
    EXPECT_EQ(compared, outcomes.size());
    EXPECT_GE(compared, 40U);
}

} // namespace
} // namespace lamina::test
