#pragma once

#include "platform/base/CGAffineTransform.h"
#include "platform/base/CGGeometry.h"
#include "platform/image/drawing/CoverageMask_p.h"
#include "platform/image/drawing/UIBezierPath.h"

#include <cstdint>
#include <vector>

namespace lamina {

/// Turns outlines into coverage: for every pixel the exact area under the outline, by summing up along each row the
/// signed areas that the edges cut off. Where the non-zero rule is in force the sum is cut to 1, by the even-odd rule
/// it is folded.
class Rasterizer {
public:
    struct Rules {
        bool evenOdd = false;
        bool antialias = true; ///< false: a pixel is covered when its centre is
    };

    /// Adds a closed polygon in device pixels. One with a place that is not a number adds nothing.
    void addPolygon(const std::vector<CGPoint>& corners);
    /// Adds the path, flattened to a hundredth of a device pixel.
    void addPath(const UIBezierPath& path, const CGAffineTransform& toDevice);

    /// The pixels touched, saturated far outside any device.
    IntRect bounds() const;
    /// Coverage inside `area`, which should not be larger than needed; rows are shared out to the worker pool. Empty
    /// when nothing is covered or memory is short.
    CoverageMask render(const IntRect& area, const Rules& rules) const;

private:
    struct Edge {
        CGPoint top;
        CGPoint bottom;
        float direction; ///< +1 downwards, -1 upwards
    };
    void renderRows(const IntRect& area, const Rules& rules, const std::vector<Edge>& edges, int begin, int end,
                    std::uint8_t* out) const;

    std::vector<Edge> m_edges;
};

} // namespace lamina
