#pragma once

#include "gpu/core/FilterRegistry.h"
#include "platform/base/Result.h"

#include <cstddef>
#include <string>
#include <vector>

namespace lamina {

/// The filter of this class. The error names the nearest one.
Result<const FilterDescription*> filterNamed(const std::string& className);

/// Reads "PROPERTY=VALUE" texts in their order. The error's subject is the text; its cause says how the value is
/// written, in which unit, or names the nearest property.
Result<FilterSettings> parseSettings(const FilterDescription& filter, const std::vector<std::string>& texts);

/// "1 picture", "2 pictures".
std::string countedPictures(std::size_t count);

} // namespace lamina
