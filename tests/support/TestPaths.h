#pragma once

#include <string>

namespace lamina::test {

/// A file below tests/data, and that folder itself.
std::string testData(const std::string& name = "");

/// A file below assets/samples, and that folder itself.
std::string samples(const std::string& name = "");

/// A reference picture below tests/golden, and that folder itself.
std::string golden(const std::string& name = "");

} // namespace lamina::test
