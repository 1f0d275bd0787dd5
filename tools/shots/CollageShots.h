#pragma once

#include "WindowDriver.h"

namespace lamina::test {

/// Draws the collage of two photos, and that of three with all that its tools open.
void shootCollages(const LaunchOptions& options, const QString& prefix);

} // namespace lamina::test
