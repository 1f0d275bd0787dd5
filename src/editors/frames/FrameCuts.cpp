#include "editors/frames/Frames.h"

#include "platform/base/CGGeometry.h"
#include "platform/image/drawing/UIBezierPath.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>
#include <utility>
#include <vector>

namespace lamina {

namespace {

/// Points that are closer than this are one.
constexpr double kSame = 1e-6;
/// How far a circle's lines may be off it, as a part of the slot's side.
constexpr double kRoundTolerance = 4e-5;
/// Which part of the slot's side a line is carried on beyond its edge.
constexpr double kCarried = 0.25;

using Polygon = std::vector<CGPoint>;

/// An outline as straight lines, and what it is filled by.
struct Outline {
    UIBezierPath path;
    std::vector<Polygon> polygons;
};

CGPoint operator-(CGPoint p, CGPoint q)
{
    return {p.x - q.x, p.y - q.y};
}

double cross(CGPoint p, CGPoint q)
{
    return p.x * q.y - p.y * q.x;
}

double dot(CGPoint p, CGPoint q)
{
    return p.x * q.x + p.y * q.y;
}

double distance(CGPoint p, CGPoint q)
{
    return std::hypot(p.x - q.x, p.y - q.y);
}

struct Segment {
    CGPoint from;
    CGPoint to;

    CGPoint at(double t) const { return {from.x + (to.x - from.x) * t, from.y + (to.y - from.y) * t}; }
    double length() const { return distance(from, to); }
    /// Where `at` comes closest to the point.
    double nearest(CGPoint p) const
    {
        return std::clamp(dot(p - from, to - from) / dot(to - from, to - from), 0.0, 1.0);
    }
    /// Whether the point lies in the box around both ends.
    bool isNear(CGPoint p) const
    {
        return p.x > std::min(from.x, to.x) - kSame && p.x < std::max(from.x, to.x) + kSame &&
               p.y > std::min(from.y, to.y) - kSame && p.y < std::max(from.y, to.y) + kSame;
    }
    bool touches(CGPoint p) const { return isNear(p) && distance(p, length() > kSame ? at(nearest(p)) : from) < kSame; }
    /// Whether the boxes of both have something in common.
    bool isNear(const Segment& other) const
    {
        const auto apart = [](double a, double b, double c, double d) {
            return std::max(a, b) < std::min(c, d) - kSame || std::min(a, b) > std::max(c, d) + kSame;
        };
        return !apart(from.x, to.x, other.from.x, other.to.x) && !apart(from.y, to.y, other.from.y, other.to.y);
    }
};

template <class Function>
void forEachSide(const std::vector<Polygon>& polygons, const Function& function)
{
    for (const Polygon& polygon : polygons)
        for (std::size_t i = 0; i < polygon.size(); ++i)
            function(Segment{polygon[i], polygon[(i + 1) % polygon.size()]});
}

bool isOnEdge(CGPoint p, const std::vector<Polygon>& polygons)
{
    bool found = false;
    forEachSide(polygons, [&](const Segment& side) { found = found || side.touches(p); });
    return found;
}

/// Where `other` meets `segment`, as `Segment::at` counts.
void addMeetings(const Segment& segment, const Segment& other, std::vector<double>& places)
{
    if (!segment.isNear(other))
        return;
    const CGPoint along = segment.to - segment.from;
    const double area = cross(along, other.to - other.from);
    if (std::abs(area) > kSame * segment.length() * other.length()) {
        const double t = cross(other.from - segment.from, other.to - other.from) / area;
        if (t > 0 && t < 1 && other.touches(segment.at(t)))
            places.push_back(t);
    }
    for (const CGPoint end : {other.from, other.to})
        if (segment.touches(end))
            places.push_back(segment.nearest(end));
}

/// What is seen of the lines of one outline.
class SeenLines {
public:
    SeenLines(const CGRect& slot, std::span<const Outline> above)
        : m_slot{UIBezierPath::withRect(slot), flattened(UIBezierPath::withRect(slot), 1)}
        , m_above(above)
        , m_carried(slot.size.width * kCarried)
    {
    }

    /// Adds them to `lines`, those that follow each other as one part.
    void addTo(UIBezierPath& lines, const Polygon& polygon)
    {
        m_parts.clear();
        forEachSide({polygon}, [this](const Segment& side) { addSeen(side); });
        joinEnds();
        for (const Polygon& part : m_parts)
            addPart(lines, part);
    }

private:
    bool isSeen(CGPoint p) const
    {
        return m_slot.path.contains(p) && !isOnEdge(p, m_slot.polygons) &&
               std::none_of(m_above.begin(), m_above.end(), [p](const Outline& outline) {
                   return outline.path.contains(p) || isOnEdge(p, outline.polygons);
               });
    }

    void addSeen(const Segment& side)
    {
        if (side.length() < kSame)
            return;
        std::vector<double> places{0, 1};
        const auto meet = [&](const Segment& other) { addMeetings(side, other, places); };
        forEachSide(m_slot.polygons, meet);
        for (const Outline& outline : m_above)
            forEachSide(outline.polygons, meet);
        std::sort(places.begin(), places.end());
        for (std::size_t i = 1; i < places.size(); ++i)
            if ((places[i] - places[i - 1]) * side.length() > kSame && isSeen(side.at((places[i - 1] + places[i]) / 2)))
                append({side.at(places[i - 1]), side.at(places[i])});
    }

    void append(const Segment& piece)
    {
        if (m_parts.empty() || distance(m_parts.back().back(), piece.from) > kSame)
            m_parts.push_back({piece.from});
        m_parts.back().push_back(piece.to);
    }

    /// A part that goes through the outline's first corner is one.
    void joinEnds()
    {
        if (m_parts.size() < 2 || distance(m_parts.back().back(), m_parts.front().front()) > kSame)
            return;
        Polygon& last = m_parts.back();
        last.insert(last.end(), m_parts.front().begin() + 1, m_parts.front().end());
        m_parts.erase(m_parts.begin());
    }

    void addPart(UIBezierPath& lines, const Polygon& part) const
    {
        if (distance(part.front(), part.back()) < kSame) {
            lines.appendPath(UIBezierPath::polygon({part.begin(), part.end() - 1}));
            return;
        }
        lines.moveToPoint(carried(part[1], part[0]));
        std::for_each(part.begin() + 1, part.end() - 1, [&](CGPoint p) { lines.addLineToPoint(p); });
        lines.addLineToPoint(carried(part[part.size() - 2], part.back()));
    }

    /// An end of a part, beyond the slot's edge if it lies there.
    CGPoint carried(CGPoint from, CGPoint end) const
    {
        return isOnEdge(end, m_slot.polygons) ? Segment{from, end}.at(1 + m_carried / distance(from, end)) : end;
    }

    Outline m_slot;
    std::span<const Outline> m_above;
    double m_carried;
    std::vector<Polygon> m_parts;
};

} // namespace

UIBezierPath frameCuts(const FrameShape& shape)
{
    if (!isMeasurable(shape.slot.size))
        return {};
    std::vector<Outline> outlines;
    for (const std::size_t i : shape.order) {
        const UIBezierPath& path = shape.outlines[i];
        outlines.push_back({path, flattened(path, shape.slot.size.width * kRoundTolerance)});
    }
    UIBezierPath lines;
    for (std::size_t i = 0; i < outlines.size(); ++i) {
        SeenLines seen(shape.slot, std::span(outlines).subspan(i + 1));
        for (const Polygon& polygon : outlines[i].polygons)
            seen.addTo(lines, polygon);
    }
    return lines;
}

} // namespace lamina
