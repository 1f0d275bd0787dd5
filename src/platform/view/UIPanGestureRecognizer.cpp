#include "platform/view/UIPanGestureRecognizer.h"

#include "platform/view/UITouch.h"
#include "platform/view/UIView.h"

#include <algorithm>
#include <cmath>

namespace lamina {

namespace {

constexpr double kVelocityWindow = 0.1; // seconds

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

CGPoint UIPanGestureRecognizer::velocityInView(const UIView* view) const
{
    if (m_samples.size() < 2)
        return {};
    const Sample& first = m_samples.front();
    const Sample& last = m_samples.back();
    const double seconds = last.time - first.time;
    if (!(seconds > 0))
        return {};
    return vectorToView({(last.way.x - first.way.x) / seconds, (last.way.y - first.way.y) / seconds}, view);
}

void UIPanGestureRecognizer::setMinimumNumberOfTouches(std::size_t count)
{
    m_minimumTouches = std::max<std::size_t>(count, 1);
}

void UIPanGestureRecognizer::setMaximumNumberOfTouches(std::size_t count)
{
    m_maximumTouches = std::max<std::size_t>(count, 1);
}

bool UIPanGestureRecognizer::perform(CGPoint translation, const UIView* inView)
{
    return performSteps(std::nullopt, [&] { setTranslation(translation, inView); });
}

bool UIPanGestureRecognizer::acceptsTouch() const
{
    return !isActive() || numberOfTouches() < m_maximumTouches;
}

void UIPanGestureRecognizer::touchesBegan(const std::vector<UITouch*>&)
{
    if (isActive())
        return;
    m_approach = {};
    if (numberOfTouches() > m_maximumTouches)
        fail();
}

void UIPanGestureRecognizer::touchesMoved(const std::vector<UITouch*>& touches)
{
    // The middle's step as the mean of the fingers' own steps: the middle itself jumps when a finger comes or goes.
    const auto count = static_cast<double>(numberOfTouches());
    CGPoint step;
    for (const UITouch* touch : touches) {
        step.x += (touch->location.x - touch->previousLocation.x) / count;
        step.y += (touch->location.y - touch->previousLocation.y) / count;
    }
    const double time = touches.front()->timestamp;
    if (isActive()) {
        m_translation = {m_translation.x + step.x, m_translation.y + step.y};
        m_way = {m_way.x + step.x, m_way.y + step.y};
        recordSample(time);
        change();
        return;
    }
    m_approach = {m_approach.x + step.x, m_approach.y + step.y};
    if (numberOfTouches() >= m_minimumTouches && std::hypot(m_approach.x, m_approach.y) >= kHysteresis) {
        m_samples.clear();
        recordSample(time);
        recognize(State::Began);
    }
}

void UIPanGestureRecognizer::touchesEnded(const std::vector<UITouch*>& touches)
{
    m_approach = {};
    if (!isActive() || numberOfTouches() - touches.size() >= m_minimumTouches)
        return;
    recordSample(touches.front()->timestamp);
    end();
}

void UIPanGestureRecognizer::recordSample(double time)
{
    m_samples.push_back({time, m_way});
    while (m_samples.size() > 1 && m_samples.front().time < time - kVelocityWindow)
        m_samples.pop_front();
}

void UIPanGestureRecognizer::reset()
{
    m_approach = {};
    m_translation = {};
    m_way = {};
    m_samples.clear();
}

} // namespace lamina
