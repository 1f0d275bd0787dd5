#include "cli/common/NearestName.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace lamina {

namespace {

constexpr unsigned kWrong = 8;
constexpr unsigned kLeftOut = 1;
// People begin at the beginning: "scale" means scaleToSize rather than grayscale.
constexpr unsigned kLeftOutAtTheStart = 2;
constexpr unsigned kWordsLeftOut = 3;

// Beyond this a word is no slip of the fingers, and the work would grow with whatever was pasted.
constexpr std::size_t kLongestTyped = 64;

char lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

unsigned distanceFromTheStart(std::string_view typed, std::string_view name)
{
    // costs[j]: from what was typed so far to the first j letters of the name.
    std::vector<unsigned> costs(name.size() + 1);
    for (std::size_t j = 0; j <= name.size(); ++j)
        costs[j] = static_cast<unsigned>(j) * kLeftOutAtTheStart;
    for (const char c : typed) {
        unsigned diagonal = costs[0];
        costs[0] += kWrong;
        for (std::size_t j = 1; j <= name.size(); ++j) {
            const unsigned replaced = diagonal + (lower(c) == lower(name[j - 1]) ? 0 : kWrong);
            diagonal = costs[j];
            costs[j] = std::min({replaced, costs[j] + kWrong, costs[j - 1] + kLeftOut});
        }
    }
    return costs.back();
}

unsigned distance(std::string_view typed, std::string_view name)
{
    unsigned least = distanceFromTheStart(typed, name);
    for (std::size_t i = 1; i < name.size(); ++i) {
        if (name[i] >= 'A' && name[i] <= 'Z')
            least = std::min(least, kWordsLeftOut + distanceFromTheStart(typed, name.substr(i)));
    }
    return least;
}

} // namespace

std::string didYouMean(std::string_view typed, std::span<const std::string_view> names)
{
    const auto nearest = std::ranges::min_element(
        names, {}, [&](std::string_view name) { return distance(typed.substr(0, kLongestTyped), name); });
    return "did you mean " + std::string(*nearest) + "?";
}

} // namespace lamina
