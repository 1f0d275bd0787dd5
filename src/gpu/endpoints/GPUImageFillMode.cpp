#include "gpu/endpoints/GPUImageFillMode.h"

#include "gpu/core/GPUImageFilter.h"

namespace lamina {

CGSize fillScaling(GPUImageFillMode mode, CGSize frame, CGSize view)
{
    const CGSize inset = sizeFittingInside(frame, view);
    if (inset.width > 0 && inset.height > 0) {
        if (mode == GPUImageFillMode::PreserveAspectRatio)
            return {inset.width / view.width, inset.height / view.height};
        if (mode == GPUImageFillMode::PreserveAspectRatioAndFill)
            return {view.height / inset.height, view.width / inset.width};
    }
    return {1, 1};
}

} // namespace lamina
