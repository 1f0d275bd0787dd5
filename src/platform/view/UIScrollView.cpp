#include "platform/view/UIScrollView.h"

#include "platform/base/CGGeometry.h"
#include "platform/base/DispatchQueue.h"
#include "platform/view/UIGestureRecognizer.h"
#include "platform/view/UIPanGestureRecognizer.h"
#include "platform/view/UIPinchGestureRecognizer.h"
#include "platform/view/UIPointerShape.h"

#include <algorithm>
#include <cmath>

namespace lamina {

UIView* UIScrollViewDelegate::viewForZoomingInScrollView(UIScrollView&)
{
    return nullptr;
}

void UIScrollViewDelegate::scrollViewWillBeginDragging(UIScrollView&) {}
void UIScrollViewDelegate::scrollViewDidScroll(UIScrollView&) {}
void UIScrollViewDelegate::scrollViewDidEndDragging(UIScrollView&, bool) {}
void UIScrollViewDelegate::scrollViewDidEndScrollingAnimation(UIScrollView&) {}
void UIScrollViewDelegate::scrollViewWillBeginZooming(UIScrollView&, UIView*) {}
void UIScrollViewDelegate::scrollViewDidZoom(UIScrollView&) {}
void UIScrollViewDelegate::scrollViewDidEndZooming(UIScrollView&, UIView*, double) {}

/// Its two gestures go together, and leave the fingers to others where there is nothing to move.
class UIScrollView::GestureRules : public UIGestureRecognizerDelegate {
public:
    bool gestureRecognizerShouldBegin(UIGestureRecognizer& recognizer) override
    {
        auto* view = dynamic_cast<UIScrollView*>(recognizer.view());
        if (!view)
            return false;
        if (&recognizer == view->m_pinch.get())
            return view->canZoom() && view->zoomedView();
        return view->canZoom() || view->canScroll();
    }

    bool gestureRecognizer(UIGestureRecognizer& recognizer, UIGestureRecognizer& other) override
    {
        const auto* view = dynamic_cast<const UIScrollView*>(recognizer.view());
        return view && (&other == view->m_pan.get() || &other == view->m_pinch.get());
    }
};

UIScrollView::UIScrollView(const CGRect& frame)
    : UIView(frame)
    , m_rules(std::make_shared<GestureRules>())
    , m_pan(std::make_shared<UIPanGestureRecognizer>())
    , m_pinch(std::make_shared<UIPinchGestureRecognizer>())
{
    setClipsToBounds(true);
    m_pan->setDelegate(m_rules);
    m_pan->addAction([this](UIGestureRecognizer&) { handlePan(); });
    addGestureRecognizer(m_pan);
    m_pinch->setDelegate(m_rules);
    m_pinch->addAction([this](UIGestureRecognizer&) { handlePinch(); });
    addGestureRecognizer(m_pinch);
}

UIScrollView::~UIScrollView() = default;

CGPoint UIScrollView::minimumContentOffset() const
{
    return {-m_contentInset.left, -m_contentInset.top};
}

CGPoint UIScrollView::maximumContentOffset() const
{
    const CGSize visible = bounds().size;
    const CGPoint least = minimumContentOffset();
    return {std::max(least.x, m_contentSize.width + m_contentInset.right - visible.width),
            std::max(least.y, m_contentSize.height + m_contentInset.bottom - visible.height)};
}

bool UIScrollView::canScroll() const
{
    return canScrollDown() || maximumContentOffset().x > minimumContentOffset().x;
}

bool UIScrollView::canScrollDown() const
{
    return maximumContentOffset().y > minimumContentOffset().y;
}

CGPoint UIScrollView::clampedOffset(CGPoint offset) const
{
    const CGPoint least = minimumContentOffset();
    const CGPoint most = maximumContentOffset();
    const CGPoint wanted = isFinite(offset) ? offset : CGPoint{};
    return {std::max(least.x, std::min(wanted.x, most.x)), std::max(least.y, std::min(wanted.y, most.y))};
}

void UIScrollView::moveTo(CGPoint offset)
{
    const CGPoint target = clampedOffset(offset);
    if (target == contentOffset())
        return;
    UIView::setBounds({target, bounds().size});
    if (const auto listener = delegate())
        listener->scrollViewDidScroll(*this);
}

void UIScrollView::setContentOffset(CGPoint offset)
{
    moveTo(offset);
}

void UIScrollView::setContentOffset(CGPoint offset, bool animated)
{
    const CGPoint former = contentOffset();
    moveTo(offset);
    if (!animated || contentOffset() == former)
        return;
    DispatchQueue::main().async([weak = weak_from_this()] {
        const auto self = std::static_pointer_cast<UIScrollView>(weak.lock());
        if (const auto listener = self ? self->delegate() : nullptr)
            listener->scrollViewDidEndScrollingAnimation(*self);
    });
}

void UIScrollView::setContentInset(const UIEdgeInsets& inset)
{
    if (!inset.isFinite())
        return;
    m_contentInset = inset;
    moveTo(contentOffset());
}

void UIScrollView::setContentSize(CGSize size)
{
    const auto side = [](double length) { return length > 0 && std::isfinite(length) ? length : 0.0; };
    m_contentSize = {side(size.width), side(size.height)};
    moveTo(contentOffset());
}

void UIScrollView::setFrame(const CGRect& frame)
{
    UIView::setFrame(frame);
    moveTo(contentOffset());
}

void UIScrollView::setBounds(const CGRect& bounds)
{
    UIView::setBounds({contentOffset(), bounds.size});
    moveTo(bounds.origin);
}

void UIScrollView::setMinimumZoomScale(double scale)
{
    if (!(scale > 0) || !std::isfinite(scale))
        return;
    m_minimumZoomScale = scale;
    setZoomScale(m_zoomScale);
}

void UIScrollView::setMaximumZoomScale(double scale)
{
    if (!(scale > 0) || !std::isfinite(scale))
        return;
    m_maximumZoomScale = scale;
    setZoomScale(m_zoomScale);
}

void UIScrollView::setZoomScale(double scale)
{
    zoomToScale(scale, {bounds().midX(), bounds().midY()});
}

void UIScrollView::zoomToScale(double scale, CGPoint anchor)
{
    const auto self = weak_from_this().lock();
    const auto listener = delegate();
    UIView* const zoomed = zoomedView();
    if (!zoomed || std::isnan(scale) || !std::isfinite(anchor.x) || !std::isfinite(anchor.y))
        return;
    scale = std::max(m_minimumZoomScale, std::min(scale, m_maximumZoomScale));
    if (scale == m_zoomScale)
        return;
    const CGPoint offset = contentOffset();
    const double factor = scale / m_zoomScale;
    m_zoomScale = scale;
    const CGSize natural = zoomed->bounds().size;
    m_contentSize = {natural.width * scale, natural.height * scale};
    zoomed->setTransform(CGAffineTransform::scaling(scale, scale));
    zoomed->setCenter({m_contentSize.width / 2, m_contentSize.height / 2});
    // The anchor's distance from the visible corner stays, what lies under it has moved away from the content's origin.
    moveTo({anchor.x * factor - (anchor.x - offset.x), anchor.y * factor - (anchor.y - offset.y)});
    listener->scrollViewDidZoom(*this);
}

UIView* UIScrollView::zoomedView()
{
    const auto listener = delegate();
    return listener ? listener->viewForZoomingInScrollView(*this) : nullptr;
}

std::optional<UIPointerShape> UIScrollView::pointerShape() const
{
    const auto shape = UIView::pointerShape();
    return shape == UIPointerShape::OpenHand && !canScroll() ? std::nullopt : shape;
}

// A delegate may end the gesture in the call for its beginning; the end call has come then.

void UIScrollView::handlePan()
{
    const auto self = weak_from_this().lock();
    const auto listener = delegate();
    if (!m_pan->isActive()) {
        if (listener)
            listener->scrollViewDidEndDragging(*this, false);
        return;
    }
    if (listener && m_pan->state() == UIGestureRecognizerState::Began)
        listener->scrollViewWillBeginDragging(*this);
    const CGPoint step = m_pan->translationInView(this);
    m_pan->setTranslation({}, this);
    const CGPoint offset = contentOffset();
    moveTo({offset.x - step.x, offset.y - step.y});
}

void UIScrollView::handlePinch()
{
    const auto self = weak_from_this().lock();
    const auto listener = delegate();
    if (!m_pinch->isActive()) {
        if (listener)
            listener->scrollViewDidEndZooming(*this, zoomedView(), m_zoomScale);
        return;
    }
    if (m_pinch->state() == UIGestureRecognizerState::Began) {
        m_pinchStartScale = m_zoomScale;
        if (listener)
            listener->scrollViewWillBeginZooming(*this, zoomedView());
    }
    if (m_pinch->isActive())
        zoomToScale(m_pinchStartScale * m_pinch->scale(), m_pinch->locationInView(this));
}

} // namespace lamina
