#include "gpu/filters/effect/GPUImageLineGenerator.h"

#include "gpu/core/FilterRegistry.h"
#include "platform/base/CGGeometry.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <vector>

namespace lamina {

namespace {

/// From border to border, in the coordinates of the lines.
struct Segment {
    CGPoint from;
    CGPoint to;
};

/// Where the line leaves the square of -1 to 1 on two opposite sides, beyond its corners where it must; nothing for a
/// line that misses it.
std::optional<Segment> segmentOf(CGPoint line)
{
    const auto [slope, intercept] = line;
    if (std::isnan(slope) || !std::isfinite(intercept))
        return std::nullopt;
    Segment segment;
    if (std::abs(slope) > GPUImageLineGenerator::kVerticalSlope)
        segment = {{intercept, -1}, {intercept, 1}};
    else if (std::abs(slope) > 1)
        segment = {{(-1 - intercept) / slope, -1}, {(1 - intercept) / slope, 1}};
    else
        segment = {{-1, intercept - slope}, {1, intercept + slope}};
    const auto misses = [](double one, double other) {
        constexpr double kBorder = 1.5; // a broad line shows from beyond the border
        return std::min(one, other) > kBorder || std::max(one, other) < -kBorder;
    };
    if (misses(segment.from.x, segment.to.x) || misses(segment.from.y, segment.to.y))
        return std::nullopt;
    return segment;
}

} // namespace

GPUImageLineGenerator::GPUImageLineGenerator()
    : MarkGenerator("true")
{
}

FilterDescription GPUImageLineGenerator::describe()
{
    using Self = GPUImageLineGenerator;
    return asGenerator(filterDescription<Self>(
        "GPUImageLineGenerator", "effect", 1, "Draws straight lines from border to border",
        {filterProperty("lineWidth", &Self::setLineWidth, 1.0F, {1, 64}, "pixels", "Width of the lines"),
         filterProperty("lines", &Self::setLines, std::vector<CGPoint>(), {}, "",
                        "Slope and intercept of each; x and y run from -1 to 1, rightwards and down; a slope above "
                        "100000: vertical at x = intercept")},
        {colorOperation("setLineColorRed:green:blue:")}));
}

std::vector<MarkGenerator::Mark> GPUImageLineGenerator::marksForSize(CGSize size)
{
    const auto inPixels = [&](CGPoint p) { return CGPoint{(p.x + 1) / 2 * size.width, (p.y + 1) / 2 * size.height}; };
    std::vector<Mark> marks;
    for (const CGPoint& line : m_points) {
        const std::optional<Segment> segment = segmentOf(line);
        if (!segment)
            continue;
        const CGPoint from = inPixels(segment->from);
        const CGPoint to = inPixels(segment->to);
        // Half the width to either side, and as far beyond the border: nothing is missing in the corners.
        const double half = std::max(static_cast<double>(m_width), 1.0) / 2 / std::hypot(to.x - from.x, to.y - from.y);
        const CGPoint along{(to.x - from.x) * half, (to.y - from.y) * half};
        marks.push_back({{{{from.x - along.x + along.y, from.y - along.y - along.x},
                           {to.x + along.x + along.y, to.y + along.y - along.x},
                           {from.x - along.x - along.y, from.y - along.y + along.x},
                           {to.x + along.x - along.y, to.y + along.y + along.x}}}});
    }
    return marks;
}

} // namespace lamina
