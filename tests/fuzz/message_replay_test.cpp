// Reads every message of the corpus. What each comes to is checked where messages are.

#include "MessageCheck.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <vector>

namespace lamina::test {
namespace {

TEST(MessageReplay, WholeMessagesAreReadAndNoneIsReadWrongly)
{
    int files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(LAMINA_CORPUS "/message")) {
        SCOPED_TRACE(entry.path().filename().string());
        std::ifstream file(entry.path(), std::ios::binary);
        const std::vector<std::uint8_t> bytes{std::istreambuf_iterator<char>(file), {}};
        EXPECT_EQ(faultOfMessage(bytes), "");
        const bool isWhole = entry.path().filename().string().starts_with("whole-");
        EXPECT_TRUE(!isWhole || notificationOfMessage(bytes, "given"));
        ++files;
    }
    EXPECT_GE(files, 10);
}

} // namespace
} // namespace lamina::test
