#pragma once

namespace lamina {

/// Posted when the system runs short of memory, without a sender, from the main thread: whoever keeps memory only for
/// speed gives it back.
inline constexpr const char* UIApplicationDidReceiveMemoryWarningNotification =
    "UIApplicationDidReceiveMemoryWarningNotification";

} // namespace lamina
