#pragma once

#include "platform/view/CALayer.h"

#include "platform/base/CGAffineTransform.h"
#include "platform/base/CGGeometry.h"
#include "platform/image/drawing/CGContext.h"
#include "platform/image/drawing/UIBezierPath.h"

#include <cstddef>
#include <optional>

namespace lamina {

class EdgeCopies;
class PictureCopies;
class PictureReductions;

/// Draws layers into a context: the one way in which a tree becomes a picture, be it for a window or for a file.
///
/// A layer of several parts that is to be seen as one (translucent, masked, with rounded corners that clip, or casting
/// a shadow) is put together by itself first: what lies below a part must not shine through it nor along its edge.
/// Everything else is drawn straight on. How a layer is drawn depends on the tree alone and never on the clip, so that
/// a part that is drawn again gets the same bytes. Main thread.
class LayerRenderer {
public:
    /// The context must outlive the renderer, as must `reductions` and `copies`. With reductions, large pictures are
    /// drawn from smaller ones of about the size that is seen, quickly and not by the same bytes. With copies, pictures
    /// that stay are drawn from what they were the last time, by the same bytes; with edges, so are the masks of layers
    /// that share edges.
    explicit LayerRenderer(CGContext& context, PictureReductions* reductions = nullptr, PictureCopies* copies = nullptr,
                           EdgeCopies* edges = nullptr);

    /// The layer and all above it, its own coordinates being those of user space.
    void render(const CALayer& layer);

    /// What the layer paints of itself, in its own coordinates, without shadow. Empty when that is nothing.
    static CGRect ownBounds(const CALayer& layer);
    /// The part of it that its own clip acts on, before that clip.
    static CGRect innerBounds(const CALayer& layer);
    /// Whether the layer paints all over its bounds, or along their edge.
    static bool paintsBounds(const CALayer& layer);
    /// Whether a shadow of the layer is to be seen: never of a mask.
    static bool castsShadow(const CALayer& layer);
    /// The layer's shadow with its values within their ranges.
    static CALayer::Shadow drawnShadow(const CALayer& layer);
    /// Where the shadow of something in `painted` may fall, in the layer's coordinates.
    static CGRect shadowBounds(const CALayer& layer, const CGRect& painted);

    /// Pixels that a rectangle of the device may touch, with room for the last bits. Saturated far outside any device.
    static IntRect pixelCover(const CGRect& rect);
    /// A shadow in whole pixels: by how much it is moved, and how far it reaches around.
    struct ShadowPixels {
        int x = 0;
        int y = 0;
        int reach = 0;
        /// Where the shadow of `rect` falls.
        IntRect of(const IntRect& rect) const;
        /// What may throw its shadow on `rect`.
        IntRect castingOn(const IntRect& rect) const;
    };
    /// Of the layer, its coordinates placed by `toDevice`.
    static ShadowPixels shadowPixels(const CALayer& layer, const CGAffineTransform& toDevice);
    /// All pixels that the layer and those above it may change, clips, masks and shadows considered. Counted in whole
    /// pixels, because a clip and a layer that share a pixel leave a trace even where their outlines don't meet.
    static IntRect treePixels(const CALayer& layer, const CGAffineTransform& toDevice);
    /// The same without the layer's own shadow and mask: what throws the shadow.
    static IntRect bodyPixels(const CALayer& layer, const CGAffineTransform& toDevice);

    /// Whether the layer, to be seen through `alpha`, must be put together before that alpha and the mask act.
    static bool needsGroup(const CALayer& layer, double alpha);
    /// Whether the layer must be put together before its corners are cut.
    static bool cutsCornersOfGroup(const CALayer& layer);

    /// What cuts the layer where its mask is a path and nothing else, in the layer's coordinates.
    static std::optional<UIBezierPath> cutOf(const CALayer& layer);
    /// Of the sublayers from `first` on that are drawn together because their parent lets them share edges, the end;
    /// `first` where the sublayer there is drawn by itself.
    static std::size_t endOfSharing(const CALayer& parent, std::size_t first);

private:
    /// Whether more than one thing is painted, so that one may lie over another.
    static bool hasSeveralParts(const CALayer& layer);
    void draw(const CALayer& layer, double inheritedAlpha);
    void drawPlaced(const CALayer& layer, double inheritedAlpha);
    /// Inside the mask, which is the clip now.
    void drawUnmasked(const CALayer& layer, double inheritedAlpha);
    void drawSublayers(const CALayer& layer, double alpha);
    /// Sublayers [first, end).
    void drawSharing(const CALayer& parent, std::size_t first, std::size_t end, double alpha);
    void drawWithShadow(const CALayer& layer, double alpha);
    void drawBody(const CALayer& layer, double alpha);
    /// `square`: the corners are cut later.
    void drawParts(const CALayer& layer, double alpha, bool square);
    void drawBackground(const CALayer& layer, double alpha, bool square);
    void drawContents(const CALayer& layer, double alpha);
    void drawBorder(const CALayer& layer, double alpha, bool square);
    void clipToBounds(const CALayer& layer);
    bool isSeen(const CGRect& rect) const;
    /// Pixels of the device in user space.
    CGRect inUserSpace(const IntRect& pixels) const;

    /// False when the mask lets nothing through.
    bool clipToMask(const CALayer& layer);
    bool clipToPictureOf(const CALayer& mask);
    bool clipToDrawingOf(const CALayer& mask, const IntRect& seen);

    CGContext& m_context;
    PictureReductions* m_reductions;
    PictureCopies* m_copies;
    EdgeCopies* m_edges;
};

} // namespace lamina
