#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/filters/color/ColorValueFilter.h"

namespace lamina {

/// White where the luminance reaches the threshold, black elsewhere.
///
///   out.rgb = 1 where Y >= threshold, else 0,   Y = 0.2125 red + 0.7154 green + 0.0721 blue,   out.a = in.a
///
/// Luma weights: Rec. ITU-R BT.709, on straight values as stored. Default 0.5.
class GPUImageLuminanceThresholdFilter : public ColorValueFilter {
public:
    GPUImageLuminanceThresholdFilter();
    static FilterDescription describe();

    /// Luminance from which a pixel is white.
    float threshold() const { return value(); }
    void setThreshold(float threshold) { setValue(threshold); }
};

} // namespace lamina
