#pragma once

#include "platform/base/CGGeometry.h"

#include <optional>

namespace lamina {

/// A 2-D affine transform on row vectors:
///
///   x' = a·x + c·y + tx,   y' = b·x + d·y + ty
///
/// `translated`, `scaled` and `rotated` put their step *before* this transform, that is inside its coordinate system:
/// on a transform that scales by 2, `translated(10, 0)` moves the result by 20. Angles are in radians; with y down a
/// positive angle turns clockwise on the screen. A plain value, usable from any thread.
struct CGAffineTransform {
    double a = 1;
    double b = 0;
    double c = 0;
    double d = 1;
    double tx = 0;
    double ty = 0;

    /// Changes nothing.
    static constexpr CGAffineTransform identity() { return {}; }
    /// Moves by (x, y).
    static constexpr CGAffineTransform translation(double x, double y) { return {1, 0, 0, 1, x, y}; }
    /// Stretches from the origin; negative factors mirror.
    static constexpr CGAffineTransform scaling(double sx, double sy) { return {sx, 0, 0, sy, 0, 0}; }
    /// Turns about the origin.
    static CGAffineTransform rotation(double radians);

    /// This transform first, then `next`.
    CGAffineTransform concatenating(const CGAffineTransform& next) const;

    /// A step before this transform, inside its coordinate system (see above).
    CGAffineTransform translated(double x, double y) const { return translation(x, y).concatenating(*this); }
    CGAffineTransform scaled(double sx, double sy) const { return scaling(sx, sy).concatenating(*this); }
    CGAffineTransform rotated(double radians) const { return rotation(radians).concatenating(*this); }

    /// The area of the unit square's image; negative where the transform mirrors.
    constexpr double determinant() const { return a * d - b * c; }

    /// The transform that takes points back. Nothing when the transform flattens the plane or holds a value that is not
    /// finite.
    std::optional<CGAffineTransform> inverted() const;

    /// The image of `p`.
    constexpr CGPoint apply(CGPoint p) const { return {a * p.x + c * p.y + tx, b * p.x + d * p.y + ty}; }

    /// The bounding box of the transformed rectangle.
    CGRect boundingBox(const CGRect& rect) const;

    /// True when axes stay axes: only scaling (mirroring included) and translation.
    constexpr bool isAxisAligned() const { return b == 0 && c == 0; }
    constexpr bool isIdentity() const { return *this == CGAffineTransform{}; }
    /// No value is infinite or NaN.
    bool isFinite() const;

    friend constexpr bool operator==(const CGAffineTransform&, const CGAffineTransform&) = default;
};

} // namespace lamina
