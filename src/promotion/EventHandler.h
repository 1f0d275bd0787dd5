#pragma once

#include "promotion/DataError.h"

#include <optional>

namespace lamina {

/// What a `FetchProductViewModel` tells of itself. A plain value.
struct EventHandler {
    /// That it failed, begins, is over, and has a feed.
    enum Kind { error, loading, stoploading, loaded };
    Kind kind = error;
    std::optional<DataError> dataError = {}; ///< of `error`, where it is known
};

} // namespace lamina
