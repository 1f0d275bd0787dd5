#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageFilterGroup.h"
#include "gpu/sources/GPUImagePicture.h"

#include <memory>

namespace lamina {

/// A soft look of low contrast: lilac shadows, cream lights, and a gleam around what is bright.
///
///   pale = table1(in),   out = table2(0.86 pale + 0.14 blur(pale))   where pale is opaque
///
/// The tables are "lookup_soft_elegance_1.png" and "lookup_soft_elegance_2.png", the blur a Gaussian of 10 pixels, laid
/// over by its own alpha. Alpha stays.
class GPUImageSoftEleganceFilter : public GPUImageFilterGroup {
public:
    GPUImageSoftEleganceFilter();
    static FilterDescription describe();

private:
    std::shared_ptr<GPUImagePicture> m_lookupImageSource1;
    std::shared_ptr<GPUImagePicture> m_lookupImageSource2;
};

} // namespace lamina
