#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageTwoInputFilter.h"
#include "platform/base/CGGeometry.h"
#include "platform/gl/GLHeaders.h"

namespace lamina {

/// Gives each cell of a diagram by Voronoi (slot 1, as `GPUImageJFAVoronoiFilter` codes it) the colour that the picture
/// (slot 0) has at the cell's point: a mosaic of cells. Where the diagram knows no point nothing is drawn: the result
/// is clear there.
///
/// The picture is looked at in the middle of the point's pixel; where the diagram has another size, at the place that
/// is the same share of width and height. Straight, as stored. Needs fragment shaders of high precision.
class GPUImageVoronoiConsumerFilter : public GPUImageTwoInputFilter {
public:
    GPUImageVoronoiConsumerFilter();
    static FilterDescription describe();

    /// Columns and rows of the diagram; the zero size, as at first, is that of what fills slot 1. From any thread;
    /// waits for the video processing queue.
    CGSize sizeInPixels() const;
    void setSizeInPixels(CGSize size);

    void setInputSize(CGSize size, int textureIndex) override;
    void setInputRotation(GPUImageRotationMode rotation, int textureIndex) override;
    void setUniformsForProgramAtIndex(int programIndex) override;

private:
    void tellRotation();

    GLint m_sizeUniform;
    GLint m_uprightUniform;
    // These belong to the queue.
    CGSize m_sizeInPixels;
    CGSize m_sizeOfDiagram;
};

} // namespace lamina
