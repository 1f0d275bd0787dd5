#pragma once

#include "editors/frames/FrameTerms_p.h"
#include "platform/image/drawing/UIBezierPath.h"
#include "platform/view/CALayer.h"

#include <array>
#include <cstddef>
#include <span>

namespace lamina {

/// A slot that is cut by a polygon.
struct FrameMask {
    std::size_t slot;
    std::span<const FrameCorner> corners;
    std::size_t boundsOf; ///< the slot whose bounds are the mask's frame
    CALayer::Shadow shadow;
};

/// A slot that becomes a circle about its centre.
struct FrameRound {
    std::size_t slot;
    FrameTerm diameter;
};

/// One frame. What it doesn't name stays as it is.
struct FrameRow {
    int number;
    const char* name;
    std::span<const FrameMask> masks;
    std::span<const FrameRound> rounds;
    std::span<const std::size_t> raised; ///< slots brought to the front one after another
};

/// All of them by their numbers.
std::span<const FrameRow> frameTable();

/// The row of a number; null for a number that is none's.
const FrameRow* findFrame(int number);

/// How many photos a row is for.
constexpr std::size_t photosOf(const FrameRow& row)
{
    return row.number < 3000 ? 2 : 3;
}

/// The polygon that lets the slot through, in its own coordinates.
UIBezierPath maskPath(const FrameMask& mask, const FrameSizes& sizes);
/// As circles are asked for: in single precision.
float roundDiameter(const FrameRound& round, const FrameSizes& sizes);

/// The slots from the lowest to the topmost before a frame raises any: those made first lie on top.
constexpr std::array<std::size_t, 3> kFirstOnTop{2, 1, 0};

} // namespace lamina
