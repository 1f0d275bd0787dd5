#pragma once

#include "platform/view/CALayer.h"
#include "platform/view/UIAccessibility.h"
#include "platform/view/UIPointerShape.h"
#include "platform/view/UIViewAnimation.h"
#include "platform/view/UIViewAutoresizing.h"

#include "platform/base/CGAffineTransform.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/UIColor.h"

#include <array>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace lamina {

class UIGestureRecognizer;
struct UITouch;

/// A rectangle of the canvas that can be drawn, hit and moved. It owns its layer, its recognisers and shares its
/// children.
///
/// Lengths in points, y down. Everything on the main thread. Children stand in order from the bottom to the top, and
/// the layers in the same order.
class UIView : public UIAccessibility, public std::enable_shared_from_this<UIView> {
public:
    explicit UIView(const CGRect& frame = {});
    ~UIView() override;
    UIView(const UIView&) = delete;
    UIView& operator=(const UIView&) = delete;

    CALayer& layer() const { return *m_layer; }

    /// The box around the view in its parent, that is the bounding box where a transform is in force. Setting it keeps
    /// the transform and the bounds' origin, and sets centre and bounds' size so that the box becomes this one. Where a
    /// transform allows no such size (a turn by 45 degrees has one box for all shapes), the sides are divided by its
    /// scale.
    CGRect frame() const;
    virtual void setFrame(const CGRect& frame);
    CGRect bounds() const { return m_layer->bounds(); }
    virtual void setBounds(const CGRect& bounds);
    /// In the parent's coordinates.
    CGPoint center() const { return m_layer->position(); }
    void setCenter(CGPoint center);
    /// About the centre.
    CGAffineTransform transform() const { return m_layer->affineTransform(); }
    void setTransform(const CGAffineTransform& transform);

    /// What follows the parent when the size of its bounds changes; see UIViewAutoresizing. Default None.
    UIViewAutoresizing autoresizingMask() const { return m_autoresizingMask; }
    void setAutoresizingMask(UIViewAutoresizing mask) { m_autoresizingMask = mask; }
    /// Whether the children follow this view's size, each by its mask. Default true.
    bool autoresizesSubviews() const { return m_autoresizesSubviews; }
    void setAutoresizesSubviews(bool resizes) { m_autoresizesSubviews = resizes; }

    /// Of the view with all that stands in it; default 1.
    double alpha() const { return m_layer->opacity(); }
    void setAlpha(double alpha);
    /// Default false.
    bool isHidden() const { return m_layer->isHidden(); }
    void setHidden(bool hidden) { m_layer->setHidden(hidden); }
    /// Default none.
    std::optional<UIColor> backgroundColor() const { return m_layer->backgroundColor(); }
    void setBackgroundColor(const std::optional<UIColor>& color);
    /// Default false: children are seen outside the bounds.
    bool clipsToBounds() const { return m_layer->masksToBounds(); }
    void setClipsToBounds(bool clips) { m_layer->setMasksToBounds(clips); }
    /// Of the layer's picture; default ScaleToFill.
    UIViewContentMode contentMode() const { return m_layer->contentsMode(); }
    void setContentMode(UIViewContentMode mode) { m_layer->setContentsMode(mode); }
    /// A promise for whoever flattens the view: its picture needs no alpha. Default true (false for image views).
    bool isOpaque() const { return m_opaque; }
    void setOpaque(bool opaque) { m_opaque = opaque; }

    /// A side that the content leaves open.
    static constexpr double kNoIntrinsicMetric = -1;
    /// What the content takes by itself, in points, for whoever lays the view out; by default both sides are open.
    virtual CGSize intrinsicContentSize() const { return {kNoIntrinsicMetric, kNoIntrinsicMetric}; }

    /// Default 0.
    int tag() const { return m_tag; }
    void setTag(int tag) { m_tag = tag; }
    /// This view or the first one below it, depth first, that carries the tag; null when none does.
    UIView* viewWithTag(int tag);

    UIView* superview() const { return m_superview; }
    /// A loop that adds, removes or reorders takes a copy first.
    const std::vector<std::shared_ptr<UIView>>& subviews() const { return m_subviews; }
    /// Puts the view on top; it leaves its present parent first. Null, and a view that this one stands in, are refused
    /// (asserted).
    void addSubview(std::shared_ptr<UIView> view);
    /// `index` counts from the bottom and is clamped.
    void insertSubview(std::shared_ptr<UIView> view, std::size_t index);
    /// Puts a child on top; nothing for views that are none.
    void bringSubviewToFront(UIView& view);
    /// The view may be destroyed by this, if nobody else holds it.
    void removeFromSuperview();
    /// True for the view itself and everything that stands above it on the way to the root.
    bool isDescendantOf(const UIView& view) const;
    /// After this view's parent has changed; not when the parent is destroyed.
    virtual void didMoveToSuperview() {}

    /// Default true, false for image views. A view without it, a hidden one and one with alpha below 0.01 gets no
    /// touches, nor do its children.
    bool isUserInteractionEnabled() const { return m_userInteractionEnabled; }
    void setUserInteractionEnabled(bool enabled) { m_userInteractionEnabled = enabled; }
    /// Default false: only the first finger reaches the view's touch operations (recognisers see them all).
    bool isMultipleTouchEnabled() const { return m_multipleTouchEnabled; }
    void setMultipleTouchEnabled(bool enabled) { m_multipleTouchEnabled = enabled; }

    /// Whether the point (own coordinates) lies in the bounds.
    virtual bool pointInside(CGPoint point) const;
    /// The topmost view at the point (own coordinates) that takes touches; null when none does. Children outside a
    /// parent's bounds are not hit.
    virtual UIView* hitTest(CGPoint point);

    /// Where touches, wheels and pinches on this view and what stands in it go that no recogniser or control there
    /// takes: to the recognisers of the view that is given. The nearest view that gives one is asked; it must stand in
    /// the same tree, seen or not. Default none.
    virtual UIView* gestureFallback() const { return nullptr; }
    /// What a notch of a wheel or a moment of a touchpad's pinch over this view does to it where no recogniser takes
    /// it: it grows by `factor`, finite and positive. False, the default: the view is not interested, and what lies
    /// above it in the tree is asked.
    virtual bool magnifyBy(double) { return false; }
    /// The same for a turn in radians, clockwise.
    virtual bool rotateBy(double) { return false; }
    /// What the mouse's pointer looks like over this view; none: what lies above it in the tree says. By default what
    /// was set, else an open hand where a pan or a press that begins at once is attached.
    virtual std::optional<UIPointerShape> pointerShape() const;
    void setPointerShape(std::optional<UIPointerShape> shape);

    /// From this view's coordinates to those of `view` (null: those of the root). The views must share a root; a
    /// transform that can't be undone gives the point (0, 0).
    CGPoint convertPointToView(CGPoint point, const UIView* view) const;
    /// The other way, by the same rules.
    CGPoint convertPointFromView(CGPoint point, const UIView* view) const;
    /// The topmost view of the tree that this one stands in.
    UIView& rootView();
    const UIView& rootView() const;
    /// From this view's coordinates to the root's.
    CGAffineTransform transformToRoot() const;

    const std::vector<std::shared_ptr<UIGestureRecognizer>>& gestureRecognizers() const { return m_gestureRecognizers; }
    /// A recogniser belongs to one view: it leaves the one it had.
    void addGestureRecognizer(std::shared_ptr<UIGestureRecognizer> recognizer);
    /// A gesture under way is cancelled first, so that its action hears of it.
    void removeGestureRecognizer(UIGestureRecognizer& recognizer);
    /// As removeGestureRecognizer, one after another.
    void removeAllGestureRecognizers();

    /// Fingers have come down on this view; as the next three, for touches that no recogniser has claimed. The default
    /// does nothing with them.
    virtual void touchesBegan(const std::vector<UITouch*>& touches);
    /// They have moved, all in one event.
    virtual void touchesMoved(const std::vector<UITouch*>& touches);
    /// They were lifted.
    virtual void touchesEnded(const std::vector<UITouch*>& touches);
    /// They were lost, or a recogniser has claimed them.
    virtual void touchesCancelled(const std::vector<UITouch*>& touches);

    /// The part of the bounds that counts as the view's place for assistive technology, and that the mark of the
    /// keyboard's focus goes round. Default: all of them.
    virtual CGRect accessibilityBounds() const { return bounds(); }

protected:
    UIView(const CGRect& frame, std::shared_ptr<CALayer> layer);
    void accessibilityChanged() override { m_layer->notifyObservers(); }

private:
    /// What `animate` can move.
    enum AnimatedPart : std::size_t { Bounds, Center, Transform, Alpha, BackgroundColor, kAnimatedParts };
    void prepareChange(AnimatedPart part, bool differs);
    const UIViewMotion* motionOf(AnimatedPart part, bool differs) const;
    void changeBounds(const CGRect& bounds);
    void followSuperview(CGSize before, CGSize after);

    std::shared_ptr<CALayer> m_layer;
    UIView* m_superview = nullptr;
    std::vector<std::shared_ptr<UIView>> m_subviews;
    std::vector<std::shared_ptr<UIGestureRecognizer>> m_gestureRecognizers;
    std::unique_ptr<std::array<UIViewAnimatable, kAnimatedParts>> m_animatables; ///< made by the first animation
    UIViewAutoresizing m_autoresizingMask = UIViewAutoresizing::None;
    bool m_autoresizesSubviews = true;
    int m_tag = 0;
    bool m_opaque = true;
    bool m_userInteractionEnabled = true;
    bool m_multipleTouchEnabled = false;
    std::optional<UIPointerShape> m_pointerShape;
};

} // namespace lamina
