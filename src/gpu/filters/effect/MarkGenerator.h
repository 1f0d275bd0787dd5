#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageFilter.h"
#include "gpu/core/GPUVectors.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/CMTime.h"
#include "platform/gl/GLHeaders.h"

#include <array>
#include <string>
#include <vector>

namespace lamina {

/// The base of generators that draw marks of one colour over the picture that comes in; where there is none, over what
/// the background is, clear at first.
///
/// Marks are rectangles made of two triangles each: what widths devices draw lines in, and how large points, does not
/// matter. Setters may be called from any thread; they wait for the video processing queue.
class MarkGenerator : public GPUImageFilter {
public:
    void renderToTextureWithVertices(const QuadCoordinates& vertices,
                                     const QuadCoordinates& textureCoordinates) override;
    void setUniformsForProgramAtIndex(int programIndex) override;

protected:
    /// `isMarked`: an expression, true where a mark is drawn at `vec2 place`, (0, 0) to (1, 1) within its rectangle. It
    /// may use the uniform `float halfWidth`.
    explicit MarkGenerator(const std::string& isMarked);

    /// A rectangle's corners in pixels of the picture, in the order of a triangle strip.
    struct Mark {
        std::array<CGPoint, 4> corners;
    };
    /// The marks for a picture of this size. On the queue.
    virtual std::vector<Mark> marksForSize(CGSize size) = 0;

    /// What the marks stand for, and the width in pixels of what is drawn.
    std::vector<CGPoint> points() const;
    void setPoints(std::vector<CGPoint> points);
    /// Draws these at once, without a picture, at the size that was forced; and keeps them.
    void renderPoints(std::vector<CGPoint> points, const CMTime& frameTime);
    float width() const;
    void setWidth(float pixels);
    /// Green at first; components 0 to 1.
    void setColorRed(float red, float green, float blue);
    /// For descriptions: `setColorRed:green:blue:` by the name that the generator has for it.
    static FilterSelector colorOperation(std::string name);

    // These belong to the queue.
    std::vector<CGPoint> m_points;
    float m_width = 1;

    GLint m_halfWidthUniform;

private:
    void drawMarks();

    GLint m_colorUniform;
    GLint m_isMarkUniform;
};

} // namespace lamina
