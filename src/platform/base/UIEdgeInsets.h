#pragma once

#include <cmath>

namespace lamina {

/// Distances inwards from the four sides of a rectangle, points.
struct UIEdgeInsets {
    double top = 0;
    double left = 0;
    double bottom = 0;
    double right = 0;

    /// No side is infinite or NaN.
    bool isFinite() const
    {
        return std::isfinite(top) && std::isfinite(left) && std::isfinite(bottom) && std::isfinite(right);
    }

    friend bool operator==(const UIEdgeInsets&, const UIEdgeInsets&) = default;
};

} // namespace lamina
