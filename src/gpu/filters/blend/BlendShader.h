#pragma once

#include "gpu/core/FilterRegistry.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace lamina {

// What all blends have in common: two pictures, the base in slot 0 and the overlay in slot 1, and one expression.

/// A fragment shader that writes `result`: an expression of the colours `base` and `overlay`. `declarations` come
/// before it. They and the expression may use
///
///   vec3 alone(base, overlay)            what shows where only one of the two is, (1 - b.a) o + (1 - o.a) b
///   float unionAlpha(base, overlay)      b.a + o.a - b.a o.a
///   vec4 joined(base, overlay, both)     the two together, premultiplied: `both` is what shows where both are
///   kLeast                               less than any step of 8 bits, in place of a divisor of 0
std::string blendShader(std::string_view result, std::string_view declarations = {});

/// The description of a blend of straight colours.
template <class Filter>
FilterDescription blendDescription(std::string className, std::string help, std::vector<FilterProperty> properties = {},
                                   std::vector<FilterSelector> selectors = {})
{
    return filterDescription<Filter>(std::move(className), "blend", 2, std::move(help), std::move(properties),
                                     std::move(selectors), {"base", "overlay"});
}

} // namespace lamina
