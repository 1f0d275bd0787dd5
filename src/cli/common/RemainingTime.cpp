#include "cli/common/RemainingTime.h"

#include <cmath>

namespace lamina {

namespace {

std::string roundedTime(double seconds)
{
    struct Unit {
        double seconds;
        const char* name;
    };
    constexpr Unit kUnits[] = {{3600, " h"}, {60, " min"}};
    for (const Unit& unit : kUnits) {
        if (seconds >= 2 * unit.seconds)
            return std::to_string(std::lround(seconds / unit.seconds)) + unit.name;
    }
    return std::to_string(std::lround(std::ceil(seconds))) + " s";
}

} // namespace

std::string RemainingTime::text(double done) const
{
    if (!(done > 0 && done < 1))
        return {};
    const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - m_begin;
    return roundedTime(passed.count() / done * (1 - done)) + " left";
}

} // namespace lamina
