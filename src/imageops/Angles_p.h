#pragma once

#include <optional>

namespace lamina {

/// An angle in radians, its sine and cosine, and the whole quarter turns that it is, if it is some.
struct Angle {
    /// Nothing when the angle is not finite. One that lies as near to a multiple of a quarter turn as a float can tell
    /// is that multiple, with an exact sine and cosine.
    static std::optional<Angle> make(float radians);

    double sine = 0;
    double cosine = 1;
    std::optional<int> quarters; ///< 0 to 3, counter-clockwise
};

/// In radians, by the factor 0.017453293 in single precision.
float radiansOf(float degrees);

} // namespace lamina
