#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/base/NotificationCenter.h"
#include "platform/image/drawing/CGContext.h"
#include "platform/image/drawing/SharedEdges.h"
#include "platform/image/drawing/UIBezierPath.h"

#include <vector>

namespace lamina {

/// The coverage of masks that share edges, for as long as they stay: they are found once, and not at every frame of
/// what moves behind them. Holds those of a few layers; lets them go when memory is short. Main thread.
class EdgeCopies {
public:
    EdgeCopies();
    EdgeCopies(const EdgeCopies&) = delete;
    EdgeCopies& operator=(const EdgeCopies&) = delete;

    /// Of outlines in device pixels, lowest first, for all that the context's clip lets through now.
    SharedEdges of(std::vector<UIBezierPath> outlines, const CGContext& context);

private:
    struct Entry {
        std::vector<UIBezierPath> outlines;
        IntRect area;
        SharedEdges edges;
    };
    std::vector<Entry> m_entries; ///< the latest last
    NotificationObserver m_memoryWarning;
};

} // namespace lamina
