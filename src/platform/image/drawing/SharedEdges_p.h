#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/image/drawing/CoverageMask_p.h"
#include "platform/image/drawing/SharedEdges.h"
#include "platform/image/drawing/Surface_p.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace lamina {

/// A pixel that is cut by the edges of several outlines, of which each claims a part of it.
struct Joint {
    int x;
    int y;
};

struct SharedEdges::Impl {
    std::vector<CoverageMask> masks;
    std::vector<Joint> joints;

    /// How much of a pixel an outline covers.
    std::uint8_t coverage(std::size_t outline, const Joint& joint) const;
};

/// The joints of a bitmap while what fills the outlines is drawn: taken out, so that each outline's colour is found by
/// itself, summed up by the claims, and put over what was there.
class JointPixels {
public:
    /// Clears the joints inside `clip` in the bitmap, which is R G B A premultiplied.
    JointPixels(const SharedEdges::Impl& edges, Surface& surface, const IntRect& clip);

    /// Adds what was drawn through an outline since the last call, from the lowest up, and clears the joints again.
    void take(Surface& surface, std::size_t outline);
    /// At the end.
    void putBack(Surface& surface) const;

private:
    struct Pixel {
        Joint place;
        std::array<std::uint8_t, 4> ground;
        int claimed = 0;               ///< of 255
        std::array<float, 4> sum = {}; ///< of what was drawn, in steps of 1/255
    };
    static void add(Pixel& pixel, const std::uint8_t* drawn, int covered);

    const SharedEdges::Impl& m_edges;
    std::vector<Pixel> m_pixels;
};

} // namespace lamina
