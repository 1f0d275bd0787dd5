#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace lamina {

/// The text to show the user for `key`, which is the English text itself: what the installed look-up answers, or the
/// key when none is installed or the answer is empty. From any thread.
std::string localizedString(std::string_view key);

/// The same with values in its places: "%1" to "%9" become the first to the ninth of `values`; a place without a value
/// stays. What the values hold is not looked at again. From any thread.
std::string localizedText(std::string_view key, const std::vector<std::string>& values);

/// Called on any thread, several at once.
using TextLookup = std::function<std::string(std::string_view key)>;

/// Installs the look-up (empty: none). A call of the former one may still be under way on another thread.
void setTextLookup(TextLookup lookup);

} // namespace lamina
