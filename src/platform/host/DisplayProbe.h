#pragma once

namespace lamina {

/// Whether there is a display to open a window on, as far as Qt would look for one: the sockets that the environment
/// names are tried, since they may be those of a session that has ended. Before the application object is made, which
/// ends the process where there is none.
bool displayIsThere();

} // namespace lamina
