#pragma once

#include <algorithm>
#include <string_view>

namespace lamina {

/// A letter of ASCII as a small one; anything else as it is. Whatever the locale, as names of formats, schemes and
/// hosts are compared.
constexpr char lowercased(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// Whether two texts differ in nothing but the case of their ASCII letters.
constexpr bool equalIgnoringCase(std::string_view x, std::string_view y)
{
    return std::equal(x.begin(), x.end(), y.begin(), y.end(),
                      [](char a, char b) { return lowercased(a) == lowercased(b); });
}

} // namespace lamina
