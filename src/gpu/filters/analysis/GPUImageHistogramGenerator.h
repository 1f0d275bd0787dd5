#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageFilter.h"
#include "gpu/core/GPUVectors.h"
#include "platform/base/CGGeometry.h"
#include "platform/gl/GLHeaders.h"

namespace lamina {

/// Draws a histogram as bars, as `GPUImageHistogramFilter` gives it: column v of the input's middle row is the height
/// of bar v, of each channel by itself.
///
///   lit(channel) = 1 where bin(channel) >= height, else 0       height: from 0 at the bottom to 1 at the top
///   out = (lit, 1) where a channel is lit, else the background
///
/// where bars of several channels overlap their colours add. The picture is as wide as the input and `kHeight` pixels
/// high, unless a size is forced.
class GPUImageHistogramGenerator : public GPUImageFilter {
public:
    GPUImageHistogramGenerator();
    static FilterDescription describe();

    static constexpr int kHeight = 256;

    /// Behind the bars; components from 0 to 1, opaque black at first.
    GPUVector4 backgroundColor() const { return m_background; }
    void setBackgroundColor(const GPUVector4& color);

    void setInputSize(CGSize size, int textureIndex) override;

private:
    GLint m_backgroundColorUniform;
    GPUVector4 m_background;
};

} // namespace lamina
