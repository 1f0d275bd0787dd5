#pragma once

#include "platform/base/CGGeometry.h"

namespace lamina {

/// How the picture of an input lies relative to the filter that takes it. Rows run downwards.
enum GPUImageRotationMode {
    kGPUImageNoRotation = 0,
    kGPUImageRotateLeft = 1,
    kGPUImageRotateRight = 2,
    kGPUImageFlipVertical = 3,   ///< top to bottom
    kGPUImageFlipHorizontal = 4, ///< left to right
    kGPUImageRotateRightFlipVertical = 5,
    kGPUImageRotateRightFlipHorizontal = 6,
    kGPUImageRotate180 = 7,
};

/// Whether the rotation swaps width and height.
constexpr bool swapsWidthAndHeight(GPUImageRotationMode rotation)
{
    return rotation == kGPUImageRotateLeft || rotation == kGPUImageRotateRight ||
           rotation == kGPUImageRotateRightFlipVertical || rotation == kGPUImageRotateRightFlipHorizontal;
}

/// `size` as a filter sees it through the rotation.
constexpr CGSize sizeRotatedBy(GPUImageRotationMode rotation, CGSize size)
{
    return swapsWidthAndHeight(rotation) ? CGSize{size.height, size.width} : size;
}

} // namespace lamina
