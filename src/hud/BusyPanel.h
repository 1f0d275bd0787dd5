#pragma once

#include <functional>

namespace lamina {

/// Shows the progress panel for work that the user waits for: with a veil that lets nothing through, and a button
/// "Cancel", which runs `cancel` on the main thread, once. Whoever shows it dismisses it (see SVProgressHUD). From any
/// thread.
void showBusyPanel(std::function<void()> cancel);

} // namespace lamina
