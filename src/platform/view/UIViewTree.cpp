#include "platform/base/Log.h"
#include "platform/view/UIView.h"

#include <algorithm>
#include <cassert>

namespace lamina {

UIView* UIView::viewWithTag(int tag)
{
    if (m_tag == tag)
        return this;
    for (const auto& view : m_subviews) {
        if (UIView* const found = view->viewWithTag(tag))
            return found;
    }
    return nullptr;
}

void UIView::addSubview(std::shared_ptr<UIView> view)
{
    insertSubview(std::move(view), m_subviews.size());
}

void UIView::insertSubview(std::shared_ptr<UIView> view, std::size_t index)
{
    const bool possible = view && !isDescendantOf(*view);
    assert(possible);
    if (!possible) {
        logError("a view was to be put into itself, or is null");
        return;
    }
    UIView* const former = view->m_superview;
    if (former)
        std::erase(former->m_subviews, view);
    const auto place = m_subviews.begin() + static_cast<std::ptrdiff_t>(std::min(index, m_subviews.size()));
    // The layer may have siblings that belong to no view, so its place is found by the layer that it goes below.
    const std::shared_ptr<CALayer> above = place == m_subviews.end() ? nullptr : (*place)->m_layer;
    view->m_superview = this;
    m_subviews.insert(place, view);
    view->m_layer->removeFromSuperlayer();
    const auto& layers = m_layer->sublayers();
    m_layer->insertSublayer(view->m_layer,
                            static_cast<std::size_t>(std::find(layers.begin(), layers.end(), above) - layers.begin()));
    if (former != this)
        view->didMoveToSuperview();
}

void UIView::bringSubviewToFront(UIView& view)
{
    if (view.m_superview == this)
        insertSubview(view.shared_from_this(), m_subviews.size());
}

void UIView::removeFromSuperview()
{
    UIView* const parent = m_superview;
    if (!parent)
        return;
    const std::shared_ptr<UIView> self = shared_from_this(); // the parent may hold the last reference
    m_superview = nullptr;
    std::erase(parent->m_subviews, self);
    m_layer->removeFromSuperlayer();
    didMoveToSuperview();
}

bool UIView::isDescendantOf(const UIView& view) const
{
    const UIView* step = this;
    while (step && step != &view)
        step = step->m_superview;
    return step != nullptr;
}

const UIView& UIView::rootView() const
{
    const UIView* view = this;
    while (view->m_superview)
        view = view->m_superview;
    return *view;
}

UIView& UIView::rootView()
{
    UIView* view = this;
    while (view->m_superview)
        view = view->m_superview;
    return *view;
}

} // namespace lamina
