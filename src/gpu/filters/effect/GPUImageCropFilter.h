#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageFilter.h"
#include "platform/base/CGGeometry.h"

namespace lamina {

/// Gives a rectangular part of the picture, in its own pixels.
///
/// The part begins at the pixel in which the region's corner lies and has the whole pixels that fit its width and
/// height, at least one each: every pixel comes out as it went in. Where a size is forced, the part is stretched
/// to that. What lies turned is cut as it is seen, upright.
class GPUImageCropFilter : public GPUImageFilter {
public:
    GPUImageCropFilter() = default;
    static FilterDescription describe();

    /// Within the unit square, (0, 0) being the picture's top left corner: all of it at first. From any thread; waits
    /// for the video processing queue.
    CGRect cropRegion() const;
    /// A region that is empty, reaches beyond 0 to 1 or isn't finite is refused, and the former one stays. In force
    /// from the next frame.
    void setCropRegion(const CGRect& region);
    /// What stands against a region.
    static Outcome checkCropRegion(const CGRect& region);

    void setInputSize(CGSize size, int textureIndex) override;
    void renderToTextureWithVertices(const QuadCoordinates& vertices,
                                     const QuadCoordinates& textureCoordinates) override;

private:
    /// The region in whole pixels of a picture of this size, as a share of it.
    CGRect regionInPixelsOf(CGSize size) const;

    // These belong to the queue.
    CGRect m_cropRegion{0, 0, 1, 1};
    CGRect m_drawnRegion{0, 0, 1, 1};
};

} // namespace lamina
