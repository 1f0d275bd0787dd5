#pragma once

#include <algorithm>
#include <cmath>

namespace lamina {

// Geometry in points (or pixels, where a header says so); x runs to the right, y runs down. Plain values, usable from
// any thread.

/// A place in the plane.
struct CGPoint {
    double x = 0;
    double y = 0;
    friend bool operator==(const CGPoint&, const CGPoint&) = default;
};

/// A width and a height.
struct CGSize {
    double width = 0;
    double height = 0;
    friend bool operator==(const CGSize&, const CGSize&) = default;
};

/// A rectangle by its top left corner and its size. Sizes are not negative.
struct CGRect {
    CGPoint origin;
    CGSize size;

    constexpr CGRect() = default;
    constexpr CGRect(CGPoint o, CGSize s)
        : origin(o)
        , size(s)
    {
    }
    constexpr CGRect(double x, double y, double width, double height)
        : origin{x, y}
        , size{width, height}
    {
    }

    constexpr double minX() const { return origin.x; }
    constexpr double minY() const { return origin.y; }
    constexpr double maxX() const { return origin.x + size.width; }
    constexpr double maxY() const { return origin.y + size.height; }
    constexpr double midX() const { return origin.x + size.width / 2; }
    constexpr double midY() const { return origin.y + size.height / 2; }

    /// True when no point lies inside: a side is zero, negative or not a number.
    constexpr bool isEmpty() const { return !(size.width > 0 && size.height > 0); }

    /// Not empty, and its edges are numbers in order: false where a coordinate is NaN or too large for the sides to
    /// count.
    constexpr bool isMeasurable() const { return !isEmpty() && maxX() > minX() && maxY() > minY(); }

    /// The top and left edges belong to the rectangle, the bottom and right ones do not.
    constexpr bool contains(CGPoint p) const { return p.x >= minX() && p.x < maxX() && p.y >= minY() && p.y < maxY(); }

    /// Moved inwards by `dx` and `dy` on each side (outwards when negative).
    constexpr CGRect insetBy(double dx, double dy) const
    {
        return {origin.x + dx, origin.y + dy, size.width - 2 * dx, size.height - 2 * dy};
    }
    /// The same rectangle moved by `dx` and `dy`.
    constexpr CGRect offsetBy(double dx, double dy) const { return {{origin.x + dx, origin.y + dy}, size}; }

    /// The common part; an empty rectangle at (0, 0) when there is none, or a value is not a number.
    constexpr CGRect intersection(const CGRect& other) const
    {
        if (!isMeasurable() || !other.isMeasurable())
            return {};
        const double x0 = std::max(minX(), other.minX());
        const double y0 = std::max(minY(), other.minY());
        const double x1 = std::min(maxX(), other.maxX());
        const double y1 = std::min(maxY(), other.maxY());
        return x1 > x0 && y1 > y0 ? CGRect{x0, y0, x1 - x0, y1 - y0} : CGRect{};
    }

    /// The smallest rectangle around both; an empty one adds nothing.
    constexpr CGRect unionWith(const CGRect& other) const
    {
        if (isEmpty())
            return other;
        if (other.isEmpty())
            return *this;
        const double x0 = std::min(minX(), other.minX());
        const double y0 = std::min(minY(), other.minY());
        return {x0, y0, std::max(maxX(), other.maxX()) - x0, std::max(maxY(), other.maxY()) - y0};
    }

    friend bool operator==(const CGRect&, const CGRect&) = default;
};

/// A size in whole pixels.
struct IntSize {
    int width = 0;
    int height = 0;
    constexpr bool isEmpty() const { return width <= 0 || height <= 0; }
    friend bool operator==(const IntSize&, const IntSize&) = default;
};

/// A rectangle of whole pixels.
struct IntRect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    constexpr int right() const { return x + width; }
    constexpr int bottom() const { return y + height; }
    constexpr bool isEmpty() const { return width <= 0 || height <= 0; }
    /// The common part; an empty rectangle at (0, 0) when there is none. The edges must fit an int.
    constexpr IntRect intersection(const IntRect& other) const
    {
        const int x0 = std::max(x, other.x);
        const int y0 = std::max(y, other.y);
        const int x1 = std::min(right(), other.right());
        const int y1 = std::min(bottom(), other.bottom());
        return x1 > x0 && y1 > y0 ? IntRect{x0, y0, x1 - x0, y1 - y0} : IntRect{};
    }
    /// The smallest rectangle around both; an empty one adds nothing. The edges must fit an int.
    constexpr IntRect unionWith(const IntRect& other) const
    {
        if (isEmpty())
            return other;
        if (other.isEmpty())
            return *this;
        const int x0 = std::min(x, other.x);
        const int y0 = std::min(y, other.y);
        return {x0, y0, std::max(right(), other.right()) - x0, std::max(bottom(), other.bottom()) - y0};
    }
    friend bool operator==(const IntRect&, const IntRect&) = default;
};

/// Neither coordinate is infinite or NaN.
inline bool isFinite(CGPoint p)
{
    return std::isfinite(p.x) && std::isfinite(p.y);
}

/// Neither side is infinite or NaN.
inline bool isFinite(CGSize s)
{
    return std::isfinite(s.width) && std::isfinite(s.height);
}

/// Both sides are finite and above zero.
inline bool isMeasurable(CGSize s)
{
    return isFinite(s) && s.width > 0 && s.height > 0;
}

/// Lengths in pixels that differ by no more than this differ by the rounding of products and quotients alone.
inline constexpr double kPixelNoise = 1e-6;

/// The smallest rectangle of whole pixels that covers `rect`, saturated to ±(2^30 − 1) so that hostile values stay
/// harmless.
IntRect integralCover(const CGRect& rect);

} // namespace lamina
