#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageFilter.h"
#include "gpu/core/GPUVectors.h"
#include "gpu/kernels/KernelFrame.h"

namespace lamina {

/// Levels, as of a histogram's three sliders with two for the output, for each channel.
///
///   t = (in - min) / (max - min), cut to 0 to 1
///   out = minOut + (maxOut - minOut) t^(1 / gamma),   alpha stays
///
/// On straight values as stored, which `min`, `max` and both outputs are too: 0 to 1. A gamma above 1 lightens the
/// middle. An output may be turned round, minOut above maxOut. Where max is not above min, what is above min gets
/// maxOut and all else minOut, as for ever smaller distances; a gamma of 0 or below, likewise, gives minOut up to max.
/// Default for each channel: 0, 1, 1, 0, 1, the picture as it is.
class GPUImageLevelsFilter : public GPUImageFilter {
public:
    GPUImageLevelsFilter();
    static FilterDescription describe();

    /// All three channels alike.
    void setMin(float min, float gamma, float max, float minOut, float maxOut);
    /// Red alone.
    void setRedMin(float min, float gamma, float max, float minOut, float maxOut);
    /// Green alone.
    void setGreenMin(float min, float gamma, float max, float minOut, float maxOut);
    /// Blue alone.
    void setBlueMin(float min, float gamma, float max, float minOut, float maxOut);

protected:
    FilterKernel kernel() const override;

private:
    /// A number for each of red, green and blue.
    struct Levels {
        GPUVector3 min;
        GPUVector3 gamma;
        GPUVector3 max;
        GPUVector3 minOut;
        GPUVector3 maxOut;
    };
    using Channel = float GPUVector3::*;
    void setChannel(Channel channel, float min, float gamma, float max, float minOut, float maxOut);
    void sendLevels();

    Levels m_levels;
};

} // namespace lamina
