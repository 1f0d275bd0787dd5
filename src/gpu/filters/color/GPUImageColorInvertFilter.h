#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageFilter.h"
#include "gpu/kernels/KernelFrame.h"

namespace lamina {

/// The negative of a picture.
///
///   out.rgb = 1 - in.rgb,   out.a = in.a
///
/// On straight values as stored.
class GPUImageColorInvertFilter : public GPUImageFilter {
public:
    GPUImageColorInvertFilter();
    static FilterDescription describe();

protected:
    FilterKernel kernel() const override;
};

} // namespace lamina
