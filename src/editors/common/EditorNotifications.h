#pragma once

namespace lamina {

/// Posted by an editor whose work is given up, with the editor as sender: the home screen dismisses all that it
/// presents.
inline constexpr const char* kDismissEditorsNotification = "PinchZoomViewController";

} // namespace lamina
