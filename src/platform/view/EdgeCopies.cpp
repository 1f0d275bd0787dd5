#include "platform/view/EdgeCopies.h"

#include "platform/base/MemoryWarning.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace lamina {

namespace {

/// Of a canvas one, but for what comes and goes.
constexpr std::size_t kMost = 2;

} // namespace

EdgeCopies::EdgeCopies()
    : m_memoryWarning(NotificationCenter::defaultCenter().addObserver(
          UIApplicationDidReceiveMemoryWarningNotification, [this](const Notification&) { m_entries.clear(); }))
{
}

SharedEdges EdgeCopies::of(std::vector<UIBezierPath> outlines, const CGContext& context)
{
    // For all of the bitmap at once, so that the next frame, which may show another part, finds them too. What casts a
    // shadow may be drawn beyond it.
    const IntRect area = context.clipBounds().unionWith({0, 0, context.width(), context.height()});
    const auto known = std::ranges::find_if(
        m_entries, [&](const Entry& entry) { return entry.outlines == outlines && entry.area == area; });
    if (known != m_entries.end()) {
        std::rotate(known, known + 1, m_entries.end());
        return m_entries.back().edges;
    }
    if (m_entries.size() == kMost)
        m_entries.erase(m_entries.begin());
    SharedEdges edges(outlines, area);
    m_entries.push_back({std::move(outlines), area, edges});
    return edges;
}

} // namespace lamina
