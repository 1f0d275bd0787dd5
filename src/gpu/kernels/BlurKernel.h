#pragma once

#include "gpu/kernels/KernelFrame.h"

#include <vector>

namespace lamina::kernels {

/// A symmetric line of weights, laid down the columns and then across the rows; what lies between is rounded to 8 bits.
/// The first weight is that of the pixel itself, the one at i that of both neighbours i pixels away; together they are
/// 1, neighbours counted twice. Beyond the border the outermost pixels go on. Empty where the weights are no such line.
FilterKernel lineBlurKernel(const std::vector<float>& weights);

} // namespace lamina::kernels
