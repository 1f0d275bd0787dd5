#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageFilter.h"
#include "gpu/core/GPUVectors.h"
#include "gpu/filters/analysis/FrameReading.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/CMTime.h"
#include "platform/gl/GLHeaders.h"

#include <functional>

namespace lamina {

/// The average of all pixels, as numbers and as a picture of one pixel.
///
///   average = sum of in / (width height)      of each channel by itself, straight and as stored
///
/// Large pictures are halved in both directions on the GPU, twice at the most and as long as both sides have 64 pixels:
/// a pixel of such a pass is 0.25 of each of the four below it, and what lies beyond an odd side is nothing. The last
/// frame is read and summed on the processor, and what was nothing is not counted, so that every pixel weighs the same.
/// A pass rounds by at most half a step of 8 bits; the sum does not round.
///
/// Neither rotation nor a forced size changes the average; both are ignored.
class GPUImageAverageColor : public GPUImageFilter {
public:
    GPUImageAverageColor();
    static FilterDescription describe();

    /// Gets the channels from 0 to 1 and the time of each frame, on the video processing queue, before the targets have
    /// it. It must not wait for the main queue.
    using ColorAverageBlock = std::function<void(double red, double green, double blue, double alpha, CMTime time)>;
    /// From any thread; in force from the next frame.
    void setColorAverageProcessingFinishedBlock(ColorAverageBlock block);

    CGSize sizeOfFBO() const override { return {1, 1}; }
    CGSize outputFrameSize() const override { return {1, 1}; }
    void renderToTextureWithVertices(const QuadCoordinates& vertices,
                                     const QuadCoordinates& textureCoordinates) override;
    void newFrameReadyAtTime(const CMTime& frameTime, int textureIndex) override;
    void setUniformsForProgramAtIndex(int programIndex) override;

protected:
    int passCount() const override { return halvings(); }
    CGSize sizeOfPass(int index) const override;

    struct Average {
        double red = 0;
        double green = 0;
        double blue = 0;
        double alpha = 0;
    };
    /// Tells the average of the frame; on the queue.
    virtual void tell(const Average& average, const CMTime& frameTime) const;
    /// The one pixel that targets get.
    virtual GPUVector4 outputColor(const Average& average) const;

private:
    int halvings() const;
    IntSize sizeAfter(int halvings) const;
    Average averageOfInput();

    GLint m_extentUniform;
    GLint m_halfTexelUniform;
    FrameReading m_reading;
    IntSize m_inputPixels;
    Average m_average;
    ColorAverageBlock m_finishedBlock;
};

} // namespace lamina
