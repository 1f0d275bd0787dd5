#pragma once

#include "platform/base/CGGeometry.h"

namespace lamina {

/// How frames fill a view. The values are the platform's.
enum class GPUImageFillMode {
    Stretch = 0,                    ///< over all of it
    PreserveAspectRatio = 1,        ///< all of the frame is seen, the background beside it
    PreserveAspectRatioAndFill = 2, ///< all of the view is covered, the frame is cut
};

/// The sides of a frame drawn in the middle of a view, as shares of the view's: above 1 it is cut. A frame or a view
/// without area is stretched.
CGSize fillScaling(GPUImageFillMode mode, CGSize frame, CGSize view);

} // namespace lamina
