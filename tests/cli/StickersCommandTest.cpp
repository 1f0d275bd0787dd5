#include "CommandLines.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <set>
#include <string>

namespace lamina::test {
namespace {

using StickersCommand = CommandLines;

TEST_F(StickersCommand, ListsEveryStickerOnceForPeopleAndPrograms)
{
    const std::string text = shell("lamina stickers").output;
    EXPECT_THAT(text, testing::HasSubstr("Weather:\n  big117  Sun\n"));
    std::set<std::string> words;
    for (const auto& entry : nlohmann::json::parse(shell("lamina stickers --json").output)) {
        const std::string word = entry.at("word");
        words.insert(word);
        EXPECT_THAT(text, testing::HasSubstr("  " + entry.at("name").get<std::string>() + "  " + word + "\n"));
        EXPECT_THAT(text, testing::HasSubstr(entry.at("group").get<std::string>() + ":\n"));
    }
    EXPECT_EQ(words.size(), 84u);
}

} // namespace
} // namespace lamina::test
