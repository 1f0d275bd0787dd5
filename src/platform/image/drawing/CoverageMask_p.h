#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/image/pixels/PixelBuffer.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

namespace lamina {

/// How much of each pixel of a rectangle of the device is covered: 0 not at all, 255 wholly. Nothing is covered
/// outside. A cheap value, usable from any thread.
class CoverageMask {
public:
    CoverageMask() = default;
    CoverageMask(const IntRect& bounds, PixelBuffer bytes)
        : m_bounds(bounds)
        , m_bytes(std::move(bytes).share())
    {
    }

    explicit operator bool() const { return m_bytes != nullptr; }
    const IntRect& bounds() const { return m_bounds; }
    /// The byte of pixel (x, y), which must lie inside; those to its right follow.
    const std::uint8_t* at(int x, int y) const
    {
        return m_bytes.get() + static_cast<std::ptrdiff_t>(y - m_bounds.y) * m_bounds.width + (x - m_bounds.x);
    }

private:
    IntRect m_bounds;
    std::shared_ptr<const std::uint8_t> m_bytes;
};

/// The coverage of an upright rectangle with fractional edges: the product of a row's and a column's share. Places are
/// device pixels; edges that lie within 1/4096 of a pixel's border count as on it.
class RectCoverage {
public:
    /// `antialias` false: a pixel is covered when its centre is.
    RectCoverage(const CGRect& rect, bool antialias);

    /// The pixels touched; empty for an empty rectangle or one that is not finite. Saturated far outside any device.
    const IntRect& bounds() const { return m_bounds; }
    /// Whether every touched pixel is covered wholly.
    bool isWhole() const { return m_whole; }
    /// Coverage of pixels [x, x + count) of row y, all inside the bounds; null when the row is covered wholly there.
    const std::uint8_t* row(int x, int y, int count, std::uint8_t* scratch) const;

private:
    struct Axis {
        int begin = 0;
        int end = 0;
        double first = 1; ///< share of the first pixel
        double last = 1;  ///< share of the last pixel; the product of both where they are one
        double share(int place) const;
    };
    static Axis makeAxis(double low, double high, bool antialias);

    Axis m_x;
    Axis m_y;
    IntRect m_bounds;
    bool m_whole = true;
};

} // namespace lamina
