#include "CommandLines.h"
#include "ProcessUsage.h"

#include "ProcessUsage.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <sys/prctl.h>
#include <sys/wait.h>

namespace lamina::test {
namespace {

namespace fs = std::filesystem;

// In a build for debugging as well. Sanitizers take many times that; there the corpus is replayed on its own.
constexpr double kMostSeconds = 1;
constexpr long kMostKilobytes = 200'000;
constexpr std::chrono::seconds kHangs{10}; // by the clock, on a busy machine

/// Runs of the command whose decoders, which outlive it for a moment, count as well.
class HostileFiles : public CommandLines {
protected:
    HostileFiles() { ::prctl(PR_SET_CHILD_SUBREAPER, 1); }
    ~HostileFiles() override { ::prctl(PR_SET_CHILD_SUBREAPER, 0); }

    CommandResult runWithDecoders(const std::string& line)
    {
        CommandResult run = shell(line);
        rusage left{};
        while (::wait4(-1, nullptr, 0, &left) > 0) {
            ++m_decoders;
            const ProcessUsage usage = usageOf(left);
            run.processorSeconds += usage.processorSeconds;
            run.peakKilobytes = std::max(run.peakKilobytes, usage.peakKilobytes);
        }
        return run;
    }

    std::size_t m_decoders = 0;
};

TEST_F(HostileFiles, AreRefusedSoonAndWithLittleMemory)
{
#if defined(__SANITIZE_ADDRESS__)
    GTEST_SKIP() << "the limits are for a build without sanitizers";
#endif
    std::size_t files = 0;
    for (const auto& entry : fs::recursive_directory_iterator(LAMINA_CORPUS)) {
        const std::string name = entry.path().filename();
        if (!name.starts_with("hostile-") || entry.path().parent_path().filename() == "acv")
            continue;
        SCOPED_TRACE(entry.path().lexically_relative(LAMINA_CORPUS).string());
        ++files;
        const auto start = std::chrono::steady_clock::now();
        const CommandResult run =
            runWithDecoders("lamina op horizontalFlip -i '" + entry.path().string() + "' -o out.png");
        EXPECT_LT(std::chrono::steady_clock::now() - start, kHangs);
        EXPECT_TRUE(run.exitCode == 0 || run.exitCode == 3) << run.exitCode;
        // A refusal is one line, and foreign libraries add none.
        EXPECT_EQ(std::ranges::count(run.errors, '\n'), run.exitCode == 0 ? 0 : 1) << run.errors;
        EXPECT_LT(run.processorSeconds, kMostSeconds);
        EXPECT_LT(run.peakKilobytes, kMostKilobytes);
    }
    EXPECT_GT(files, 100u);
    EXPECT_GT(m_decoders, 50u);
}

} // namespace
} // namespace lamina::test
