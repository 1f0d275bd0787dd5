#include "platform/image/drawing/CoverageMask_p.h"

#include "platform/image/drawing/DeviceBounds_p.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace lamina {

namespace {

double snapped(double place)
{
    const double whole = std::round(place);
    return std::abs(place - whole) < kSamePlace ? whole : place;
}

} // namespace

RectCoverage::Axis RectCoverage::makeAxis(double low, double high, bool antialias)
{
    Axis axis;
    low = snapped(std::clamp(low, -kFarthestPlace, kFarthestPlace));
    high = snapped(std::clamp(high, -kFarthestPlace, kFarthestPlace));
    if (!antialias) {
        axis.begin = static_cast<int>(std::ceil(low - 0.5));
        axis.end = static_cast<int>(std::ceil(high - 0.5));
        return axis;
    }
    axis.begin = static_cast<int>(std::floor(low));
    axis.end = static_cast<int>(std::ceil(high));
    axis.first = axis.begin + 1 - low;
    axis.last = high - (axis.end - 1);
    if (axis.end - axis.begin == 1)
        axis.first = axis.last = high - low;
    return axis;
}

double RectCoverage::Axis::share(int place) const
{
    if (place == begin)
        return first;
    return place == end - 1 ? last : 1;
}

RectCoverage::RectCoverage(const CGRect& rect, bool antialias)
{
    if (rect.isEmpty() || std::isnan(rect.minX()) || std::isnan(rect.minY()))
        return;
    m_x = makeAxis(rect.minX(), rect.maxX(), antialias);
    m_y = makeAxis(rect.minY(), rect.maxY(), antialias);
    if (m_x.end > m_x.begin && m_y.end > m_y.begin)
        m_bounds = {m_x.begin, m_y.begin, m_x.end - m_x.begin, m_y.end - m_y.begin};
    m_whole = m_x.first == 1 && m_x.last == 1 && m_y.first == 1 && m_y.last == 1;
}

const std::uint8_t* RectCoverage::row(int x, int y, int count, std::uint8_t* scratch) const
{
    const double share = m_y.share(y);
    const int right = x + count - 1;
    if (m_whole || (share == 1 && m_x.share(x) == 1 && m_x.share(right) == 1))
        return nullptr;
    const auto byte = [](double value) { return static_cast<std::uint8_t>(value * 255 + 0.5); };
    std::memset(scratch, byte(share), static_cast<std::size_t>(count));
    scratch[0] = byte(share * m_x.share(x));
    scratch[count - 1] = byte(share * m_x.share(right));
    return scratch;
}

} // namespace lamina
