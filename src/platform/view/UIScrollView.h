#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/base/UIEdgeInsets.h"
#include "platform/view/UIPanGestureRecognizer.h"
#include "platform/view/UIPinchGestureRecognizer.h"
#include "platform/view/UIView.h"

#include <memory>
#include <optional>
#include <utility>

namespace lamina {

class UIScrollView;

/// Every operation has a default. A gesture gives a call as it begins, one after each change, and one as it ends: of
/// fingers, and all at once of one notch of a wheel or one moment of a touchpad's pinch. Main thread.
class UIScrollViewDelegate {
public:
    virtual ~UIScrollViewDelegate() = default;
    /// The child that zooming scales; null: no zooming.
    virtual UIView* viewForZoomingInScrollView(UIScrollView& scrollView);

    /// Before a drag moves anything.
    virtual void scrollViewWillBeginDragging(UIScrollView& scrollView);
    /// After the content offset has changed, whatever has changed it; where a zoom did, before its own call.
    virtual void scrollViewDidScroll(UIScrollView& scrollView);
    /// After the last finger of a drag was lifted or lost. `willDecelerate` is always false: content stands still when
    /// the finger does.
    virtual void scrollViewDidEndDragging(UIScrollView& scrollView, bool willDecelerate);
    /// A turn of the main queue after setContentOffset was asked to animate a change.
    virtual void scrollViewDidEndScrollingAnimation(UIScrollView& scrollView);

    /// Before a pinch zooms anything; `view` is the child that it will scale.
    virtual void scrollViewWillBeginZooming(UIScrollView& scrollView, UIView* view);
    /// After the zoom scale has changed; content size and offset are settled by then.
    virtual void scrollViewDidZoom(UIScrollView& scrollView);
    /// After a pinch, with the child as it is now (null: none any more) and the scale it has come to.
    virtual void scrollViewDidEndZooming(UIScrollView& scrollView, UIView* view, double scale);
};

/// A window onto larger content. Its children are laid out in content coordinates; `contentOffset`, which is the
/// bounds' origin, says which content point stands at the top left. Clips to its bounds; no bounce, no deceleration.
///
/// Zooming: the delegate's view gets the transform scaling(z, z) with its frame's origin kept at (0, 0). The content
/// size stays what was set until a zoom changes the scale for the first time; from then on each zoom makes it the size
/// of the zoomed view's frame.
///
/// One finger drags, two pinch (both at once if they like), as far as the limits allow. A wheel or a touchpad pinch
/// zooms at the pointer.
class UIScrollView : public UIView {
public:
    explicit UIScrollView(const CGRect& frame = {});
    ~UIScrollView() override;

    /// The content point at the top left; default zero.
    CGPoint contentOffset() const { return bounds().origin; }
    /// Clamped per axis to what lies between the smallest and the largest offset; not finite counts as 0.
    void setContentOffset(CGPoint offset);
    /// The same; the content stands there at once, animated or not. An animated change gets its end call.
    void setContentOffset(CGPoint offset, bool animated);
    /// Points; default zero. Negative or not finite sides count as 0. The offset is clamped to the new range.
    CGSize contentSize() const { return m_contentSize; }
    void setContentSize(CGSize size);
    /// How far the content may be scrolled beyond its own edges; default none. Sides that are not finite: ignored, all
    /// four. The offset is clamped to the new range.
    UIEdgeInsets contentInset() const { return m_contentInset; }
    void setContentInset(const UIEdgeInsets& inset);
    /// The smallest offset in each axis: the inset's left and top, negative.
    CGPoint minimumContentOffset() const;
    /// The largest: content size and inset less the bounds' size, but never below the smallest.
    CGPoint maximumContentOffset() const;
    /// Whether there is anything to scroll to, and
    bool canScroll() const;
    /// whether that is up or down.
    bool canScrollDown() const;

    /// Default 1 each. Not finite or not positive: ignored. A scale that falls outside is moved to the nearer limit.
    double minimumZoomScale() const { return m_minimumZoomScale; }
    void setMinimumZoomScale(double scale);
    double maximumZoomScale() const { return m_maximumZoomScale; }
    void setMaximumZoomScale(double scale);
    /// Default 1.
    double zoomScale() const { return m_zoomScale; }
    /// Zooms about the middle of what is visible. Clamped to the limits; the same scale again, or one that is not a
    /// number, changes nothing, and nothing happens without a view for zooming.
    void setZoomScale(double scale);
    /// Zooms so that the content point under `anchor` (this view's coordinates, so within the bounds when it is
    /// visible) stays under it, as far as the range allows. Otherwise as setZoomScale.
    void zoomToScale(double scale, CGPoint anchor);

    /// Not owned. Asked at each zoom.
    std::shared_ptr<UIScrollViewDelegate> delegate() const { return m_delegate.lock(); }
    void setDelegate(std::weak_ptr<UIScrollViewDelegate> delegate) { m_delegate = std::move(delegate); }

    /// Between the calls of a drag, and
    bool isDragging() const { return m_pan->isActive(); }
    /// between those of a pinch.
    bool isZooming() const { return m_pinch->isActive(); }
    /// Whether the limits leave anything to zoom.
    bool canZoom() const { return m_maximumZoomScale > m_minimumZoomScale; }

    /// Its own recognisers; the delegates they have are not to be replaced.
    UIPanGestureRecognizer& panGestureRecognizer() const { return *m_pan; }
    UIPinchGestureRecognizer& pinchGestureRecognizer() const { return *m_pinch; }

    void setFrame(const CGRect& frame) override;
    void setBounds(const CGRect& bounds) override;
    /// An open hand only while there is anything to scroll to.
    std::optional<UIPointerShape> pointerShape() const override;

private:
    class GestureRules;
    void handlePan();
    void handlePinch();
    UIView* zoomedView();
    CGPoint clampedOffset(CGPoint offset) const;
    void moveTo(CGPoint offset);

    std::weak_ptr<UIScrollViewDelegate> m_delegate;
    std::shared_ptr<GestureRules> m_rules;
    std::shared_ptr<UIPanGestureRecognizer> m_pan;
    std::shared_ptr<UIPinchGestureRecognizer> m_pinch;
    CGSize m_contentSize;
    UIEdgeInsets m_contentInset;
    double m_minimumZoomScale = 1;
    double m_maximumZoomScale = 1;
    double m_zoomScale = 1;
    double m_pinchStartScale = 1;
};

} // namespace lamina
