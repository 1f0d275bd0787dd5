#pragma once

#include "cli/movie/MovieJob.h"

#include <functional>

namespace lamina {

/// The movie through its filters, or into another size: frames are drawn upright by the graphics processor. `tell` as
/// in `MovieProgress::waitFor`.
MovieEnd filterMovie(const MovieJob& job, const std::function<void(double)>& tell);

} // namespace lamina
