#include "platform/host/services/UnifiedPushMessage.h"

#include <gtest/gtest.h>
#include <string>
#include <utility>

namespace lamina::test {
namespace {

std::string repeated(const std::string& text, int count)
{
    std::string all;
    while (count-- > 0)
        all += text;
    return all;
}

/// "title|body|identifier|badge", or the cause of the error.
std::string read(const std::string& text)
{
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    const auto message = notificationOfMessage({bytes, text.size()}, "given");
    if (!message)
        return message.error().cause;
    return message->title + '|' + message->body + '|' + message->identifier + '|' +
           (message->userInfo.contains("badge") ? message->userInfo["badge"].dump() : "");
}

TEST(UnifiedPushMessages, AreOneSmallObjectOrNone)
{
    const std::string filled = R"({"title":")" + std::string(4096 - 12, 'x') + R"("})";
    ASSERT_EQ(filled.size(), 4096u);
    const std::pair<std::string, std::string> rows[] = {
        {R"({"title":"Hi","body":"there","badge":5,"id":"a"})", "Hi|there|a|5"},
        {R"({"badge":5.9,"more":[1,{"x":null}]})", "||given|5.9"},
        {R"({"badge":"5"})", "||given|\"5\""},
        {R"({"badge":-99999999999999999999})", "||given|-1e+20"},
        {"\xEF\xBB\xBF {}\n", "||given|"},
        {R"({"title":7,"body":["x"],"id":{}})", "||given|"},
        {R"({"title":"first","title":"last"})", "last||given|"},
        {R"({"title":"a\nb\tc\u0007d\u202ee\u0000f","id":"\u001b[2J"})", "a b c�d�e�f||�[2J|"},
        {R"({"id":")" + std::string(200, 'i') + R"("})", "||" + std::string(128, 'i') + "...|"},
        {filled, std::string(4096 - 12, 'x') + "||given|"},
        {filled + " ", "longer than 4096 bytes"},
        {repeated("[", 7) + repeated("]", 7), "not a JSON object"},
        {R"({"a":)" + repeated("[", 7) + repeated("]", 7) + "}", "||given|"},
        {R"({"a":)" + repeated("[", 8) + repeated("]", 8) + "}", "nested too deep"},
        {repeated("[", 4096), "nested too deep"},
        {repeated(R"({"a":)", 700), "nested too deep"},
        {repeated("[", 10'000), "longer than 4096 bytes"},
        {"", "not JSON"},
        {"hello", "not JSON"},
        {R"({"title":"cut)", "not JSON"},
        {R"({"badge":1e400})", "not JSON"},
        {std::string("{}\0{}", 5), "not JSON"},
        {"{\"title\":\"\xC3(\"}", "not JSON"},
        {"\x1F\x8B\x08", "not JSON"},
        {"null", "not a JSON object"},
        {R"([{"badge":1}])", "not a JSON object"},
        {R"("title")", "not a JSON object"},
    };
    for (const auto& [text, expected] : rows)
        EXPECT_EQ(read(text), expected) << text.substr(0, 80);
}

} // namespace
} // namespace lamina::test
