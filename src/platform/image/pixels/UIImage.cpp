#include "platform/image/pixels/UIImage.h"

#include "platform/base/WorkerPool.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cmath>
#include <cstring>
#include <utility>

namespace lamina {

UIImageOrientation orientationFromExif(int value)
{
    using O = UIImageOrientation;
    constexpr std::array kByTag{O::Up,           O::UpMirrored, O::Down,          O::DownMirrored,
                                O::LeftMirrored, O::Right,      O::RightMirrored, O::Left};
    return value >= 1 && value <= 8 ? kByTag[static_cast<std::size_t>(value - 1)] : O::Up;
}

CGAffineTransform orientationTransform(UIImageOrientation orientation, IntSize stored)
{
    const double w = stored.width;
    const double h = stored.height;
    switch (orientation) {
    case UIImageOrientation::Up:
        break;
    case UIImageOrientation::Down:
        return {-1, 0, 0, -1, w, h};
    case UIImageOrientation::Left: // x' = y, y' = w - x
        return {0, -1, 1, 0, 0, w};
    case UIImageOrientation::Right: // x' = h - y, y' = x
        return {0, 1, -1, 0, h, 0};
    case UIImageOrientation::UpMirrored:
        return {-1, 0, 0, 1, w, 0};
    case UIImageOrientation::DownMirrored:
        return {1, 0, 0, -1, 0, h};
    case UIImageOrientation::LeftMirrored: // x' = y, y' = x
        return {0, 1, 1, 0, 0, 0};
    case UIImageOrientation::RightMirrored: // x' = h - y, y' = w - x
        return {0, -1, -1, 0, h, w};
    }
    return {};
}

UIImage::UIImage(CGImage image, double scale, UIImageOrientation orientation)
    : m_image(std::move(image))
    , m_scale(scale)
    , m_orientation(orientation)
{
    assert(scale > 0 && std::isfinite(scale));
    if (!(scale > 0 && std::isfinite(scale)))
        m_scale = 1;
}

IntSize UIImage::pixelSize() const
{
    if (!m_image)
        return {};
    const IntSize stored = m_image.size();
    return swapsSides(m_orientation) ? IntSize{stored.height, stored.width} : stored;
}

CGSize UIImage::size() const
{
    const IntSize pixels = pixelSize();
    return {pixels.width / m_scale, pixels.height / m_scale};
}

bool UIImage::isIdenticalTo(const UIImage& other) const
{
    return m_image.sharesBytesWith(other.m_image) && m_image.size() == other.m_image.size() &&
           m_scale == other.m_scale && m_orientation == other.m_orientation;
}

} // namespace lamina
