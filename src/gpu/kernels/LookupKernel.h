#pragma once

#include "gpu/kernels/KernelFrame.h"

namespace lamina::kernels {

/// Grades the first input by the colour cube in the second: 512 x 512 pixels, eight rows of eight tiles of 64 x 64.
/// Blue picks the tile, red runs to the right in it and green down; between entries of the cube colours are
/// interpolated trilinearly. `intensity`: the share of the graded colours, 0 to 1; empty for any other. Alpha stays.
FilterKernel lookupKernel(float intensity);

} // namespace lamina::kernels
