#pragma once

namespace lamina {

/// What the mouse's pointer says of the place it stands on.
enum class UIPointerShape {
    Arrow,
    OpenHand,         ///< a drag from here moves something
    ClosedHand,       ///< something is being dragged
    ResizeAcross,     ///< two heads, left and right
    ResizeDiagonally, ///< two heads, bottom left and top right
    Cross,
};

} // namespace lamina
