#pragma once

namespace lamina {

/// An sRGB colour with straight alpha; components in [0, 1]. A plain value, usable from any thread.
struct UIColor {
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 0;

    // The platform's named colours.
    static constexpr UIColor clear() { return {0, 0, 0, 0}; }
    static constexpr UIColor black() { return {0, 0, 0, 1}; }
    static constexpr UIColor white() { return {1, 1, 1, 1}; }
    static constexpr UIColor gray() { return {0.5, 0.5, 0.5, 1}; }
    static constexpr UIColor brown() { return {0.6, 0.4, 0.2, 1}; }
    /// A grey of `white` in [0, 1].
    static constexpr UIColor fromWhite(double white, double alpha) { return {white, white, white, alpha}; }

    /// The same colour with another alpha.
    constexpr UIColor withAlpha(double newAlpha) const { return {red, green, blue, newAlpha}; }
    friend constexpr bool operator==(const UIColor&, const UIColor&) = default;
};

} // namespace lamina
