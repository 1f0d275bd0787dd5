#include <cstdlib>

// Test programs stand in no folder from which the parts that are loaded, or started, with their first use would be
// found. Those that a test starts are told by the same variable.
namespace {

[[maybe_unused]] const int told = ::setenv("LAMINA_MODULES", LAMINA_MODULES, 0);

} // namespace
