#pragma once

#include "platform/base/CGAffineTransform.h"
#include "platform/view/CALayer.h"
#include "platform/view/UIViewAnimation.h"

namespace lamina {

/// Lets what is seen of layers take its time to get to what was set: their presentation moves on with every frame, and
/// goes when all has arrived. Main thread.
class LayerMotion {
public:
    /// From `seen` to the layer's opacity; at once where the motion takes no time.
    static void moveOpacity(CALayer& layer, double seen, const UIViewMotion& motion);
    /// From `seen` to the layer's transform, each of its numbers by itself.
    static void moveTransform(CALayer& layer, const CGAffineTransform& seen, const UIViewMotion& motion);
};

} // namespace lamina
