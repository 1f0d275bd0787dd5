#pragma once

#include "platform/base/CGAffineTransform.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/UIColor.h"
#include "platform/image/drawing/CGContext.h"
#include "platform/image/drawing/UIBezierPath.h"
#include "platform/image/pixels/UIImage.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace lamina {

/// How contents fill a layer, and an image view its frame.
enum class UIViewContentMode { ScaleToFill, ScaleAspectFit, ScaleAspectFill, Center };

/// What is seen: a rectangle with geometry, colours, a picture, and layers above it. Every view has one.
///
/// Geometry: `bounds` is the layer's own coordinate system; its centre stands at `position` of the parent's, turned and
/// scaled there by `transform`. Lengths in points, y down, colours straight sRGB. A value that is not finite is
/// ignored, a negative length counts as 0 (in a shadow, where it is drawn). Must be held by std::shared_ptr. All on the
/// main thread.
///
/// Order of drawing: shadow, background, contents, sublayers in order, border; then the mask and the corner clip
/// (`masksToBounds` clips contents and sublayers to the rounded bounds, never the shadow); `opacity` acts on all of it
/// as one group.
class CALayer : public std::enable_shared_from_this<CALayer> {
public:
    CALayer();
    virtual ~CALayer();
    CALayer(const CALayer&) = delete;
    CALayer& operator=(const CALayer&) = delete;

    /// Own coordinates; default empty.
    CGRect bounds() const { return m_bounds; }
    void setBounds(const CGRect& bounds);
    /// Of the bounds' centre, in the parent's coordinates.
    CGPoint position() const { return m_position; }
    void setPosition(CGPoint position);
    /// About the position; default the identity.
    CGAffineTransform affineTransform() const { return m_transform; }
    void setAffineTransform(const CGAffineTransform& transform);
    /// From this layer's coordinates to the parent's.
    CGAffineTransform transformToParent() const;

    /// [0, 1], clamped; default 1.
    double opacity() const { return m_opacity; }
    void setOpacity(double opacity);
    bool isHidden() const { return m_hidden; }
    void setHidden(bool hidden);
    /// What is seen in the place of opacity and transform while these are on their way to what was set.
    struct Presentation {
        double opacity = 1;
        CGAffineTransform transform;
        friend bool operator==(const Presentation&, const Presentation&) = default;
    };
    /// For whoever moves the layer; none, the default: opacity and transform are seen as they are.
    const std::optional<Presentation>& presentation() const { return m_presentation; }
    void setPresentation(const std::optional<Presentation>& presentation);
    /// What is seen now, which is what the renderer draws.
    Presentation shown() const { return m_presentation.value_or(Presentation{m_opacity, m_transform}); }
    /// The transform to the parent with what is seen; touches go by `transformToParent`.
    CGAffineTransform shownTransformToParent() const;

    /// Default none.
    std::optional<UIColor> backgroundColor() const { return m_backgroundColor; }
    void setBackgroundColor(const std::optional<UIColor>& color);
    /// Points; default 0. Above half of the shorter side it counts as that half.
    double cornerRadius() const { return m_cornerRadius; }
    void setCornerRadius(double radius);
    /// Drawn inside the bounds; default 0.
    double borderWidth() const { return m_borderWidth; }
    void setBorderWidth(double width);
    /// Default black.
    UIColor borderColor() const { return m_borderColor; }
    void setBorderColor(const UIColor& color);
    /// Default false.
    bool masksToBounds() const { return m_masksToBounds; }
    void setMasksToBounds(bool masks);
    /// Whether sublayers that are masked by paths, and stand next to one another in the order, share the pixels of a
    /// common edge by the part that each covers. Otherwise, as by default, each is antialiased by itself, and what lies
    /// beneath them shows along the edge. Nothing changes where an edge meets none of another's.
    bool sharesEdges() const { return m_sharesEdges; }
    void setSharesEdges(bool shares);

    /// A blurred copy of what the layer shows, in one colour, under it. Values are kept as they are given, and come
    /// within their ranges where they are drawn.
    struct Shadow {
        UIColor color = UIColor::black();
        double opacity = 0;      ///< drawn within [0, 1]; 0 draws no shadow
        CGSize offset = {0, -3}; ///< points, y down
        double radius = 3;       ///< standard deviation of the blur, points; below 0 it is drawn as 0
        friend bool operator==(const Shadow&, const Shadow&) = default;
    };
    const Shadow& shadow() const { return m_shadow; }
    void setShadow(const Shadow& shadow);

    /// A layer whose alpha, drawn in this layer's coordinates at its own position, lets this one through, shadow
    /// included. A mask draws no shadow of its own, which would let through what lies beside it; it belongs to no
    /// parent (it leaves the one it had) and masks one layer. Null: none. A shape layer gives polygon masks, a layer
    /// with contents picture masks.
    const std::shared_ptr<CALayer>& mask() const { return m_mask; }
    void setMask(std::shared_ptr<CALayer> mask);

    /// The picture shown, stretched over the bounds by `contentsMode`. What an aspect fill lets stick out of the bounds
    /// is seen unless masked.
    const UIImage& contents() const { return m_contents; }
    void setContents(const UIImage& image);
    /// Another with every picture set, and never the same for two layers' pictures.
    std::uint64_t contentsRevision() const { return m_contentsRevision; }
    UIViewContentMode contentsMode() const { return m_contentsMode; }
    void setContentsMode(UIViewContentMode mode);
    /// Whether another picture soon comes in the place of this one, which then isn't worth holding it for a window's
    /// next frames. Default false.
    bool contentsAreTransient() const { return m_contentsAreTransient; }
    void setContentsAreTransient(bool transient) { m_contentsAreTransient = transient; }
    /// Where the contents stand in the layer's coordinates; empty without contents.
    CGRect contentsRect() const;

    CALayer* superlayer() const { return m_superlayer; }
    const std::vector<std::shared_ptr<CALayer>>& sublayers() const { return m_sublayers; }
    /// Puts the layer on top; otherwise as insertSublayer.
    void addSublayer(std::shared_ptr<CALayer> layer);
    /// `index` counts from the bottom and is clamped. A layer that has a parent leaves it first. Null and a layer that
    /// this one stands in are refused (asserted).
    void insertSublayer(std::shared_ptr<CALayer> layer, std::size_t index);
    /// Leaves the parent; nothing without one. The layer may be destroyed by this.
    void removeFromSuperlayer();

    /// Draws this layer and all above it in its own coordinates: its position and transform in the parent do not count;
    /// opacity, mask, clip and shadow do. Where the bounds don't begin at (0, 0), as in a view that was scrolled,
    /// whoever wants their top left at the origin translates the context first. A hidden layer draws nothing.
    void renderInContext(CGContext& context) const;

    /// Grows with every change of this layer itself (not of its sublayers); never the same for two layers' states.
    std::uint64_t revision() const { return m_revision; }
    /// The area this layer itself may paint, shadow included, in its own coordinates; sublayers not counted.
    /// Empty when it paints nothing.
    CGRect paintedBounds() const;

    using ChangeObserver = std::shared_ptr<const std::function<void()>>;
    /// Calls `handler` at every change of this layer, its mask and all layers above it, as long as the result is held.
    /// For whoever shows the tree; several may watch. The handler must not change the tree.
    [[nodiscard]] ChangeObserver observeChanges(std::function<void()> handler);

protected:
    /// What a subclass paints between contents and sublayers, inside `drawnBounds`.
    virtual void drawInContext(CGContext& context) const;
    /// Where `drawInContext` paints, in own coordinates. Empty, the default: there is nothing to draw.
    virtual CGRect drawnBounds() const { return {}; }
    /// To be called after a change of this layer that is seen.
    void changed();

private:
    CGAffineTransform placed(const CGAffineTransform& transform) const;
    friend class LayerRenderer;
    friend class UIView; // what it tells besides is read by those who show the tree
    /// What this layer belongs to: its parent, or the layer that it masks.
    CALayer* owner() const { return m_superlayer ? m_superlayer : m_maskedLayer; }
    bool isInside(const CALayer& layer) const;
    void leaveOwner();
    /// Tells all observers on the way to the top.
    void notifyObservers() const;
    template <class Value>
    void assign(Value& member, const Value& value);

    CGRect m_bounds;
    CGPoint m_position;
    CGAffineTransform m_transform;
    double m_opacity = 1;
    std::optional<Presentation> m_presentation;
    bool m_hidden = false;
    std::optional<UIColor> m_backgroundColor;
    double m_cornerRadius = 0;
    double m_borderWidth = 0;
    UIColor m_borderColor = UIColor::black();
    bool m_masksToBounds = false;
    bool m_sharesEdges = false;
    Shadow m_shadow;
    std::shared_ptr<CALayer> m_mask;
    CALayer* m_maskedLayer = nullptr;
    UIImage m_contents;
    std::uint64_t m_contentsRevision = 0;
    UIViewContentMode m_contentsMode = UIViewContentMode::ScaleToFill;
    bool m_contentsAreTransient = false;
    CALayer* m_superlayer = nullptr;
    std::vector<std::shared_ptr<CALayer>> m_sublayers;
    std::uint64_t m_revision = 0;
    std::vector<std::weak_ptr<const std::function<void()>>> m_observers;
};

} // namespace lamina
