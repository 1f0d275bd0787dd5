#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace lamina {

/// What a text begins with: one character, or one byte that begins none.
struct FirstSign {
    std::size_t length = 0; ///< in bytes; 0 of an empty text alone
    bool isUTF8 = false;    ///< whether it is a character
    /// Whether it can be printed as it is: no character that controls a terminal, ends a line, or turns the direction
    /// of those around it, and no byte that is none of UTF-8.
    bool isShown = false;
};

/// U+FFFD, the sign for what can't be shown where letters of any kind can.
inline constexpr std::string_view kReplacementSign = "\xEF\xBF\xBD";

/// The beginning of `text`; whoever goes over a text by it takes `length` bytes away each time.
FirstSign firstSign(std::string_view text);

/// Whether the whole text is UTF-8.
bool isUTF8(std::string_view text);

/// A name, or another text from outside, as a line of a terminal, a log or an alert may hold it: `sign` stands in the
/// place of each character and byte that can't be printed as it is. A text that is fine comes back unchanged.
std::string shownText(std::string_view text, std::string_view sign = "?");

/// Enough of a text to be recognised: the characters that fit into `bytes`, and "..." for the rest. A character that
/// would reach beyond is left out as a whole.
std::string beginningOf(std::string_view text, std::size_t bytes);

} // namespace lamina
