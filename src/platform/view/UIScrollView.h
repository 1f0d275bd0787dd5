#pragma once

#include "platform/view/UIView.h"

#include <memory>
#include <utility>

namespace lamina {

class UIPanGestureRecognizer;
class UIPinchGestureRecognizer;
class UIScrollView;

/// Every operation has a default. Main thread.
class UIScrollViewDelegate {
public:
    virtual ~UIScrollViewDelegate() = default;
    /// The child that zooming scales; null: no zooming.
    virtual UIView* viewForZoomingInScrollView(UIScrollView& scrollView);
    /// After the content offset has changed.
    virtual void scrollViewDidScroll(UIScrollView& scrollView);
    /// After the zoom scale has changed; content size and offset are settled by then.
    virtual void scrollViewDidZoom(UIScrollView& scrollView);
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
    /// Clamped per axis to [0, max(0, content size - bounds' size)]; not finite counts as 0.
    void setContentOffset(CGPoint offset);
    /// Points; default zero. Negative or not finite sides count as 0. The offset is clamped to the new range.
    CGSize contentSize() const { return m_contentSize; }
    void setContentSize(CGSize size);
    /// The largest offset in each axis.
    CGPoint maximumContentOffset() const;

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

    /// Whether the limits leave anything to zoom.
    bool canZoom() const { return m_maximumZoomScale > m_minimumZoomScale; }

    /// Its own recognisers; the delegates they have are not to be replaced.
    UIPanGestureRecognizer& panGestureRecognizer() const { return *m_pan; }
    UIPinchGestureRecognizer& pinchGestureRecognizer() const { return *m_pinch; }

    void setFrame(const CGRect& frame) override;
    void setBounds(const CGRect& bounds) override;

private:
    class GestureRules;
    void handlePan();
    void handlePinch();
    CGPoint clampedOffset(CGPoint offset) const;
    void moveTo(CGPoint offset);

    std::weak_ptr<UIScrollViewDelegate> m_delegate;
    std::shared_ptr<GestureRules> m_rules;
    std::shared_ptr<UIPanGestureRecognizer> m_pan;
    std::shared_ptr<UIPinchGestureRecognizer> m_pinch;
    CGSize m_contentSize;
    double m_minimumZoomScale = 1;
    double m_maximumZoomScale = 1;
    double m_zoomScale = 1;
    double m_pinchStartScale = 1;
};

} // namespace lamina
