#pragma once

#include <string>

namespace lamina {

/// Hands a URL to the desktop: "http", "https" and "mailto" links and "file" URLs of this device to the program the
/// user has chosen for them, "app-settings:" to the settings program of the desktop, opened where it tells of this
/// application if it can. Programs are started on their own and outlive this one.
///
/// False when there is no program for it, and for every other kind of URL: what comes from outside must not start just
/// anything. Main thread.
bool openSystemURL(const std::string& url);

/// Makes it what `UIApplication::openURL` opens with.
void installSystemURLOpener();

} // namespace lamina
