#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageTwoInputFilter.h"
#include "gpu/kernels/KernelFrame.h"
#include "platform/gl/GLHeaders.h"

namespace lamina {

/// Grades a picture (slot 0) by a colour look-up table (slot 1).
///
///   b = 63 in.blue,   look = mix(table(floor b), table(ceil b), fract b)
///   out.rgb = (1 - intensity) in.rgb + intensity look.rgb,   out.a = in.a
///
/// The table is a picture of 512 x 512: eight rows of eight tiles of 64 x 64. Blue picks the tile, red runs to the
/// right in it and green down; between entries the texture is interpolated. A table of another size is stretched over
/// that grid. `in` is straight, as stored.
///
/// `intensity` runs from 0, the picture itself, to 1, the look. It is 1 at first, but a new filter has not told its
/// program so and gives the picture back: the table counts from the first `setIntensity`. That one writes to the
/// uniform at location 0 without asking where `intensity` is. It stands first in the shader, and drivers number
/// uniforms so; to be sure of it set it by name, `setFloat(value, "intensity")`, as the looks made of this filter do.
class GPUImageLookupFilter : public GPUImageTwoInputFilter {
public:
    GPUImageLookupFilter();
    static FilterDescription describe();

    /// Share of the look.
    float intensity() const { return m_intensity; }
    void setIntensity(float intensity);

protected:
    FilterKernel kernel() const override;

private:
    static constexpr GLint kIntensityUniform = 0;

    float m_intensity = 1;
};

} // namespace lamina
