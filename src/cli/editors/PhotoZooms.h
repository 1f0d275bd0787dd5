#pragma once

#include "cli/editors/CollageSteps.h"

#include <cstddef>
#include <span>
#include <vector>

namespace lamina {

/// Pixels that the shorter side of each photo needs, so that a canvas of `side` pixels shows them as well as the whole
/// photo would after these steps.
std::vector<int> neededSides(std::span<const CollageStep> steps, std::size_t photos, double side);

} // namespace lamina
