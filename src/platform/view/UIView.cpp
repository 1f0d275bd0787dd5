#include "platform/view/UIView.h"

#include "platform/view/LayerMotion_p.h"
#include "platform/view/UIGestureRecognizer.h"

#include <cassert>
#include <cmath>
#include <utility>

namespace lamina {

namespace {

/// Where touches stop being felt.
constexpr double kLeastTouchableAlpha = 0.01;

/// The size whose box under `t` is `box`: |a|·w + |c|·h = W, |b|·w + |d|·h = H. Falls back to the sides divided by the
/// scale of the axes, and keeps a side that the transform flattens to nothing.
CGSize sizeWithBox(CGSize box, const CGAffineTransform& t, CGSize present)
{
    const double a = std::abs(t.a);
    const double b = std::abs(t.b);
    const double c = std::abs(t.c);
    const double d = std::abs(t.d);
    if (b == 0 && c == 0 && a == 1 && d == 1)
        return box;
    const double determinant = a * d - b * c;
    if (std::abs(determinant) > 1e-9 * (a + c) * (b + d)) {
        const CGSize size{(box.width * d - box.height * c) / determinant,
                          (box.height * a - box.width * b) / determinant};
        if (size.width >= 0 && size.height >= 0)
            return size;
    }
    const double across = std::hypot(a, b);
    const double down = std::hypot(c, d);
    return {across > 0 ? box.width / across : present.width, down > 0 ? box.height / down : present.height};
}

/// From `view` to `ancestor` (null: to the root).
CGAffineTransform transformUpTo(const UIView& view, const UIView* ancestor)
{
    CGAffineTransform transform;
    for (const UIView* step = &view; step != ancestor && step->superview(); step = step->superview())
        transform = transform.concatenating(step->layer().transformToParent());
    return transform;
}

} // namespace

UIView::UIView(const CGRect& frame)
    : UIView(frame, std::make_shared<CALayer>())
{
}

UIView::UIView(const CGRect& frame, std::shared_ptr<CALayer> layer)
    : m_layer(std::move(layer))
{
    UIView::setFrame(frame);
}

UIView::~UIView()
{
    for (const auto& recognizer : m_gestureRecognizers)
        recognizer->viewDestroyed();
    for (const auto& view : m_subviews) {
        view->m_superview = nullptr;
        view->m_layer->removeFromSuperlayer(); // our layer may be held by others
    }
    m_layer->removeFromSuperlayer();
}

CGRect UIView::frame() const
{
    const CGSize size = bounds().size;
    if (transform().isIdentity())
        return {{center().x - size.width / 2, center().y - size.height / 2}, size};
    return m_layer->transformToParent().boundingBox(bounds());
}

void UIView::setFrame(const CGRect& frame)
{
    const CGAffineTransform t = transform();
    changeBounds({bounds().origin, sizeWithBox(frame.size, t, bounds().size)});
    setCenter({frame.midX() - t.tx, frame.midY() - t.ty});
}

void UIView::setBounds(const CGRect& bounds)
{
    changeBounds(bounds);
}

void UIView::changeBounds(const CGRect& bounds)
{
    const CGSize before = this->bounds().size;
    prepareChange(Bounds, bounds != this->bounds());
    m_layer->setBounds(bounds);
    const CGSize after = this->bounds().size;
    if (after == before || !m_autoresizesSubviews)
        return;
    for (const auto& child : std::vector(m_subviews)) // an override may change the tree
        child->followSuperview(before, after);
}

void UIView::followSuperview(CGSize before, CGSize after)
{
    if (m_autoresizingMask == UIViewAutoresizing::None)
        return;
    const CGRect own = bounds();
    const CGPoint topLeft{center().x - own.size.width / 2, center().y - own.size.height / 2};
    const CGRect place = autoresized({topLeft, own.size}, m_autoresizingMask, before, after);
    setBounds({own.origin, place.size});
    setCenter({place.midX(), place.midY()});
}

void UIView::setCenter(CGPoint center)
{
    prepareChange(Center, center != this->center());
    m_layer->setPosition(center);
}

void UIView::setTransform(const CGAffineTransform& transform)
{
    const CALayer::Presentation seen = m_layer->shown();
    const bool differs = transform != this->transform();
    prepareChange(Transform, differs);
    m_layer->setAffineTransform(transform);
    if (const UIViewMotion* const motion = motionOf(Transform, differs))
        LayerMotion::moveTransform(*m_layer, seen.transform, *motion);
}

void UIView::setAlpha(double alpha)
{
    const CALayer::Presentation seen = m_layer->shown();
    const bool differs = alpha != this->alpha();
    prepareChange(Alpha, differs);
    m_layer->setOpacity(alpha);
    if (const UIViewMotion* const motion = motionOf(Alpha, differs))
        LayerMotion::moveOpacity(*m_layer, seen.opacity, *motion);
}

void UIView::setBackgroundColor(const std::optional<UIColor>& color)
{
    prepareChange(BackgroundColor, color != backgroundColor());
    m_layer->setBackgroundColor(color);
}

void UIView::prepareChange(AnimatedPart part, bool differs)
{
    if (!m_animatables && UIViewAnimatable::isRecording())
        m_animatables = std::make_unique<std::array<UIViewAnimatable, kAnimatedParts>>();
    if (m_animatables)
        (*m_animatables)[part].set(differs);
}

/// How the change that was just made is to be seen; null: what is seen stays on its way, or never was on one.
const UIViewMotion* UIView::motionOf(AnimatedPart part, bool differs) const
{
    const bool moves = m_animatables && (differs || UIViewAnimatable::isRecording());
    return moves ? &(*m_animatables)[part].motion() : nullptr;
}

bool UIView::pointInside(CGPoint point) const
{
    return bounds().contains(point);
}

UIView* UIView::hitTest(CGPoint point)
{
    if (!m_userInteractionEnabled || isHidden() || alpha() < kLeastTouchableAlpha || !pointInside(point))
        return nullptr;
    const auto children = m_subviews; // an override may change the tree
    for (auto child = children.rbegin(); child != children.rend(); ++child) {
        const auto toChild = (*child)->m_layer->transformToParent().inverted();
        if (!toChild)
            continue;
        if (UIView* const hit = (*child)->hitTest(toChild->apply(point)))
            return hit;
    }
    return this;
}

CGPoint UIView::convertPointToView(CGPoint point, const UIView* view) const
{
    assert(!view || &view->rootView() == &rootView());
    const UIView* shared = view; // the nearest view above both: what stands between it and the root plays no part
    while (shared && !isDescendantOf(*shared))
        shared = shared->superview();
    const CGPoint common = transformUpTo(*this, shared).apply(point);
    if (!view || view == shared)
        return common;
    const auto down = transformUpTo(*view, shared).inverted();
    return down ? down->apply(common) : CGPoint{};
}

CGPoint UIView::convertPointFromView(CGPoint point, const UIView* view) const
{
    return (view ? *view : rootView()).convertPointToView(point, this);
}

CGAffineTransform UIView::transformToRoot() const
{
    return transformUpTo(*this, nullptr);
}

} // namespace lamina
