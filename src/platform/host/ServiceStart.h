#pragma once

#include "platform/host/Application.h"

#include "platform/host/ApplicationLife.h"

#include <functional>
#include <memory>

namespace lamina {

class ApplicationService;
class SessionName;

/// Makes the window; empty where there is no display to open one on.
using WindowMaker = std::function<std::unique_ptr<Application>(const LaunchOptions& options)>;

/// Runs the application as the session bus starts it, with the event loop of the application object that there is: it
/// answers calls and takes messages, and opens its window when that is asked for. Without a window it leaves once
/// nobody has called it for ten seconds, or for an hour while the desktop shows a number or notifications of it, which
/// would go with it. All that answers is on the bus before the name is asked for, so that the call
/// for which the process was started is heard. Gives the code with which to leave.
int runAsService(SessionName& name, ApplicationService& service, const std::shared_ptr<ApplicationLife>& life,
                 const WindowMaker& makeWindow);

/// No more calls come to this process, and those that have come are answered.
void leaveBus(SessionName& name, ApplicationService& service);

} // namespace lamina
