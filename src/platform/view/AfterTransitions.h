#pragma once

#include <functional>

namespace lamina {

/// Runs `work` on a later turn of the main queue, once no transition between screens is under way or waits and what was
/// to follow on them has run. Main thread.
void afterTransitions(std::function<void()> work);

} // namespace lamina
