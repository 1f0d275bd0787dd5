#pragma once

#include "gpu/core/FilterRegistry.h"

#include <string_view>

namespace lamina {

/// The sample of the built-in filter of this class; empty where a new filter shows what it does.
FilterSettings sampleSettings(std::string_view className);

} // namespace lamina
