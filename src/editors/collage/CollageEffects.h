#pragma once

#include <array>
#include <cstddef>

namespace lamina {

/// Sliders of the effects panel.
inline constexpr std::size_t kCollageEffectCount = 9;

/// Where they stand when the editor opens, in their order.
inline constexpr std::array<double, kCollageEffectCount> kCollageSliderStarts = {0, 0, 0, 0, 0, 0.5, 1, 1, 1};

} // namespace lamina
