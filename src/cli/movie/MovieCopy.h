#pragma once

#include "cli/movie/MovieJob.h"

#include <functional>

namespace lamina {

/// The movie without filters, in its own size: frames go from the decoder to the encoder as they are, the turn stays a
/// tag, and packets of sound are passed on where the container takes them. `tell` as in `MovieProgress::waitFor`.
MovieEnd copyMovie(const MovieJob& job, const std::function<void(double)>& tell);

} // namespace lamina
