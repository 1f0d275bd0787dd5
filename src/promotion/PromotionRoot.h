#pragma once

#include <string>

namespace lamina {

/// URL of the folder on a server that holds the promotion feeds, with a "/" at its end; empty: there is no server, and
/// nothing is asked of anybody. That is so unless the build names one (LAMINA_PROMOTION_ROOT of CMake), or the
/// environment variable of the same name, which goes before, for trials. One that is no http or https URL, or lacks
/// the "/", is logged and counts as none. From any thread.
std::string promotionRoot();

} // namespace lamina
