#pragma once

namespace lamina {

/// Asks the allocator to give back to the system what it holds for later. After work on several threads with many
/// pieces of many sizes, such as pictures that come and go, that can be several times what is in use. Takes about a
/// millisecond; from any thread.
void returnFreeMemory();

} // namespace lamina
