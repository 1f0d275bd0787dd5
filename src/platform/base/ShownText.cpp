#include "platform/base/ShownText.h"

#include <algorithm>
#include <array>
#include <utility>

namespace lamina {

namespace {

/// The first and the last character of a range.
using Range = std::pair<char32_t, char32_t>;

// Sorted: terminals' controls, and characters without a form that change how those around them are read.
constexpr std::array<Range, 8> kHidden = {{{0x00, 0x1F},
                                           {0x7F, 0x9F},
                                           {0x061C, 0x061C},   // Arabic letter mark
                                           {0x200E, 0x200F},   // marks of direction
                                           {0x2028, 0x202E},   // ends of lines and paragraphs, embeddings, overrides
                                           {0x2066, 0x2069},   // isolates
                                           {0xFEFF, 0xFEFF},   // byte order mark
                                           {0xFFF9, 0xFFFB}}}; // marks of annotations

bool isHidden(char32_t code)
{
    return std::ranges::any_of(kHidden,
                               [code](const Range& range) { return range.first <= code && code <= range.second; });
}

/// How many bytes the character has whose first byte this is, and what of that byte belongs to its code; 0 bytes where
/// none begins so.
std::pair<std::size_t, char32_t> lead(unsigned char byte)
{
    if (byte < 0x80)
        return {1, byte};
    if (byte >= 0xC2 && byte < 0xE0)
        return {2, byte & 0x1Fu};
    if (byte >= 0xE0 && byte < 0xF0)
        return {3, byte & 0x0Fu};
    if (byte >= 0xF0 && byte < 0xF5)
        return {4, byte & 0x07u};
    return {0, 0};
}

/// Neither written with more bytes than it takes, nor half of a pair, nor beyond the last one.
bool isCharacter(char32_t code, std::size_t length)
{
    constexpr std::array<char32_t, 5> kFirstOfLength = {0, 0, 0x80, 0x800, 0x10000};
    return code >= kFirstOfLength[length] && code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF);
}

} // namespace

FirstSign firstSign(std::string_view text)
{
    constexpr FirstSign kStray{1, false, false};
    if (text.empty())
        return {};
    auto [length, code] = lead(static_cast<unsigned char>(text.front()));
    if (length == 0 || length > text.size())
        return kStray;
    for (const char c : text.substr(1, length - 1)) {
        const auto byte = static_cast<unsigned char>(c);
        if ((byte & 0xC0u) != 0x80u)
            return kStray;
        code = code << 6 | (byte & 0x3Fu);
    }
    return isCharacter(code, length) ? FirstSign{length, true, !isHidden(code)} : kStray;
}

bool isUTF8(std::string_view text)
{
    while (!text.empty()) {
        const FirstSign first = firstSign(text);
        if (!first.isUTF8)
            return false;
        text.remove_prefix(first.length);
    }
    return true;
}

std::string shownText(std::string_view text, std::string_view sign)
{
    std::string shown;
    shown.reserve(text.size());
    while (!text.empty()) {
        const FirstSign first = firstSign(text);
        shown += first.isShown ? text.substr(0, first.length) : sign;
        text.remove_prefix(first.length);
    }
    return shown;
}

std::string beginningOf(std::string_view text, std::size_t bytes)
{
    if (text.size() <= bytes)
        return std::string(text);
    std::size_t end = 0;
    while (true) {
        const std::size_t next = end + firstSign(text.substr(end)).length;
        if (next > bytes)
            return std::string(text.substr(0, end)) + "...";
        end = next;
    }
}

} // namespace lamina
