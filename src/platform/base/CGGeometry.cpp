#include "platform/base/CGGeometry.h"

namespace lamina {

namespace {

int saturated(double value)
{
    constexpr double kLimit = (1 << 30) - 1; // so that the side between both limits is an int as well
    return static_cast<int>(std::clamp(value, -kLimit, kLimit));
}

} // namespace

IntRect integralCover(const CGRect& rect)
{
    if (!rect.isMeasurable())
        return {};
    const int x0 = saturated(std::floor(rect.minX()));
    const int y0 = saturated(std::floor(rect.minY()));
    return {x0, y0, saturated(std::ceil(rect.maxX())) - x0, saturated(std::ceil(rect.maxY())) - y0};
}

} // namespace lamina
