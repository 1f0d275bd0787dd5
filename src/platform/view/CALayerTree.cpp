#include "platform/base/Log.h"
#include "platform/view/CALayer.h"

#include <algorithm>
#include <cassert>

namespace lamina {

bool CALayer::isInside(const CALayer& layer) const
{
    const CALayer* step = this;
    while (step && step != &layer)
        step = step->owner();
    return step != nullptr;
}

void CALayer::addSublayer(std::shared_ptr<CALayer> layer)
{
    insertSublayer(std::move(layer), m_sublayers.size());
}

void CALayer::insertSublayer(std::shared_ptr<CALayer> layer, std::size_t index)
{
    const bool possible = layer && !isInside(*layer);
    assert(possible);
    if (!possible) {
        logError("a layer was to be put into itself, or is null");
        return;
    }
    layer->leaveOwner();
    layer->m_superlayer = this;
    const auto place = m_sublayers.begin() + static_cast<std::ptrdiff_t>(std::min(index, m_sublayers.size()));
    m_sublayers.insert(place, std::move(layer));
    notifyObservers();
}

void CALayer::removeFromSuperlayer()
{
    if (m_superlayer)
        leaveOwner();
}

void CALayer::setMask(std::shared_ptr<CALayer> mask)
{
    if (mask == m_mask)
        return;
    const bool possible = !mask || !isInside(*mask);
    assert(possible);
    if (!possible) {
        logError("a layer was to mask itself");
        return;
    }
    if (mask)
        mask->leaveOwner();
    if (m_mask)
        m_mask->m_maskedLayer = nullptr;
    m_mask = std::move(mask);
    if (m_mask)
        m_mask->m_maskedLayer = this;
    changed();
}

void CALayer::leaveOwner()
{
    const std::shared_ptr<CALayer> self = shared_from_this(); // the owner may hold the last reference
    if (CALayer* const parent = m_superlayer) {
        m_superlayer = nullptr;
        std::erase(parent->m_sublayers, self);
        parent->notifyObservers();
    } else if (CALayer* const masked = m_maskedLayer) {
        masked->setMask(nullptr);
    }
}

} // namespace lamina
