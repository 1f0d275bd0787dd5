#pragma once

#include "gpu/filters/analysis/GPUImageAverageColor.h"

namespace lamina {

/// The average luminance of all pixels, as a number and as a grey picture of one pixel, opaque.
///
///   luminosity = average of 0.2125 red + 0.7154 green + 0.0721 blue      (Rec. ITU-R BT.709, on straight stored
///   values)
///
/// The sum being linear, it is that of the average colour.
class GPUImageLuminosity : public GPUImageAverageColor {
public:
    static FilterDescription describe();

    /// Gets the luminosity from 0 to 1 and the time of each frame, on the video processing queue, before the targets
    /// have it. It must not wait for the main queue.
    using LuminosityBlock = std::function<void(double luminosity, CMTime time)>;
    /// From any thread; in force from the next frame.
    void setLuminosityProcessingFinishedBlock(LuminosityBlock block);

private:
    void tell(const Average& average, const CMTime& frameTime) const override;
    GPUVector4 outputColor(const Average& average) const override;

    static double luminanceOf(const Average& color);

    LuminosityBlock m_luminosityBlock;
};

} // namespace lamina
