#pragma once

#include "platform/base/CGAffineTransform.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/UIColor.h"
#include "platform/image/drawing/SharedEdges.h"
#include "platform/image/drawing/UIBezierPath.h"
#include "platform/image/pixels/CGColorSpace.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/UIImage.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>

namespace lamina {

/// How what is drawn meets what is there, on premultiplied values. Where an edge or a clip covers a pixel in part, the
/// result is mixed with what was there by that part.
enum class CGBlendMode {
    Normal, ///< source-over: out = src + (1 - src.alpha)·dst
    Clear,  ///< out = 0, whatever is drawn
    Copy,   ///< out = src, its alpha too
};

/// A bitmap and the state of drawing into it: transform, clip, alpha, blend mode, colours, shadow.
///
/// Everything is composited source-over unless another blend mode is set. Edges that don't fall
/// on pixel borders are antialiased by the exact area they cover. Colours and pictures are converted to the bitmap's
/// space. RGB bitmaps keep premultiplied alpha or none; grey and CMYK ones have no alpha and start as black or no ink;
/// alpha-only ones keep coverage alone. Work on large areas is split by rows over the worker pool; the result does not
/// depend on it.
///
/// One thread at a time may use a context. Move-only.
class CGContext {
public:
    /// A plain bitmap context, cleared to zero. User space: one unit a pixel, origin at the *bottom* left, y upwards.
    /// Formats: 8 bits a component in RGB of 32 bits (premultiplied or skipped alpha, first or last, 32-bit little or
    /// big order), grey or alpha only of 8 bits, CMYK of 32 bits. `bytesPerRow` 0 chooses it. Nothing when the format
    /// is not one of these, a side is not positive, or memory is short.
    static std::optional<CGContext> bitmap(int width, int height, std::size_t bytesPerRow, const CGColorSpace& space,
                                           CGBitmapInfo info);

    /// A context for pictures of views: RGBA premultiplied, `size` in points times `scale` pixels, rounded up to whole
    /// pixels; user space in points, origin at the *top* left, y downwards. `scale` 0 means the main screen's. An
    /// opaque one starts black and its picture has no alpha; otherwise it starts clear. Nothing when the size is empty
    /// or not finite, or memory is short.
    static std::optional<CGContext> image(CGSize size, bool opaque, double scale);

    CGContext(CGContext&&) noexcept;
    CGContext& operator=(CGContext&&) noexcept;
    ~CGContext();

    /// Columns of the bitmap, in pixels whatever the scale; at least 1.
    int width() const;
    /// Rows of the bitmap, in pixels whatever the scale; at least 1.
    int height() const;
    /// Pixels per point of a context made by `image`; 1 for a plain one.
    double scale() const;

    /// Puts a copy of the state on a stack: transform, clip, alpha, blend mode, colours, shadow, antialiasing and
    /// interpolation.
    void saveGState();
    /// Takes the state back that was saved last. Without one does nothing, and inside a layer doesn't reach what was
    /// saved before the layer began.
    void restoreGState();

    /// From user space to device pixels (origin top left, y down).
    CGAffineTransform deviceTransform() const;
    /// Puts a transform before those there are: coordinates go through it first. What has no inverse or is not finite
    /// leaves nothing to be drawn until the state is restored.
    void concatCTM(const CGAffineTransform& transform);
    /// Moves the origin to (x, y) of user space as it was.
    void translateCTM(double x, double y) { concatCTM(CGAffineTransform::translation(x, y)); }
    /// Makes a unit of either axis so many times as long; negative ones mirror.
    void scaleCTM(double sx, double sy) { concatCTM(CGAffineTransform::scaling(sx, sy)); }
    /// Turns the axes about the origin, from the x axis towards the y axis.
    void rotateCTM(double radians) { concatCTM(CGAffineTransform::rotation(radians)); }

    /// Cuts the clip to a rectangle of user space. A clip only shrinks, until the state is restored. Edges are
    /// antialiased; edges on pixel borders cost nothing later.
    void clipToRect(const CGRect& rect);
    /// Cuts the clip to the inside of a path by its fill rule; open parts are closed. An empty path leaves nothing.
    void clipToPath(const UIBezierPath& path);
    /// Lets through by the mask stretched over `rect`, its top edge at the rectangle's top as a picture drawn there:
    /// for a grey mask the value (white shows), for an alpha-only one the alpha; for a picture in colour its alpha.
    void clipToMask(const CGRect& rect, const CGImage& mask);
    /// Calls `draw` with the number of every outline, from the lowest up, the clip cut to it; not for those that can't
    /// be seen. Where the edges of several cut one pixel, each counts there by the part that it covers, so that nothing
    /// of what lies beneath shows along a common edge; the upper one's edge stays in its place. All other pixels get
    /// what `clipToPath` would give them. What `draw` leaves of state and layers must be as it was. RGB contexts only;
    /// elsewhere every edge is drawn by itself.
    void drawSharingEdges(const SharedEdges& edges, const std::function<void(std::size_t outline)>& draw);
    /// Device pixels that drawing can still reach; empty when nothing can.
    IntRect clipBounds() const;

    /// Multiplies the alpha of everything drawn; clamped to [0, 1]. Default 1.
    void setAlpha(double alpha);
    /// Default Normal. In the others nothing throws a shadow, and an opaque bitmap stays opaque: it takes the
    /// premultiplied colour, as if black lay beneath.
    void setBlendMode(CGBlendMode mode);
    /// Default black.
    void setFillColor(const UIColor& color);
    /// Default black.
    void setStrokeColor(const UIColor& color);
    /// Default true. Without it a pixel is covered when its centre is.
    void setShouldAntialias(bool antialias);
    /// How a picture is read where its pixels don't fall on the bitmap's.
    enum class Interpolation {
        None, ///< the pixel under the centre
        High, ///< as `resampled` where the axes stay parallel; cubic convolution of a reduced picture where they don't
    };
    /// `None` takes the nearest source pixel. Default High.
    void setInterpolationQuality(Interpolation quality);
    /// A shadow under everything drawn: `offset` and `blur` in device-independent points of the context's scale, y
    /// down. The blur is a Gaussian of standard deviation blur / 2. No colour: no shadow (the default).
    void setShadow(CGSize offset, double blur, const std::optional<UIColor>& color);
    /// How many pixels beyond the outline of what casts it a shadow without offset is drawn; `deviation` is the blur's
    /// standard deviation in pixels. Whoever draws a part of a picture draws what lies this far around it too.
    static int shadowReach(double deviation);

    /// Fills a rectangle of user space with the fill colour. One without area, or that is not finite, fills nothing.
    void fillRect(const CGRect& rect);
    /// Fills the inside of a path by its fill rule; open parts are closed.
    void fillPath(const UIBezierPath& path);
    /// Strokes with the path's `lineWidth`, ends, joins and dashes.
    void strokePath(const UIBezierPath& path);
    /// Sets to clear (alpha 0, or zero where there is no alpha).
    void clearRect(const CGRect& rect);

    /// Draws the stored pixels stretched over `rect` of user space, with the picture's own top edge at the largest y
    /// when y runs up. In a context whose y runs down this mirrors the picture; `drawInRect` does not.
    void drawImage(const CGImage& image, const CGRect& rect);

    /// Draws stored pixels through a transform from their own space (pixels, y down) to user space.
    void drawImage(const CGImage& image, const CGAffineTransform& imageToUser);

    /// What is drawn until the end is first put together by itself, from clear, then composited as one with the alpha,
    /// blend mode, shadow and clip of the moment of the beginning; inside, alpha is 1, the mode Normal and there is no
    /// shadow. `bounds` (user space)
    /// may limit the layer. RGB contexts only; elsewhere they draw straight on.
    void beginTransparencyLayer(const std::optional<CGRect>& bounds = std::nullopt);
    /// Composites the layer begun last and takes the state back that held before it. Without one does nothing.
    void endTransparencyLayer();

    /// The bitmap now. The bytes are copied when the context draws on afterwards, not before.
    CGImage makeImage();
    /// The bitmap as a picture of the context's scale.
    UIImage makeUIImage();

private:
    struct Impl;
    explicit CGContext(std::unique_ptr<Impl> impl);
    std::unique_ptr<Impl> m_impl;
};

} // namespace lamina
