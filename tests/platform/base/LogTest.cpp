#include "platform/base/Log.h"

#include <gtest/gtest.h>
#include <stdexcept>
#include <string>

namespace lamina {
namespace {

TEST(Log, WritesLinesAboveTheLevelAndItsSinkMayLogAndFail)
{
    testing::internal::CaptureStderr();
    logDebug("not at the default level");
    logWarning("two\nlines\n");
    setMinimumLogLevel(LogLevel::Error);
    logWarning("dropped");
    logError("gone");
    setMinimumLogLevel(LogLevel::Info);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "lamina: warning: two\n"
                                                      "lamina: warning: lines\n"
                                                      "lamina: error: gone\n");

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

TEST(Log, EscapesAndBoundsWhatItIsGiven)
{
    std::string heard;
    const LogSink former = setLogSink([&](LogLevel, std::string_view text) { heard = text; });
    logInfo("\x1b[31mred\xff\nnext\n\n");
    EXPECT_EQ(heard, "?[31mred?\nnext");
    setLogSink(former);
    for (const std::string& endless : {std::string(100'000, 'a'), std::string(100'000, '\n') + "b"}) {
        testing::internal::CaptureStderr();
        logWarning(endless);
        const std::string written = testing::internal::GetCapturedStderr();
        EXPECT_LE(written.size(), 4096u);
        EXPECT_TRUE(written.ends_with("...\n")) << written;
    }
}

} // namespace
} // namespace lamina
