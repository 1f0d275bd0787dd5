#include "editors/common/KeptJournal.h"

#include <gtest/gtest.h>

namespace lamina::test {
namespace {

using Records = std::vector<std::string>;

TEST(KeptJournal, WhatIsLeftOfItIsRead)
{
    const Records written{R"({"work":"older"})", R"({"work":"lamina-kept 1 3 "})"};
    const std::vector<std::uint8_t> whole = journalOf(written);
    const std::size_t first = journalOf(Records{written[0]}).size();
    ASSERT_EQ(readJournal(whole).records, written);
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const Records left(written.begin(), written.begin() + (size >= first ? 1 : 0));
        EXPECT_EQ(readJournal({whole.data(), size}).records, left) << "cut at " << size;
    }
    for (std::size_t i = 0; i < whole.size(); ++i) {
        std::vector<std::uint8_t> damaged = whole;
        damaged[i] ^= 0x10;
        const Records left = readJournal(damaged).records;
        const bool isEnd = i + 1 == first || i + 1 == whole.size(); // of a line; nothing hangs on it
        EXPECT_EQ(left, isEnd ? written : Records{written[i < first ? 1 : 0]}) << "damaged at " << i;
    }
}

TEST(KeptJournal, ALaterVersionIsToldFromDamage)
{
    const auto contents = [](const std::string& text) {
        return readJournal({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
    };
    EXPECT_TRUE(contents("lamina-kept 2 whatever\n").isNewer);
    for (const char* const foreign : {"", "\x89PNG", "lamina-kept", "lamina-kept 1 99999999999999999999 ", "lamina-kept x"})
        EXPECT_FALSE(contents(foreign).isNewer || !contents(foreign).records.empty()) << foreign;
}

} // namespace
} // namespace lamina::test
