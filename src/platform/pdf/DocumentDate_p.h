#pragma once

#include <string>

namespace lamina {

/// The moment that documents are dated, as they write it ("D:20240101000000Z"): that of the environment's
/// SOURCE_DATE_EPOCH in seconds since 1970, else one that is always the same.
std::string documentDate();

} // namespace lamina
