#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageFilter.h"
#include "gpu/core/GPUVectors.h"
#include "platform/base/CGAffineTransform.h"
#include "platform/base/CGGeometry.h"
#include "platform/gl/GLHeaders.h"

namespace lamina {

/// Moves, turns, scales, shears and tilts the picture within its frame.
///
///   gl_Position = transformMatrix * position * orthographicMatrix
///
/// The picture lies in a plane in which x runs rightwards from -1 to 1 and y downwards from -h/w to h/w, w and h being
/// its width and height: turning keeps its proportions. With `ignoreAspectRatio` y runs from -1 to 1 too; with
/// `anchorTopLeft` the picture begins at (0, 0), its width is 1 and its height h/w (or 1), so that it turns about its
/// top left corner, and moves by shares of its width. A positive angle turns clockwise. What leaves the frame is cut
/// off; where nothing of the picture is, the background shows, clear at first. The output has the picture's size; where
/// the picture is made smaller, pixels are left out.
class GPUImageTransformFilter : public GPUImageFilter {
public:
    GPUImageTransformFilter();
    static FilterDescription describe();

    /// The plane's transform: `transform3D` without depth. Setting either sets both; the identity at first. From any
    /// thread, as are all setters here; they wait for the video processing queue.
    CGAffineTransform affineTransform() const;
    void setAffineTransform(const CGAffineTransform& transform);
    /// A transform of row vectors (x, y, z, 1), its rows the records, as layers have it: depth shows by the fourth
    /// number of the third record, which divides what comes nearer or goes farther.
    GPUMatrix4x4 transform3D() const;
    void setTransform3D(const GPUMatrix4x4& transform);
    /// False at first.
    bool ignoreAspectRatio() const;
    void setIgnoreAspectRatio(bool ignore);
    /// False at first: about the middle.
    bool anchorTopLeft() const;
    void setAnchorTopLeft(bool anchor);

    void setupFilterForSize(CGSize filterFrameSize) override;
    void renderToTextureWithVertices(const QuadCoordinates& vertices,
                                     const QuadCoordinates& textureCoordinates) override;

private:
    /// The picture in its plane.
    CGRect extent() const;
    void tellExtent();

    GLint m_transformUniform;
    GLint m_orthographicUniform;
    // These belong to the queue.
    GPUMatrix4x4 m_transform3D = GPUMatrix4x4::identity();
    double m_heightOverWidth = 1;
    bool m_ignoreAspectRatio = false;
    bool m_anchorTopLeft = false;
};

} // namespace lamina
