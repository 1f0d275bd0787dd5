#pragma once

#include <functional>
#include <string>

namespace lamina {

/// Hears the cause of an exception that has left a block of some queue.
using BlockFailureHandler = std::function<void(const std::string& cause)>;

/// Installs who hears of each such exception after it was logged, on the thread that ran the block, several at once.
/// Empty: nobody. A call may still be under way when this returns. From any thread.
void setBlockFailureHandler(BlockFailureHandler handler);

} // namespace lamina
