#pragma once

#include "gpu/core/AspectRatioFilter.h"
#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageFilter.h"
#include "platform/gl/GLHeaders.h"

#include <string>
#include <vector>

namespace lamina {

/// Large square pixels of one colour each: that of the middle of what they cover.
///
///   out(c) = in(c - mod(c, d) + d / 2),   d = (w, w / aspectRatio)
///
/// with w the `fractionalWidthOfAPixel`. On all four channels, between pixels bilinear. The cells are counted from the
/// top left; those at the right and bottom may be cut.
class GPUImagePixellateFilter : public AspectRatioFilter<GPUImageFilter> {
public:
    GPUImagePixellateFilter();
    static FilterDescription describe();

    /// The side of a large pixel in widths of the picture: 0.05 at first, 20 in a row. 0 and less leave all as it is.
    float fractionalWidthOfAPixel() const { return m_fractionalWidthOfAPixel; }
    void setFractionalWidthOfAPixel(float share);

protected:
    /// For filters that draw something in each cell: `statements` as of `placedColorShader`, with the middle of the
    /// cell at `place` and its colour as `color`; `vec2 way` leads there from the pixel, in widths.
    GPUImagePixellateFilter(const std::string& declarations, const std::string& statements,
                            float fractionalWidthOfAPixel);

    static std::vector<FilterProperty> pixellateProperties(float fractionalWidthOfAPixel);

private:
    GLint m_fractionalWidthOfAPixelUniform;
    float m_fractionalWidthOfAPixel = 0;
};

} // namespace lamina
