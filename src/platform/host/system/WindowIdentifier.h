#pragma once

#include <string>

class QWindow;

namespace lamina {

/// How a portal is told over which window its dialog stands: "x11:" and the window's number in hexadecimal digits.
/// Empty, which portals take for "no window", where the window has no number that others know: on Wayland, for
/// instance, where Qt has no operation to export one.
std::string portalWindowIdentifier(const QWindow* window);

} // namespace lamina
