#include "picker/PhotoZoomView.h"

#include "platform/base/CGAffineTransform.h"
#include "platform/view/UIViewAnimation.h"

#include <algorithm>

namespace lamina {

std::shared_ptr<PhotoZoomView> PhotoZoomView::make(const CGRect& frame)
{
    std::shared_ptr<PhotoZoomView> view(new PhotoZoomView(frame));
    view->m_scrollView->setDelegate(std::shared_ptr<UIScrollViewDelegate>(view, view.get()));
    return view;
}

PhotoZoomView::PhotoZoomView(const CGRect& frame)
    : UIView(frame)
    , m_scrollView(std::make_shared<UIScrollView>(bounds()))
    , m_photoImageView(std::make_shared<UIImageView>())
    , m_area(bounds())
{
    setOpaque(false);
    m_scrollView->setOpaque(false);
    m_scrollView->setMaximumZoomScale(kMaximumZoom);
    m_photoImageView->setContentMode(UIViewContentMode::ScaleAspectFit);
    m_scrollView->addSubview(m_photoImageView);
    addSubview(m_scrollView);
}

void PhotoZoomView::showPhoto(const UIImage& image, CGSize size)
{
    m_scrollView->setZoomScale(1);
    improvePhoto(image, size);
}

void PhotoZoomView::improvePhoto(const UIImage& image, CGSize size)
{
    const bool sized = size.width > 0 && size.height > 0;
    m_photoSize = sized ? size : image.size();
    m_photoImageView->setImage(image);
    layOut();
}

void PhotoZoomView::setArea(const CGRect& area)
{
    m_area = area;
    layOut();
}

void PhotoZoomView::setArea(const CGRect& area, double duration)
{
    const CGRect before = photoRect();
    setArea(area);
    const CGRect after = photoRect();
    if (before.isEmpty() || after.isEmpty())
        return;
    // It stands in its new place at once, and is drawn on its way from the old one.
    const double scale = before.size.width / after.size.width;
    const CGPoint middle = m_scrollView->center();
    m_scrollView->setTransform({scale, 0, 0, scale, before.midX() - middle.x - scale * (after.midX() - middle.x),
                                before.midY() - middle.y - scale * (after.midY() - middle.y)});
    animate(duration, 0, {}, [this] { m_scrollView->setTransform({}); });
}

CGSize PhotoZoomView::fittingSize() const
{
    if (!(m_photoSize.width > 0 && m_photoSize.height > 0) || m_area.isEmpty())
        return {};
    const double scale = std::min(m_area.size.width / m_photoSize.width, m_area.size.height / m_photoSize.height);
    return {m_photoSize.width * scale, m_photoSize.height * scale};
}

void PhotoZoomView::layOut()
{
    const CGSize former = m_scrollView->contentSize();
    const CGRect seen = m_scrollView->bounds();
    const CGSize fitting = fittingSize();
    const double scale = zoomScale();
    m_scrollView->setTransform({});
    m_scrollView->setFrame(m_area);
    m_photoImageView->setBounds({{}, fitting});
    m_photoImageView->setCenter({fitting.width * scale / 2, fitting.height * scale / 2});
    m_scrollView->setContentSize({fitting.width * scale, fitting.height * scale});
    centre();
    if (former.width > 0 && former.height > 0)
        m_scrollView->setContentOffset({seen.midX() / former.width * fitting.width * scale - m_area.size.width / 2,
                                        seen.midY() / former.height * fitting.height * scale - m_area.size.height / 2});
}

/// What is smaller than the area stands in its middle.
void PhotoZoomView::centre()
{
    const CGSize content = m_scrollView->contentSize();
    const double x = std::max(0.0, (m_area.size.width - content.width) / 2);
    const double y = std::max(0.0, (m_area.size.height - content.height) / 2);
    m_scrollView->setContentInset({y, x, y, x});
}

CGRect PhotoZoomView::photoRect() const
{
    const CGPoint offset = m_scrollView->contentOffset();
    return {m_area.origin.x - offset.x, m_area.origin.y - offset.y, m_scrollView->contentSize().width,
            m_scrollView->contentSize().height};
}

void PhotoZoomView::zoomBy(double factor)
{
    m_scrollView->setZoomScale(zoomScale() * factor);
    scrollViewDidEndZooming(*m_scrollView, nullptr, zoomScale());
}

void PhotoZoomView::toggleZoom(CGPoint point)
{
    m_scrollView->zoomToScale(zoomScale() > 1 ? 1 : kCloseUp, m_scrollView->convertPointFromView(point, this));
    scrollViewDidEndZooming(*m_scrollView, nullptr, zoomScale());
}

void PhotoZoomView::nudge(CGPoint step)
{
    const CGPoint offset = m_scrollView->contentOffset();
    m_scrollView->setContentOffset({offset.x - step.x, offset.y - step.y});
}

void PhotoZoomView::setAside(double x)
{
    m_scrollView->setTransform(CGAffineTransform::translation(x, 0));
}

void PhotoZoomView::comeFrom(double x, double alpha, double duration)
{
    setAside(x);
    m_scrollView->setAlpha(alpha);
    animate(duration, 0, {.curve = UIViewAnimationCurve::EaseOut}, [this] {
        setAside(0);
        m_scrollView->setAlpha(1);
    });
}

UIView* PhotoZoomView::viewForZoomingInScrollView(UIScrollView&)
{
    return m_photoImageView.get();
}

void PhotoZoomView::scrollViewDidZoom(UIScrollView&)
{
    centre();
    if (didZoom)
        didZoom();
}

void PhotoZoomView::scrollViewDidEndZooming(UIScrollView&, UIView*, double scale)
{
    if (didEndZooming)
        didEndZooming(scale);
}

} // namespace lamina
