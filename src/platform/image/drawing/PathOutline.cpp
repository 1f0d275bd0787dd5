#include "platform/image/drawing/PathOutline_p.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

// Offsets, mitres and their limit are those of the PostScript Language Reference, third edition, 1999, "Stroking".

namespace lamina {

namespace {

constexpr double kMitreLimit = 10;

double dot(CGPoint a, CGPoint b)
{
    return a.x * b.x + a.y * b.y;
}

double cross(CGPoint a, CGPoint b)
{
    return a.x * b.y - a.y * b.x;
}

/// A straight piece of a stroke: its direction of length 1 and its own length.
struct Segment {
    CGPoint from;
    CGPoint to;
    CGPoint direction;
    double length;
};

std::vector<Segment> segmentsOf(const FlatPart& part)
{
    std::vector<Segment> segments;
    const std::size_t count = part.points.size();
    for (std::size_t i = 0; i + (part.closed ? 0 : 1) < count; ++i) {
        const CGPoint from = part.points[i];
        const CGPoint to = part.points[(i + 1) % count];
        const double length = std::hypot(to.x - from.x, to.y - from.y);
        if (length > 0 && std::isfinite(length))
            segments.push_back({from, to, {(to.x - from.x) / length, (to.y - from.y) / length}, length});
    }
    return segments;
}

/// The point at `distance` to the side of a place; a positive distance lies where the direction turned by +90° points.
CGPoint aside(CGPoint place, CGPoint direction, double distance)
{
    return {place.x - direction.y * distance, place.y + direction.x * distance};
}

/// Adds the corner that one side of the outline makes where `before` meets `after`.
void addJoin(const Segment& before, const Segment& after, double distance, std::vector<CGPoint>& side)
{
    const CGPoint corner = after.from;
    const double turn = cross(before.direction, after.direction);
    const double along = dot(before.direction, after.direction);
    // The two offset lines meet `reach` along the segments away from the corner, tan(turn / 2) times the distance.
    const double reach = std::abs(distance) * std::abs(turn) / std::max(1e-12, 1 + along);
    const bool inner = turn * distance > 0;
    // The mitre's length by the width is 1 / sin(inside angle / 2) = sqrt(2 / (1 + cos turn)).
    const bool sharp = 2 > kMitreLimit * kMitreLimit * (1 + along);
    if (inner ? reach <= std::min(before.length, after.length) : !sharp) {
        const double sign = inner ? -1 : 1;
        const CGPoint start = aside(corner, before.direction, distance);
        side.push_back({start.x + sign * reach * before.direction.x, start.y + sign * reach * before.direction.y});
        return;
    }
    side.push_back(aside(corner, before.direction, distance));
    if (inner)
        side.push_back(corner); // through the corner, so that nothing of the line's inside is cut off
    side.push_back(aside(corner, after.direction, distance));
}

} // namespace

std::vector<std::vector<CGPoint>> strokeOutline(const UIBezierPath& path, double lineWidth, double tolerance)
{
    std::vector<std::vector<CGPoint>> outline;
    const double half = lineWidth / 2;
    for (const FlatPart& part : flattenedParts(path, tolerance)) {
        const std::vector<Segment> segments = segmentsOf(part);
        if (segments.empty())
            continue;
        std::vector<CGPoint> left;
        std::vector<CGPoint> right;
        if (part.closed) {
            for (std::size_t i = 0; i < segments.size(); ++i) {
                const Segment& before = segments[(i + segments.size() - 1) % segments.size()];
                addJoin(before, segments[i], half, left);
                addJoin(before, segments[i], -half, right);
            }
            std::reverse(right.begin(), right.end());
            outline.push_back(std::move(left));
            outline.push_back(std::move(right));
            continue;
        }
        left.push_back(aside(segments.front().from, segments.front().direction, half));
        right.push_back(aside(segments.front().from, segments.front().direction, -half));
        for (std::size_t i = 1; i < segments.size(); ++i) {
            addJoin(segments[i - 1], segments[i], half, left);
            addJoin(segments[i - 1], segments[i], -half, right);
        }
        left.push_back(aside(segments.back().to, segments.back().direction, half));
        right.push_back(aside(segments.back().to, segments.back().direction, -half));
        left.insert(left.end(), right.rbegin(), right.rend());
        outline.push_back(std::move(left));
    }
    return outline;
}

} // namespace lamina
