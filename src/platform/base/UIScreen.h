#pragma once

#include "platform/base/CGGeometry.h"

namespace lamina {

/// The screen that pictures are made for: a plain value without a window behind it. Its scale decides how sharp
/// stickers, masks and edges are drawn, so it is kept at 3 or more by whoever knows a coarser display.
struct UIScreen {
    CGSize bounds{375, 667}; ///< points, upright; the default is a common phone
    double scale = 3;        ///< pixels per point, at least 1

    /// The screen in force; the default one until it is set. From any thread.
    static UIScreen main();
    /// Takes effect for what is loaded afterwards. A scale below 1 (or not finite) counts as 1, and sides that are not
    /// positive and finite as the default's. Main thread.
    static void setMain(const UIScreen& screen);

    friend bool operator==(const UIScreen&, const UIScreen&) = default;
};

} // namespace lamina
