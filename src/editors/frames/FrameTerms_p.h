#pragma once

#include "platform/base/CGGeometry.h"

#include <array>
#include <cstddef>

namespace lamina {

/// The sizes that a frame's lines are measured from.
struct FrameSizes {
    static constexpr std::size_t kScreen = 3;
    /// Of the frames of the first, second and third slot, then of the screen, in points.
    std::array<CGSize, kScreen + 1> sizes;
};

/// A coordinate as a frame's table writes it, `3 * aw / 4 + 20`: a part of one side, and points besides.
struct FrameTerm {
    std::size_t owner = 0; ///< index in `FrameSizes::sizes`
    bool isHeight = false;
    double times = 0;
    double divisor = 1;
    double points = 0;

    constexpr FrameTerm() = default;
    constexpr FrameTerm(double ownPoints) // a plain number is a coordinate too
        : points(ownPoints)
    {
    }
    constexpr FrameTerm(std::size_t side, bool height)
        : owner(side)
        , isHeight(height)
        , times(1)
    {
    }

    constexpr double in(const FrameSizes& all) const
    {
        const CGSize& size = all.sizes[owner];
        return times * ((isHeight ? size.height : size.width) / divisor) + points;
    }
};

constexpr FrameTerm operator*(double times, FrameTerm term)
{
    term.times *= times;
    return term;
}

constexpr FrameTerm operator/(FrameTerm term, double divisor)
{
    term.divisor *= divisor;
    return term;
}

constexpr FrameTerm operator+(FrameTerm term, double points)
{
    term.points += points;
    return term;
}

constexpr FrameTerm operator-(FrameTerm term, double points)
{
    return term + -points;
}

/// A corner of a polygon.
struct FrameCorner {
    FrameTerm x;
    FrameTerm y;
};

} // namespace lamina
