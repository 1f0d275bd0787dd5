#include "platform/image/drawing/PathOutline_p.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <utility>

// Offsets, mitres and their limit are those of the PostScript Language Reference, third edition, 1999, "Stroking".

namespace lamina {

namespace {

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

/// The outline of a stroke in the making.
class Stroker {
public:
    Stroker(const UIBezierPath& path, double tolerance)
        : m_half(path.lineWidth / 2)
        , m_cap(path.lineCap)
        , m_join(path.lineJoin)
        , m_miterLimit(path.miterLimit)
        , m_arcStep(2 * std::acos(std::max(0.0, 1 - tolerance / m_half)))
    {
    }

    void addClosed(const std::vector<Segment>& segments)
    {
        std::vector<CGPoint> left;
        std::vector<CGPoint> right;
        for (std::size_t i = 0; i < segments.size(); ++i) {
            const Segment& before = segments[(i + segments.size() - 1) % segments.size()];
            addJoin(before, segments[i], m_half, left);
            addJoin(before, segments[i], -m_half, right);
        }
        std::reverse(right.begin(), right.end());
        outline.push_back(std::move(left));
        outline.push_back(std::move(right));
    }

    void addOpen(const std::vector<Segment>& segments)
    {
        std::vector<CGPoint> left;
        std::vector<CGPoint> right;
        for (std::size_t i = 1; i < segments.size(); ++i) {
            addJoin(segments[i - 1], segments[i], m_half, left);
            addJoin(segments[i - 1], segments[i], -m_half, right);
        }
        addCap(segments.back().to, segments.back().direction, left);
        left.insert(left.end(), right.rbegin(), right.rend());
        const CGPoint forward = segments.front().direction;
        addCap(segments.front().from, {-forward.x, -forward.y}, left);
        outline.push_back(std::move(left));
    }

    std::vector<std::vector<CGPoint>> outline;

private:
    /// From the place that lies aside by +90° to the one by -90°, around an end that points along `outwards`.
    void addCap(CGPoint end, CGPoint outwards, std::vector<CGPoint>& side) const
    {
        const double reach = m_cap == UIBezierPath::LineCap::Square ? m_half : 0;
        const CGPoint edge{end.x + reach * outwards.x, end.y + reach * outwards.y};
        side.push_back(aside(edge, outwards, m_half));
        if (m_cap == UIBezierPath::LineCap::Round)
            addArc(end, {-outwards.y * m_half, outwards.x * m_half}, -std::numbers::pi, side);
        side.push_back(aside(edge, outwards, -m_half));
    }

    /// The places between both ends of an arc that begins at `center` + `radius`.
    void addArc(CGPoint center, CGPoint radius, double sweep, std::vector<CGPoint>& side) const
    {
        constexpr double kMostPieces = 4096;
        const int pieces = static_cast<int>(std::min(kMostPieces, std::ceil(std::abs(sweep) / m_arcStep)));
        for (int i = 1; i < pieces; ++i) {
            const double c = std::cos(sweep * i / pieces);
            const double s = std::sin(sweep * i / pieces);
            side.push_back({center.x + c * radius.x - s * radius.y, center.y + s * radius.x + c * radius.y});
        }
    }

    bool isPointed(double along) const
    {
        // The mitre's length by the width is 1 / sin(inside angle / 2) = sqrt(2 / (1 + cos turn)).
        return m_join == UIBezierPath::LineJoin::Miter && 2 <= m_miterLimit * m_miterLimit * (1 + along);
    }

    /// Adds the corner that one side of the outline makes where `before` meets `after`.
    void addJoin(const Segment& before, const Segment& after, double distance, std::vector<CGPoint>& side) const
    {
        const CGPoint corner = after.from;
        const double turn = cross(before.direction, after.direction);
        const double along = dot(before.direction, after.direction);
        // The two offset lines meet `reach` along the segments away from the corner, tan(turn / 2) times the distance.
        const double reach = std::abs(distance) * std::abs(turn) / std::max(1e-12, 1 + along);
        const bool inner = turn * distance > 0;
        const CGPoint start = aside(corner, before.direction, distance);
        if (inner ? reach <= std::min(before.length, after.length) : isPointed(along)) {
            const double sign = inner ? -1 : 1;
            side.push_back({start.x + sign * reach * before.direction.x, start.y + sign * reach * before.direction.y});
            return;
        }
        side.push_back(start);
        if (inner)
            side.push_back(corner); // through the corner, so that nothing of the line's inside is cut off
        else if (m_join == UIBezierPath::LineJoin::Round)
            addArc(corner, {start.x - corner.x, start.y - corner.y}, std::atan2(turn, along), side);
        side.push_back(aside(corner, after.direction, distance));
    }

    double m_half;
    UIBezierPath::LineCap m_cap;
    UIBezierPath::LineJoin m_join;
    double m_miterLimit;
    double m_arcStep; ///< angle of a piece of a round join or end
};

/// A line without length has no direction; its ends, where they reach beyond it, lie along the x axis.
std::vector<Segment> dotSegment(const FlatPart& part, UIBezierPath::LineCap cap)
{
    if (cap == UIBezierPath::LineCap::Butt || !isFinite(part.points.front()))
        return {};
    return {{part.points.front(), part.points.front(), {1, 0}, 0}};
}

} // namespace

std::vector<std::vector<CGPoint>> strokeOutline(const UIBezierPath& path, double tolerance)
{
    Stroker stroker(path, tolerance);
    for (const FlatPart& part : dashed(flattenedParts(path, tolerance), path.lineDash, path.lineDashPhase)) {
        const std::vector<Segment> segments = segmentsOf(part);
        if (!segments.empty() && part.closed)
            stroker.addClosed(segments);
        else if (!segments.empty())
            stroker.addOpen(segments);
        else if (const std::vector<Segment> dot = dotSegment(part, path.lineCap); !dot.empty())
            stroker.addOpen(dot);
    }
    return std::move(stroker.outline);
}

} // namespace lamina
