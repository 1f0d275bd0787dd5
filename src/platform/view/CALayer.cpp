#include "platform/view/CALayer.h"

#include "platform/view/LayerRenderer.h"

#include <algorithm>
#include <cmath>

namespace lamina {

namespace {

/// One count for all layers, so that a layer which takes another's place can't be mistaken for it.
std::uint64_t nextRevision()
{
    static std::uint64_t count = 0;
    return ++count;
}

} // namespace

CALayer::CALayer()
    : m_revision(nextRevision())
{
}

CALayer::~CALayer()
{
    for (const auto& layer : m_sublayers)
        layer->m_superlayer = nullptr;
    if (m_mask)
        m_mask->m_maskedLayer = nullptr;
}

template <class Value>
void CALayer::assign(Value& member, const Value& value)
{
    if (member == value)
        return;
    member = value;
    changed();
}

void CALayer::setBounds(const CGRect& bounds)
{
    if (isFinite(bounds.origin) && isFinite(bounds.size))
        assign(m_bounds, CGRect(bounds.origin, {std::max(0.0, bounds.size.width), std::max(0.0, bounds.size.height)}));
}

void CALayer::setPosition(CGPoint position)
{
    if (isFinite(position))
        assign(m_position, position);
}

void CALayer::setAffineTransform(const CGAffineTransform& transform)
{
    if (transform.isFinite())
        assign(m_transform, transform);
}

CGAffineTransform CALayer::placed(const CGAffineTransform& transform) const
{
    return CGAffineTransform::translation(-m_bounds.midX(), -m_bounds.midY())
        .concatenating(transform)
        .concatenating(CGAffineTransform::translation(m_position.x, m_position.y));
}

CGAffineTransform CALayer::transformToParent() const
{
    return placed(m_transform);
}

CGAffineTransform CALayer::shownTransformToParent() const
{
    return placed(m_presentation ? m_presentation->transform : m_transform);
}

void CALayer::setPresentation(const std::optional<Presentation>& presentation)
{
    assign(m_presentation, presentation);
}

void CALayer::setOpacity(double opacity)
{
    if (std::isfinite(opacity))
        assign(m_opacity, std::clamp(opacity, 0.0, 1.0));
}

void CALayer::setHidden(bool hidden)
{
    assign(m_hidden, hidden);
}

void CALayer::setBackgroundColor(const std::optional<UIColor>& color)
{
    assign(m_backgroundColor, color);
}

void CALayer::setCornerRadius(double radius)
{
    if (std::isfinite(radius))
        assign(m_cornerRadius, std::max(0.0, radius));
}

void CALayer::setBorderWidth(double width)
{
    if (std::isfinite(width))
        assign(m_borderWidth, std::max(0.0, width));
}

void CALayer::setBorderColor(const UIColor& color)
{
    assign(m_borderColor, color);
}

void CALayer::setMasksToBounds(bool masks)
{
    assign(m_masksToBounds, masks);
}

void CALayer::setSharesEdges(bool shares)
{
    assign(m_sharesEdges, shares);
}

void CALayer::setShadow(const Shadow& shadow)
{
    if (std::isfinite(shadow.opacity) && std::isfinite(shadow.radius) && isFinite(shadow.offset))
        assign(m_shadow, shadow);
}

void CALayer::setContents(const UIImage& image)
{
    if (m_contents.isIdenticalTo(image))
        return;
    m_contents = image;
    m_contentsRevision = nextRevision();
    changed();
}

void CALayer::setContentsMode(UIViewContentMode mode)
{
    assign(m_contentsMode, mode);
}

CGRect CALayer::contentsRect() const
{
    if (!m_contents)
        return {};
    const CGSize picture = m_contents.size();
    if (m_contentsMode == UIViewContentMode::ScaleToFill || !(picture.width > 0 && picture.height > 0))
        return m_bounds;
    double scale = 1;
    const double across = m_bounds.size.width / picture.width;
    const double down = m_bounds.size.height / picture.height;
    if (m_contentsMode == UIViewContentMode::ScaleAspectFit)
        scale = std::min(across, down);
    else if (m_contentsMode == UIViewContentMode::ScaleAspectFill)
        scale = std::max(across, down);
    // The side that decides the scale is the bounds' own, not a product that may miss it by a rounding.
    const bool fitted = m_contentsMode != UIViewContentMode::Center;
    const CGSize shown{fitted && scale == across ? m_bounds.size.width : picture.width * scale,
                       fitted && scale == down ? m_bounds.size.height : picture.height * scale};
    return {{m_bounds.minX() + (m_bounds.size.width - shown.width) / 2,
             m_bounds.minY() + (m_bounds.size.height - shown.height) / 2},
            shown};
}

CGRect CALayer::paintedBounds() const
{
    const CGRect painted = LayerRenderer::ownBounds(*this);
    return LayerRenderer::castsShadow(*this) ? painted.unionWith(LayerRenderer::shadowBounds(*this, painted)) : painted;
}

void CALayer::renderInContext(CGContext& context) const
{
    LayerRenderer(context).render(*this);
}

void CALayer::drawInContext(CGContext&) const {}

CALayer::ChangeObserver CALayer::observeChanges(std::function<void()> handler)
{
    auto observer = std::make_shared<const std::function<void()>>(std::move(handler));
    std::erase_if(m_observers, [](const auto& other) { return other.expired(); });
    m_observers.push_back(observer);
    return observer;
}

void CALayer::changed()
{
    m_revision = nextRevision();
    notifyObservers();
}

void CALayer::notifyObservers() const
{
    for (const CALayer* layer = this; layer; layer = layer->owner()) {
        for (std::size_t i = 0; i < layer->m_observers.size(); ++i) { // a handler may add or end observers
            if (const ChangeObserver observer = layer->m_observers[i].lock(); observer && *observer)
                (*observer)();
        }
    }
}

} // namespace lamina
