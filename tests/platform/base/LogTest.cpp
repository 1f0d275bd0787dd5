#include "LogCapture.h"
#include "platform/base/Localization.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <sstream>
#include <stdexcept>
#include <thread>

namespace lamina {
namespace {

TEST(Log, WritesLinesToStandardErrorAboveTheLevel)
{
    testing::internal::CaptureStderr();
    logInfo("ready");
    logDebug("not at the default level");
    logWarning("two\nlines\n");
    setMinimumLogLevel(LogLevel::Error);
    logWarning("dropped");
    logError("gone");
    setMinimumLogLevel(LogLevel::Info);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "lamina: ready\n"
                                                      "lamina: warning: two\n"
                                                      "lamina: warning: lines\n"
                                                      "lamina: error: gone\n");
}

TEST(Log, LinesOfManyThreadsStayWhole)
{
    constexpr int kThreads = 6;
    constexpr int kLines = 200;
    testing::internal::CaptureStderr();
    {
        std::vector<std::jthread> threads;
        for (int t = 0; t < kThreads; ++t)
            threads.emplace_back([t] {
                for (int i = 0; i < kLines; ++i)
                    logInfo(std::string(60, static_cast<char>('a' + t)));
            });
    }
    std::istringstream lines(testing::internal::GetCapturedStderr());
    int count = 0;
    for (std::string line; std::getline(lines, line); ++count) {
        ASSERT_EQ(line.size(), 8u + 60u) << line;
        ASSERT_EQ(std::count(line.begin() + 8, line.end(), line[8]), 60) << line;
    }
    EXPECT_EQ(count, kThreads * kLines);
}

TEST(Log, ASinkMayLogAndFail)
{
    testing::internal::CaptureStderr();
    const LogSink former = setLogSink([](LogLevel, std::string_view text) {
        logInfo("inside " + std::string(text));
        throw std::runtime_error("full disk");
    });
    logInfo("one");
    logInfo("two");
    setLogSink(former);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "lamina: inside one\nlamina: inside two\n");
}

TEST(Localization, FallsBackToTheKey)
{
    EXPECT_EQ(localizedString("Blend"), "Blend");
    setTextLookup([](std::string_view key) { return key == "Blend" ? std::string("Mischen") : std::string(); });
    EXPECT_EQ(localizedString("Blend"), "Mischen");
    EXPECT_EQ(localizedString("Frames"), "Frames");
    setTextLookup({});
    EXPECT_EQ(localizedString("Blend"), "Blend");
}

} // namespace
} // namespace lamina
