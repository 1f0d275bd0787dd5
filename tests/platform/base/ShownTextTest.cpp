#include "platform/base/ShownText.h"

#include <gtest/gtest.h>
#include <string>

namespace lamina {
namespace {

TEST(ShownText, HoldsNothingThatATerminalObeysOrThatIsNoText)
{
    const struct {
        std::string text;
        std::string shown;
    } cases[] = {
        {"Strand, 9½ Menschen – 浜辺 🏖", "Strand, 9½ Menschen – 浜辺 🏖"},
        {std::string("a\0b\x1b[2Jc\r\n\x7f", 11), "a?b?[2Jc???"},
        {"\xC2\x9B"
         "2J \xC2\xA0",
         "?2J \xC2\xA0"}, // C1, and the space after it
        {"\x9B"
         "2J \xE9t\xE9",
         "?2J ?t?"}, // bytes that begin no character
        {"a\u202Egpj.exe\u202C\u2066\u200F\u061C\uFEFF", "a?gpj.exe?????"},
        {"\u2028\u2029\u2027\u202F\u200D", "??\u2027\u202F\u200D"},                        // and the neighbours
        {"\xC0\xAF \xE0\x80\xAF \xED\xA0\x80 \xF4\x90\x80\x80 \xF5", "?? ??? ??? ???? ?"}, // too long, halves, beyond
        {"\xE6\xB5", "??"},                                                                // cut
        {"\xE6\xB5z", "??z"},
    };
    for (const auto& [text, shown] : cases) {
        EXPECT_EQ(shownText(text), shown);
        EXPECT_EQ(isUTF8(shownText(text, kReplacementSign)), true);
    }
    EXPECT_EQ(shownText("\x1b\xff", kReplacementSign), "\uFFFD\uFFFD");
}

TEST(ShownText, IsCutBetweenCharacters)
{
    EXPECT_EQ(beginningOf("浜辺", 6), "浜辺");
    EXPECT_EQ(beginningOf("浜辺", 5), "浜...");
    EXPECT_EQ(beginningOf("浜辺", 2), "...");
    EXPECT_EQ(beginningOf("\xff\xff\xff", 2), "\xff\xff...");
}

} // namespace
} // namespace lamina
