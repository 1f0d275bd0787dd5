#pragma once

#include "gpu/core/FilterRegistry.h"

namespace lamina {

/// The registry that starts with every built-in filter. A program adds filters of its own before it uses it:
///
///   filterCatalogue().add(filterDescription<MyFilter>("MyFilter", "colour", 1, "Turns red into blue", {...}));
FilterRegistry& filterCatalogue();

} // namespace lamina
