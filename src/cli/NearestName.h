#pragma once

#include <span>
#include <string_view>

namespace lamina {

/// The one of `names` that whoever typed `typed` most likely meant; empty when there are no names.
///
/// An edit distance without regard to case in which a letter typed wrong or too much weighs eight times a letter left
/// out, so that the beginning of a long name ("contrast") finds it. Of equals the first.
std::string_view nearestName(std::string_view typed, std::span<const std::string_view> names);

} // namespace lamina
