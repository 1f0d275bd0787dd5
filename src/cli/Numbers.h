#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace lamina {

/// `count` finite numbers separated by commas ("1.5,-20,0"), with a decimal point whatever the locale; nothing when the
/// text is anything else.
std::optional<std::vector<double>> parseNumbers(std::string_view text, std::size_t count);

} // namespace lamina
