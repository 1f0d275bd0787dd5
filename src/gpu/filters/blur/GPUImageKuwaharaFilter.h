#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/filters/blur/PixelStepFilter.h"

namespace lamina {

/// Paints with a broad brush: areas even out, edges stay (Kuwahara, Hachimura, Eiho and Kinoshita, Processing of
/// RI-Angiocardiographic Images, 1976).
///
///   out(p) = the mean of that one of four squares with p in a corner which varies least,
///
/// each of (radius + 1)^2 pixels: to the left and up, right and up, right and down, left and down, of equals the first.
/// It varies by the sum of the variances of its four channels; mean and variance are of straight values as stored.
/// Beyond the border the outermost pixels go on.
///
/// A pixel costs 4 (radius + 1)^2 reads: large radii take their time.
class GPUImageKuwaharaFilter : public PixelStepFilter {
public:
    static FilterDescription describe();

    GPUImageKuwaharaFilter();

    /// In pixels, 3 at first, from 0, which changes nothing, to 16: less counts as 0, more as 16. Each radius has a
    /// shader of its own, made when it is first set. From any thread; waits for the queue.
    int radius() const;
    void setRadius(int pixels);

private:
    int m_radius;
};

} // namespace lamina
