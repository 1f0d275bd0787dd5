#pragma once

#include "WindowDriver.h"

namespace lamina::test {

/// Draws the live screen: a camera with filters and compared, one that has gone, a movie.
void shootLive(const LaunchOptions& options, const QString& prefix);

} // namespace lamina::test
