#pragma once

#include "platform/view/CALayer.h"

#include "platform/base/CGAffineTransform.h"
#include "platform/base/CGGeometry.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace lamina {

/// What decides the pixels of one layer in a frame, short enough to be kept and compared.
struct LayerRecord {
    const CALayer* layer;  ///< compared, never followed: it may be gone
    const CALayer* parent; ///< likewise
    std::uint64_t revision;
    std::uint64_t surroundings; ///< of everything that clips, masks, shadows or groups it on the way from the root
    double alpha;               ///< that its parts are drawn with
    CGAffineTransform toDevice;
    IntRect pixels; ///< that it can change, shadows it throws included

    friend bool operator==(const LayerRecord&, const LayerRecord&) = default;
};

/// All layers that paint in a tree, in the order in which they are drawn. Main thread.
class CanvasFrame {
public:
    CanvasFrame() = default;
    /// As LayerRenderer draws `root` at `scale` pixels a point into a bitmap of `size`.
    CanvasFrame(const CALayer& root, double scale, IntSize size);

    /// The pixels that may differ between both frames, of one size.
    IntRect differenceTo(const CanvasFrame& next) const;

private:
    struct Scope;
    struct Surroundings;
    void add(const CALayer& layer, const Surroundings& around);
    void addInside(const CALayer& layer, const Surroundings& around);
    void addSublayers(const CALayer& layer, const Surroundings& around);
    IntRect exchangedArea(const std::vector<std::size_t>& order) const;

    std::vector<LayerRecord> m_records;
};

} // namespace lamina
