#include "platform/view/UIPanGestureRecognizer.h"

#include "platform/base/CGAffineTransform.h"
#include "platform/base/CGGeometry.h"
#include "platform/view/UITouch.h"
#include "platform/view/UIView.h"

#include <cmath>
#include <optional>
#include <vector>

namespace lamina {

namespace {

/// A way made in root coordinates, told in those of `view`; zero where the view is flattened.
CGPoint vectorToView(CGPoint way, const UIView* view)
{
    if (!view)
        return way;
    const auto inverse = view->transformToRoot().inverted();
    if (!inverse)
        return {};
    return {inverse->a * way.x + inverse->c * way.y, inverse->b * way.x + inverse->d * way.y};
}

CGPoint vectorFromView(CGPoint way, const UIView* view)
{
    if (!view)
        return way;
    const CGAffineTransform t = view->transformToRoot();
    return {t.a * way.x + t.c * way.y, t.b * way.x + t.d * way.y};
}

} // namespace

CGPoint UIPanGestureRecognizer::translationInView(const UIView* view) const
{
    return vectorToView(m_translation, view);
}

void UIPanGestureRecognizer::setTranslation(CGPoint translation, const UIView* inView)
{
    const CGPoint way = vectorFromView(translation, inView);
    if (std::isfinite(way.x) && std::isfinite(way.y))
        m_translation = way;
}

bool UIPanGestureRecognizer::perform(CGPoint translation, const UIView* inView)
{
    return performSteps(std::nullopt, [&] { setTranslation(translation, inView); });
}

void UIPanGestureRecognizer::touchesBegan(const std::vector<UITouch*>&)
{
    m_approach = m_apart = {};
}

/// The middle's step as the mean of the fingers' own steps: the middle itself jumps when a finger comes or goes.
CGPoint UIPanGestureRecognizer::stepOf(const std::vector<UITouch*>& moved)
{
    const auto count = static_cast<double>(numberOfTouches());
    CGPoint step;
    for (const UITouch* touch : moved) {
        const CGPoint way{touch->location.x - touch->previousLocation.x, touch->location.y - touch->previousLocation.y};
        step = {step.x + way.x / count, step.y + way.y / count};
        const double side = touch == touches().front().get() ? -1 : 1;
        m_apart = {m_apart.x + side * way.x, m_apart.y + side * way.y};
    }
    return step;
}

bool UIPanGestureRecognizer::isUnderWay() const
{
    const double along = std::hypot(m_approach.x, m_approach.y);
    const bool pinched = m_restarts && numberOfTouches() > 1 && std::hypot(m_apart.x, m_apart.y) > along;
    return along >= kHysteresis && !pinched;
}

void UIPanGestureRecognizer::touchesMoved(const std::vector<UITouch*>& touches)
{
    const CGPoint step = stepOf(touches);
    if (isActive()) {
        m_translation = {m_translation.x + step.x, m_translation.y + step.y};
        change();
        return;
    }
    m_approach = {m_approach.x + step.x, m_approach.y + step.y};
    if (isUnderWay())
        recognize(State::Began);
}

void UIPanGestureRecognizer::touchesEnded(const std::vector<UITouch*>& touches)
{
    m_approach = m_apart = {};
    if (numberOfTouches() == touches.size())
        end();
}

void UIPanGestureRecognizer::reset()
{
    m_approach = m_apart = {};
    m_translation = {};
}

} // namespace lamina
