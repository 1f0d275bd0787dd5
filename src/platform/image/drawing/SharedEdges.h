#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/image/drawing/UIBezierPath.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace lamina {

/// Outlines that meet: how much each covers of the device's pixels, and which pixels are cut by the edges of several.
/// What CGContext::drawSharingEdges draws through; made once, it may be drawn through often. A cheap value, usable from
/// any thread.
class SharedEdges {
public:
    /// `outlines`: in device pixels, lowest first, each filled by its own rule and antialiased; open parts are closed.
    /// Nothing is let through outside `area`, nor where memory is short. Takes a byte for every pixel of an outline's
    /// box in the area.
    SharedEdges(const std::vector<UIBezierPath>& outlines, const IntRect& area);

    /// Outlines.
    std::size_t count() const;

    struct Impl; ///< what contexts know of it

private:
    friend class CGContext;
    std::shared_ptr<const Impl> m_impl;
};

} // namespace lamina
