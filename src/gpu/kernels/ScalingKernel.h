#pragma once

#include "gpu/kernels/KernelFrame.h"
#include "platform/base/CGGeometry.h"

#include <cstdint>

namespace lamina::kernels {

/// Pixels to be written: as KernelPixels.
struct KernelOutput {
    std::uint8_t* bytes = nullptr;
    IntSize size;
};

/// Draws a picture, stretched over `place` of the output's pixels, as a quad with a texture of linear filters that are
/// clamped to its edge: each pixel whose centre lies in `place` is read between the four texels around it, however much
/// smaller or larger the picture gets. Parts of `place` may lie outside; all other pixels get the four bytes of
/// `background` as they lie in memory. On all cores, the same bytes on every processor.
void drawScaled(const KernelPixels& picture, const CGRect& place, std::uint32_t background, const KernelOutput& output);

} // namespace lamina::kernels
