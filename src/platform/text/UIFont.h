#pragma once

#include <string>

namespace lamina {

/// How heavy letters are, counted as type foundries do.
enum class UIFontWeight { Light = 300, Regular = 400, Medium = 500, Semibold = 600, Bold = 700 };

/// What a text is set in. A plain value that names a font and holds none; whoever draws finds the nearest one there is.
struct UIFont {
    std::string family; ///< empty: the system's own
    double size = 17;   ///< points, before the user's text scale
    UIFontWeight weight = UIFontWeight::Regular;

    /// The system's own font; `size` in points.
    static UIFont systemFontOfSize(double size, UIFontWeight weight = UIFontWeight::Regular)
    {
        return {{}, size, weight};
    }
    friend bool operator==(const UIFont&, const UIFont&) = default;
};

} // namespace lamina
