#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageTwoInputCrossTextureSamplingFilter.h"
#include "platform/gl/GLHeaders.h"

namespace lamina {

/// Lays the differences between the overlay's pixels (slot 1) into the base (slot 0), so that the overlay takes on the
/// base's colours at its edges: seamless cloning.
///
/// What is wanted has the gradients of the overlay where the overlay is, and the base's colours elsewhere: the Poisson
/// equation with the base around as its boundary. `numIterations` steps of damped Jacobi relaxation approach it, from
/// the base:
///
///   f' = f + mix o.a ((sum of f(n) + sum of o.a(n) (o - o(n))) / 4 - f)   over the four neighbours n
///   out = (f, base.a)
///
/// on red, green and blue. A clear neighbour's colour counts for nothing. Colours are straight, as stored, cut to 0 to
/// 1 and rounded to 8 bits after each step; beyond the border the outermost pixels go on. A step carries colour one
/// pixel far: ten bring out the overlay's fine detail in the base's colours, large shapes take some hundreds.
///
/// (Pérez, Gangnet and Blake, Poisson Image Editing, 2003. Jacobi's method: Golub and Van Loan, Matrix Computations.)
class GPUImagePoissonBlendFilter : public GPUImageTwoInputCrossTextureSamplingFilter {
public:
    GPUImagePoissonBlendFilter();
    static FilterDescription describe();

    /// How far each step goes, from 0, which leaves the base, to 1; default 0.5.
    float mix() const { return m_mix; }
    void setMix(float mix);
    /// Steps, each of which draws the picture once: 10 at first, less than 1 counts as 1.
    int numIterations() const;
    void setNumIterations(int iterations);

protected:
    int passCount() const override { return m_numIterations; }
    /// The overlay.
    bool everyPassReadsInputs() const override { return true; }

private:
    GLint m_mixUniform;
    float m_mix = 0;
    int m_numIterations; ///< belongs to the queue
};

} // namespace lamina
