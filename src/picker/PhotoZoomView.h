#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/view/UIImageView.h"
#include "platform/view/UIScrollView.h"
#include "platform/view/UIView.h"

#include <functional>
#include <memory>

namespace lamina {

/// A photo to be looked at: at zoom 1 all of it is seen in the middle of an area of the view; fingers, wheel and
/// touchpad go nearer and drag it about. Main thread.
class PhotoZoomView : public UIView, public UIScrollViewDelegate {
public:
    static constexpr double kMaximumZoom = 8;
    static constexpr double kCloseUp = 2.5; ///< where a double tap goes

    /// Without a photo; the area is all of it.
    static std::shared_ptr<PhotoZoomView> make(const CGRect& frame);

    /// The scale has changed, and
    std::function<void()> didZoom;
    /// a zoom has come to its end, at that scale.
    std::function<void(double scale)> didEndZooming;

    UIScrollView& scrollView() const { return *m_scrollView; }
    UIImageView& photoImageView() const { return *m_photoImageView; }

    /// Another photo, which is seen whole at first: a picture that takes the proportions of `size` (none: those of its
    /// own), coarse or not. The empty picture shows nothing.
    void showPhoto(const UIImage& image, CGSize size = {});
    /// A better picture of the same photo; the zoom stays.
    void improvePhoto(const UIImage& image, CGSize size = {});

    /// The part of the view that the photo takes, in its own coordinates; what lies under its middle stays there.
    void setArea(const CGRect& area);
    /// The same, and the photo is seen moving there.
    void setArea(const CGRect& area, double duration);

    double zoomScale() const { return m_scrollView->zoomScale(); }
    /// About the middle of the area, within the limits.
    void zoomBy(double factor);
    /// Close up to the point (own coordinates) or, when zoomed already, all the way out.
    void toggleZoom(CGPoint point);
    /// Moves the photo by so many points, as far as it goes.
    void nudge(CGPoint step);
    /// The photo stands aside by so many points, for as long as a finger pulls it.
    void setAside(double x);
    /// It comes from there to its place, and into sight if it was not.
    void comeFrom(double x, double alpha, double duration);

    UIView* viewForZoomingInScrollView(UIScrollView& scrollView) override;
    void scrollViewDidZoom(UIScrollView& scrollView) override;
    void scrollViewDidEndZooming(UIScrollView& scrollView, UIView* view, double scale) override;

private:
    explicit PhotoZoomView(const CGRect& frame);
    void layOut();
    void centre();
    CGSize fittingSize() const;
    CGRect photoRect() const;

    std::shared_ptr<UIScrollView> m_scrollView;
    std::shared_ptr<UIImageView> m_photoImageView;
    CGSize m_photoSize;
    CGRect m_area;
};

} // namespace lamina
