#pragma once

#include <string>
#include <string_view>

namespace lamina {

/// A folder's name as text: bytes that are none become U+FFFD.
std::string folderTitle(std::string_view name);

/// The order in which folders are shown: case does not count, and numbers count by their value ("Day 9" before "Day
/// 10"). Titles that only differ so are told apart byte by byte.
bool isTitledBefore(const std::string& x, const std::string& y);

} // namespace lamina
