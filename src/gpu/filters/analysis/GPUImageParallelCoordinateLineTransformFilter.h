#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageFilter.h"
#include "gpu/filters/analysis/FrameReading.h"
#include "platform/base/CGGeometry.h"
#include "platform/gl/GLHeaders.h"

#include <memory>
#include <vector>

namespace lamina {

/// Turns lines into points: what lies on a line of the picture votes for one place of the result.
///
/// Places of the picture are x and y from -1 to 1, rightwards and downwards, those of the result u and v. Each lit
/// pixel (red at least a half) draws the line through (-1, x), (0, y) and (1, -x) of u and v. Those of all pixels on y
/// = m x + b meet
///
///   at u = m / (1 - m), v = b / (1 - m) where m <= 0,      at u = m / (1 + m), v = b / (1 + m) where m >= 0,
///
/// and those of an upright x = c at u = -1, v = c. (Dubska, Herout and Havel, PClines: Line Detection Using Parallel
/// Coordinates, 2011: the straight space on the left, the twisted one on the right.)
///
/// The result has the picture's sides, at least 64 and at most 512, and a column more where its width would be even, so
/// that all three axes lie in the middle of a column: the outermost ones are -1 and 1. Its rows share -1 to 1 evenly,
/// so that those of the picture lie in the middle of one each. Each vote counts 0.004, a step of 8 bits, in all three
/// channels, which end at 255 votes. In the packed form, which needs a device whose fragment shaders read what they
/// draw over, red counts votes, green is carried over from red and blue from green.
///
/// Every k-th lit pixel votes, in the order of rows, where k is the longer side in units of 255 pixels: a line of the
/// picture's length gets as many votes in a large picture as in a small one. Beyond 65,536 voters k grows, so that
/// memory is bounded.
class GPUImageParallelCoordinateLineTransformFilter : public GPUImageFilter {
public:
    explicit GPUImageParallelCoordinateLineTransformFilter(bool packedColorspace = false);
    static FilterDescription describe();

    CGSize sizeOfFBO() const override;
    CGSize outputFrameSize() const override { return sizeOfFBO(); }
    bool canRender() const override { return GPUImageFilter::canRender() && m_linesProgram != nullptr; }
    void renderToTextureWithVertices(const QuadCoordinates& vertices,
                                     const QuadCoordinates& textureCoordinates) override;

protected:
    CGSize sizeOfPass(int) const override { return m_inputTextureSize; }

private:
    Pass linesPass();
    void generateLineCoordinates(GPUImageFramebuffer& edges);
    void addLines(double x, double y, double right);

    bool m_isPacked;
    std::shared_ptr<GLProgram> m_linesProgram;
    GLuint m_linesPositionAttribute = 0;
    GLuint m_linesTextureCoordinateAttribute = 0;
    GLint m_linesInputTextureUniform = -1;
    FrameReading m_reading;
    std::vector<GLfloat> m_lineCoordinates;
};

} // namespace lamina
