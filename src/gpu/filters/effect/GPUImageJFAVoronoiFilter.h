#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageFilter.h"
#include "platform/base/CGGeometry.h"
#include "platform/gl/GLHeaders.h"

namespace lamina {

/// Tells for each pixel which of the picture's marked points is nearest: the diagram by Voronoi, as a code that
/// `GPUImageVoronoiConsumerFilter` reads (see VoronoiCode.h).
///
/// A pixel is marked where the largest of red, green and blue times alpha is at least a half: what detectors of corners
/// leave white. Found by jump flooding: after a pass that writes each marked pixel's own place, every pass looks at the
/// nine pixels that lie one step away in each direction and keeps the nearest place that they hold; the step is halved
/// from pass to pass, from half the longer side (as a power of two) down to 1, which is done twice. A pixel may so get
/// a point that is hardly farther away than the nearest, rarely. Distances are Euclidean, between the middles of
/// pixels.
///
/// Costs a pass of nine reads for each doubling of the longer side. Needs fragment shaders of high precision.
///
/// (Rong and Tan, Jump Flooding in GPU with Applications to Voronoi Diagram and Distance Transform, 2006.)
class GPUImageJFAVoronoiFilter : public GPUImageFilter {
public:
    GPUImageJFAVoronoiFilter();
    static FilterDescription describe();

    /// Columns and rows of the diagram; the zero size, as at first, is the picture's. From any thread; waits for the
    /// video processing queue.
    CGSize sizeInPixels() const;
    void setSizeInPixels(CGSize size);

    CGSize sizeOfFBO() const override;
    CGSize outputFrameSize() const override { return sizeOfFBO(); }
    void setUniformsForProgramAtIndex(int programIndex) override;

protected:
    int passCount() const override;

private:
    /// How far apart the pixels are that a pass looks at; 0 in the first, which marks.
    int stepOfPass(int index) const;

    GLint m_sizeUniform;
    GLint m_stepUniform;
    CGSize m_sizeInPixels; ///< belongs to the queue
};

} // namespace lamina
