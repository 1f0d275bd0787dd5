#include "platform/image/drawing/UIBezierPath.h"

#include "platform/image/drawing/PathOutline_p.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <tuple>
#include <utility>

// Curves are split by the bound of their second differences (G. Farin, "Curves and Surfaces for CAGD", the deviation of
// a chord); inside and outside are told by the winding number (J. D. Foley et al., "Computer Graphics: Principles and
// Practice").

namespace lamina {

namespace {

/// Length of the controls of a cubic curve that comes within 0.03 % of a quarter circle of radius 1.
constexpr double kQuarterCircle = 0.5522847498;
constexpr double kFullTurn = 2 * std::numbers::pi;
/// Pieces of one curve at most: enough for curves of some million pixels.
constexpr int kMostPieces = 4096;

CGPoint onCurve(CGPoint start, const UIBezierPath::Element& curve, double t)
{
    const double s = 1 - t;
    const double w0 = s * s * s;
    const double w1 = 3 * s * s * t;
    const double w2 = 3 * s * t * t;
    const double w3 = t * t * t;
    return {w0 * start.x + w1 * curve.control1.x + w2 * curve.control2.x + w3 * curve.end.x,
            w0 * start.y + w1 * curve.control1.y + w2 * curve.control2.y + w3 * curve.end.y};
}

/// Equal steps of the parameter. A chord is off by at most |B''|/(8 n²), and |B''| by 6 times the larger second
/// difference.
int piecesOf(CGPoint start, const UIBezierPath::Element& curve, double tolerance)
{
    const auto bend = [](CGPoint a, CGPoint b, CGPoint c) {
        return std::hypot(a.x - 2 * b.x + c.x, a.y - 2 * b.y + c.y);
    };
    const double most =
        std::max(bend(start, curve.control1, curve.control2), bend(curve.control1, curve.control2, curve.end));
    const double pieces = std::ceil(std::sqrt(6 * most / (8 * tolerance)));
    return pieces >= 1 ? static_cast<int>(std::min<double>(pieces, kMostPieces)) : 1;
}

/// The signed angle from one direction to another, at most a full turn.
double sweepBetween(double start, double end, bool clockwise)
{
    const double apart = clockwise ? end - start : start - end;
    double sweep = apart;
    if (apart >= kFullTurn)
        sweep = kFullTurn;
    else if (apart < 0)
        sweep = apart - std::floor(apart / kFullTurn) * kFullTurn;
    return clockwise ? sweep : -sweep;
}

} // namespace

UIBezierPath UIBezierPath::withRect(const CGRect& rect)
{
    return polygon({{rect.minX(), rect.minY()},
                    {rect.maxX(), rect.minY()},
                    {rect.maxX(), rect.maxY()},
                    {rect.minX(), rect.maxY()}});
}

UIBezierPath UIBezierPath::withRoundedRect(const CGRect& rect, double cornerRadius)
{
    const double radius = std::min({cornerRadius, rect.size.width / 2, rect.size.height / 2});
    if (!(radius > 0))
        return withRect(rect);
    const double k = radius * (1 - kQuarterCircle);
    const double x0 = rect.minX();
    const double y0 = rect.minY();
    const double x1 = rect.maxX();
    const double y1 = rect.maxY();
    UIBezierPath path;
    path.moveToPoint({x0 + radius, y0});
    path.addLineToPoint({x1 - radius, y0});
    path.addCurveToPoint({x1, y0 + radius}, {x1 - k, y0}, {x1, y0 + k});
    path.addLineToPoint({x1, y1 - radius});
    path.addCurveToPoint({x1 - radius, y1}, {x1, y1 - k}, {x1 - k, y1});
    path.addLineToPoint({x0 + radius, y1});
    path.addCurveToPoint({x0, y1 - radius}, {x0 + k, y1}, {x0, y1 - k});
    path.addLineToPoint({x0, y0 + radius});
    path.addCurveToPoint({x0 + radius, y0}, {x0, y0 + k}, {x0 + k, y0});
    path.closePath();
    return path;
}

UIBezierPath UIBezierPath::withOvalIn(const CGRect& rect)
{
    UIBezierPath path = withRoundedRect({-1, -1, 2, 2}, 1);
    path.applyTransform({rect.size.width / 2, 0, 0, rect.size.height / 2, rect.midX(), rect.midY()});
    return path;
}

UIBezierPath UIBezierPath::withArcCenter(CGPoint center, double radius, double startAngle, double endAngle,
                                         bool clockwise)
{
    UIBezierPath path;
    path.addArc(center, radius, startAngle, endAngle, clockwise);
    return path;
}

UIBezierPath UIBezierPath::polygon(const std::vector<CGPoint>& corners)
{
    UIBezierPath path;
    for (const CGPoint& corner : corners) {
        if (path.isEmpty())
            path.moveToPoint(corner);
        else
            path.addLineToPoint(corner);
    }
    if (!path.isEmpty())
        path.closePath();
    return path;
}

void UIBezierPath::moveToPoint(CGPoint p)
{
    m_elements.push_back({Verb::Move, {}, {}, p});
}

void UIBezierPath::addLineToPoint(CGPoint p)
{
    if (m_elements.empty())
        moveToPoint(p);
    else
        m_elements.push_back({Verb::Line, {}, {}, p});
}

void UIBezierPath::addCurveToPoint(CGPoint end, CGPoint control1, CGPoint control2)
{
    if (m_elements.empty())
        moveToPoint(control1);
    m_elements.push_back({Verb::Curve, control1, control2, end});
}

void UIBezierPath::addArc(CGPoint center, double radius, double startAngle, double endAngle, bool clockwise)
{
    if (!(radius > 0) || !std::isfinite(radius) || !std::isfinite(startAngle) || !std::isfinite(endAngle))
        return;
    const auto onCircle = [&](double angle) {
        return CGPoint{center.x + radius * std::cos(angle), center.y + radius * std::sin(angle)};
    };
    const double sweep = sweepBetween(startAngle, endAngle, clockwise);
    const int quarters = std::max(1, static_cast<int>(std::ceil(std::abs(sweep) / (kFullTurn / 4) - 1e-9)));
    const double step = sweep / quarters;
    const double reach = radius * 4 / 3 * std::tan(step / 4);
    addLineToPoint(onCircle(startAngle));
    for (int i = 0; i < quarters && sweep != 0; ++i) {
        const double from = startAngle + i * step;
        const double to = from + step;
        const CGPoint start = onCircle(from);
        const CGPoint end = onCircle(to);
        addCurveToPoint(end, {start.x - reach * std::sin(from), start.y + reach * std::cos(from)},
                        {end.x + reach * std::sin(to), end.y - reach * std::cos(to)});
    }
}

void UIBezierPath::closePath()
{
    if (!m_elements.empty() && m_elements.back().verb != Verb::Close)
        m_elements.push_back({Verb::Close, {}, {}, {}});
}

void UIBezierPath::appendPath(const UIBezierPath& other)
{
    const std::vector<Element> added = other.m_elements; // `other` may be this path
    m_elements.insert(m_elements.end(), added.begin(), added.end());
}

void UIBezierPath::applyTransform(const CGAffineTransform& transform)
{
    for (Element& element : m_elements) {
        element.control1 = transform.apply(element.control1);
        element.control2 = transform.apply(element.control2);
        element.end = transform.apply(element.end);
    }
}

CGRect UIBezierPath::controlBounds() const
{
    bool any = false;
    CGPoint low;
    CGPoint high;
    const auto add = [&](CGPoint p) {
        low = any ? CGPoint{std::min(low.x, p.x), std::min(low.y, p.y)} : p;
        high = any ? CGPoint{std::max(high.x, p.x), std::max(high.y, p.y)} : p;
        any = true;
    };
    for (const Element& element : m_elements) {
        if (element.verb == Verb::Close)
            continue;
        add(element.end);
        if (element.verb == Verb::Curve) {
            add(element.control1);
            add(element.control2);
        }
    }
    return {low.x, low.y, high.x - low.x, high.y - low.y};
}

bool UIBezierPath::contains(CGPoint p, bool evenOdd) const
{
    const CGRect box = controlBounds();
    if (!(p.x >= box.minX() && p.x <= box.maxX() && p.y >= box.minY() && p.y <= box.maxY()))
        return false;
    const double tolerance = std::max(1e-9, 1e-5 * std::max(box.size.width, box.size.height));
    int winding = 0;
    for (const std::vector<CGPoint>& polygon : flattened(*this, tolerance)) {
        CGPoint from = polygon.back();
        for (const CGPoint& to : polygon) {
            // Upwards edges own their start, downwards ones too: a corner counts once.
            if ((from.y <= p.y) != (to.y <= p.y)) {
                const double x = from.x + (p.y - from.y) / (to.y - from.y) * (to.x - from.x);
                if (p.x < x)
                    winding += from.y < to.y ? 1 : -1;
            }
            from = to;
        }
    }
    return evenOdd ? winding % 2 != 0 : winding != 0;
}

bool operator==(const UIBezierPath& x, const UIBezierPath& y)
{
    const auto same = [](const UIBezierPath::Element& a, const UIBezierPath::Element& b) {
        return a.verb == b.verb && a.control1 == b.control1 && a.control2 == b.control2 && a.end == b.end;
    };
    const auto manner = [](const UIBezierPath& path) {
        return std::tie(path.usesEvenOddFillRule, path.lineWidth, path.lineCap, path.lineJoin, path.miterLimit,
                        path.lineDash, path.lineDashPhase);
    };
    return manner(x) == manner(y) &&
           std::equal(x.m_elements.begin(), x.m_elements.end(), y.m_elements.begin(), y.m_elements.end(), same);
}

std::vector<FlatPart> flattenedParts(const UIBezierPath& path, double tolerance)
{
    std::vector<FlatPart> parts;
    CGPoint pen;
    CGPoint start;
    bool growing = false; // the last part may still grow
    const auto extend = [&](CGPoint p) {
        if (!growing) {
            parts.push_back({{pen}, false});
            growing = true;
        }
        parts.back().points.push_back(p);
        pen = p;
    };
    for (const UIBezierPath::Element& element : path.elements()) {
        switch (element.verb) {
        case UIBezierPath::Verb::Move:
            growing = false;
            pen = start = element.end;
            break;
        case UIBezierPath::Verb::Line:
            extend(element.end);
            break;
        case UIBezierPath::Verb::Curve: {
            const CGPoint from = pen;
            const int pieces = piecesOf(from, element, tolerance);
            for (int i = 1; i < pieces; ++i)
                extend(onCurve(from, element, static_cast<double>(i) / pieces));
            extend(element.end);
            break;
        }
        case UIBezierPath::Verb::Close:
            if (growing)
                parts.back().closed = true;
            growing = false;
            pen = start;
            break;
        }
    }
    return parts;
}

std::vector<std::vector<CGPoint>> flattened(const UIBezierPath& path, double tolerance)
{
    std::vector<std::vector<CGPoint>> polygons;
    for (FlatPart& part : flattenedParts(path, tolerance))
        polygons.push_back(std::move(part.points));
    return polygons;
}

} // namespace lamina
