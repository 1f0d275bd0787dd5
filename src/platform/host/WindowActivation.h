#pragma once

#include <string>

class QWindow;

namespace lamina {

/// The token with which the program that starts this one lets its window come to the front; empty: none was given. It
/// is taken out of the environment by the window system's plugin, so it is read before there is an application.
std::string tokenOfEnvironment();

/// Asks the window system for the focus, with a token of another program where there is one: without, most put a mark
/// on the window's entry instead. On X11 a token is not used: whether the window comes forward there, its manager
/// decides. Main thread.
void activateWindow(QWindow& window, const std::string& token);

} // namespace lamina
