#pragma once

#include <QString>

#include <cstddef>
#include <string_view>

namespace lamina {

/// What of a text from outside a notification shows: so many characters at most, an ellipsis being the last one of a
/// longer text. In the place of each character that can't be shown, and of bytes that are none of UTF-8, stands U+FFFD;
/// ends of lines stay where `lines`, and are spaces elsewhere.
QString notificationText(std::string_view text, std::size_t characters, bool lines);

} // namespace lamina
