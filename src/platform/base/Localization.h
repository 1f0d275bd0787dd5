#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace lamina {

/// The text to show a person for `key`, which is the English text itself: what the installed look-up answers, or the key
/// when none is installed or the answer is empty. From any thread.
std::string localizedString(std::string_view key);

/// Called on any thread, several at once.
using TextLookup = std::function<std::string(std::string_view key)>;

/// Installs the look-up (empty: none). A call of the former one may still be under way on another thread.
void setTextLookup(TextLookup lookup);

} // namespace lamina
