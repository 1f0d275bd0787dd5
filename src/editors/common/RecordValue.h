#pragma once

#include <nlohmann/json_fwd.hpp>

namespace lamina {

/// What a kept record is written as, and read from: values with names. Numbers come back to the bit, whatever the
/// locale: they are written in the shortest digits that tell them from all others. RecordReading.h has the operations.
using RecordValue = nlohmann::ordered_json;

} // namespace lamina
