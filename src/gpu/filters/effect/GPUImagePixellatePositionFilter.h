#pragma once

#include "gpu/filters/effect/CircleFilter.h"

namespace lamina {

/// Large pixels within a circle, to hide a face for instance: there as in `GPUImagePixellateFilter`, elsewhere the
/// picture. `radius` is 0.25 at first.
class GPUImagePixellatePositionFilter : public CircleFilter {
public:
    GPUImagePixellatePositionFilter();
    static FilterDescription describe();

    /// The side of a large pixel in widths of the picture: 0.05 at first. 0 and less leave all as it is.
    float fractionalWidthOfAPixel() const { return m_fractionalWidthOfAPixel; }
    void setFractionalWidthOfAPixel(float share);

private:
    GLint m_fractionalWidthOfAPixelUniform;
    float m_fractionalWidthOfAPixel = 0;
};

} // namespace lamina
