#include "platform/base/CGAffineTransform.h"

#include <algorithm>
#include <cmath>

namespace lamina {

CGAffineTransform CGAffineTransform::rotation(double radians)
{
    const double s = std::sin(radians);
    const double k = std::cos(radians);
    return {k, s, -s, k, 0, 0};
}

CGAffineTransform CGAffineTransform::concatenating(const CGAffineTransform& n) const
{
    return {
        a * n.a + b * n.c,          //
        a * n.b + b * n.d,          //
        c * n.a + d * n.c,          //
        c * n.b + d * n.d,          //
        tx * n.a + ty * n.c + n.tx, //
        tx * n.b + ty * n.d + n.ty,
    };
}

std::optional<CGAffineTransform> CGAffineTransform::inverted() const
{
    const double det = determinant();
    if (!isFinite() || !std::isnormal(det))
        return std::nullopt;
    CGAffineTransform inverse{d / det, -b / det, -c / det, a / det, 0, 0};
    inverse.tx = -(tx * inverse.a + ty * inverse.c);
    inverse.ty = -(tx * inverse.b + ty * inverse.d);
    return inverse.isFinite() ? std::optional(inverse) : std::nullopt;
}

CGRect CGAffineTransform::boundingBox(const CGRect& rect) const
{
    const CGPoint corners[] = {
        apply({rect.minX(), rect.minY()}),
        apply({rect.maxX(), rect.minY()}),
        apply({rect.minX(), rect.maxY()}),
        apply({rect.maxX(), rect.maxY()}),
    };
    CGPoint low = corners[0];
    CGPoint high = corners[0];
    for (const CGPoint& p : corners) {
        low = {std::min(low.x, p.x), std::min(low.y, p.y)};
        high = {std::max(high.x, p.x), std::max(high.y, p.y)};
    }
    return {low.x, low.y, high.x - low.x, high.y - low.y};
}

bool CGAffineTransform::isFinite() const
{
    return std::isfinite(a) && std::isfinite(b) && std::isfinite(c) && std::isfinite(d) && std::isfinite(tx) &&
           std::isfinite(ty);
}

} // namespace lamina
