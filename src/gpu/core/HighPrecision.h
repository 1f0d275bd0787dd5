#pragma once

#include <string>

namespace lamina {

/// The fragment shader of a filter that would be wrong without high precision. Where a device has none in fragment
/// shaders it doesn't build, and the log says which filter needs it.
std::string needingHighPrecision(const std::string& filter, const std::string& fragmentShader);

} // namespace lamina
