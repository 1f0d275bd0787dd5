#pragma once

#include <span>
#include <string>
#include <string_view>

namespace lamina {

/// "did you mean X?", X being the one of `names` (at least one) that whoever typed `typed` most likely meant.
///
/// An edit distance (Levenshtein) without regard to case in which a letter typed wrong or too much weighs eight times a
/// letter left out, so that the beginning of a long name ("contrast") finds it. Of equals the first.
std::string didYouMean(std::string_view typed, std::span<const std::string_view> names);

} // namespace lamina
