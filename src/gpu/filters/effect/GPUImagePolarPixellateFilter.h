#pragma once

#include "gpu/filters/effect/CenteredFilter.h"

#include "platform/base/CGGeometry.h"

namespace lamina {

/// Large pixels in rings around a point, as in the spokes of a wheel.
///
///   out(c) = in(center + r' (cos phi', sin phi') / 2),
///   r' = r - mod(r, pixelSize.width) + 0.03,   phi' = phi - mod(phi, pixelSize.height)
///
/// where r and phi are the length and the angle (from the right towards the bottom, -pi to pi) of 2 (c - center): r is
/// 1 at the middle of each border when the centre is the picture's. On all four channels, between pixels bilinear.
/// A size of 0 or less leaves the length or the angle as it is, but for the 0.03.
class GPUImagePolarPixellateFilter : public CenteredFilter {
public:
    GPUImagePolarPixellateFilter();
    static FilterDescription describe();

    /// A ring's thickness in halves of the picture's sides, and the angle of a pixel in it in radians; 0.05 each at
    /// first.
    CGSize pixelSize() const { return m_pixelSize; }
    void setPixelSize(CGSize size);

private:
    GLint m_pixelSizeUniform;
    CGSize m_pixelSize;
};

} // namespace lamina
