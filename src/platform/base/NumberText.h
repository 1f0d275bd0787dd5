#pragma once

#include <string>

// Numbers as texts, with a point in every locale. From any thread.

namespace lamina {

/// The fewest decimals that name the value, at least one: "640.0", "0.1". No exponents.
std::string decimalText(double value);

/// The value to that many decimals (0 to 20), ties by its exact binary value: fixedText(1.25, 1) is "1.2".
std::string fixedText(double value, int decimals);

} // namespace lamina
