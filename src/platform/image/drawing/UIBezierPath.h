#pragma once

#include "platform/base/CGAffineTransform.h"

#include "platform/base/CGGeometry.h"

#include <vector>

namespace lamina {

/// An outline of straight lines and cubic curves, in the coordinates of whoever draws it.
/// A plain value, usable from any thread.
class UIBezierPath {
public:
    /// How a stroke ends where its part is open: at the end itself, by a half circle, or by half a square.
    enum class LineCap { Butt, Round, Square };
    /// How a stroke turns a corner: pointed up to a limit and cut flat beyond it, by an arc, or always cut flat.
    enum class LineJoin { Miter, Round, Bevel };

    /// What an element does: begins a part, goes on by a straight line or a cubic curve, or goes back to the beginning.
    enum class Verb { Move, Line, Curve, Close };
    /// `Move` and `Line` use `end`; `Curve` uses both controls and `end`; `Close` none.
    struct Element {
        Verb verb;
        CGPoint control1;
        CGPoint control2;
        CGPoint end;
    };

    UIBezierPath() = default;
    /// Four lines from the top left corner, clockwise where y runs down.
    static UIBezierPath withRect(const CGRect& rect);
    /// Corners are quarter circles; a radius above half of the shorter side counts as that half.
    static UIBezierPath withRoundedRect(const CGRect& rect, double cornerRadius);
    /// The ellipse that touches the sides, of four curves that come within 0.03 % of it.
    static UIBezierPath withOvalIn(const CGRect& rect);
    /// A part of a circle as the path's only one; see `addArc`.
    static UIBezierPath withArcCenter(CGPoint center, double radius, double startAngle, double endAngle,
                                      bool clockwise);
    /// A closed part of straight lines; empty without corners.
    static UIBezierPath polygon(const std::vector<CGPoint>& corners);

    /// Begins a new part at `p`.
    void moveToPoint(CGPoint p);
    /// A straight line from where the part has come to. Without a part it begins one at `p`.
    void addLineToPoint(CGPoint p);
    /// A cubic curve that leaves towards `control1` and arrives from `control2`.
    void addCurveToPoint(CGPoint end, CGPoint control1, CGPoint control2);
    /// A part of a circle, off it by at most 0.03 % of the radius, after a straight line to where it begins (without a
    /// part it begins one). Angles in radians from the x axis towards the y axis, which is clockwise where y runs down.
    /// The arc runs from `startAngle` in the direction asked for until it meets `endAngle`; angles that lie a full turn
    /// or more apart in that direction give the whole circle. A radius that is not positive, or an angle that is not
    /// finite, adds nothing.
    void addArc(CGPoint center, double radius, double startAngle, double endAngle, bool clockwise);
    /// A straight line back to where the part began. Nothing without a part.
    void closePath();
    /// All parts of the other path, whose fill rule and manner of stroking are not taken.
    void appendPath(const UIBezierPath& other);
    /// Moves every point.
    void applyTransform(const CGAffineTransform& transform);

    bool isEmpty() const { return m_elements.empty(); }
    const std::vector<Element>& elements() const { return m_elements; }
    /// Box around all end and control points; it may be larger than the outline.
    CGRect controlBounds() const;
    /// Whether the point lies inside, by the even-odd or the non-zero rule. Open parts are closed.
    bool contains(CGPoint p, bool evenOdd = false) const;

    /// When true, areas covered twice are holes (even-odd rule); otherwise the winding number decides.
    bool usesEvenOddFillRule = false;
    /// Width of a stroke.
    double lineWidth = 1;
    LineCap lineCap = LineCap::Butt;
    LineJoin lineJoin = LineJoin::Miter;
    /// How many times as long as the line is wide a mitre may be.
    double miterLimit = 10;
    /// Lengths of strokes and gaps in turn, begun `lineDashPhase` into them at the start of each part. Empty, the
    /// default, or with a length that is negative or not finite, or without any length: a stroke without gaps.
    std::vector<double> lineDash;
    double lineDashPhase = 0;

    friend bool operator==(const UIBezierPath& x, const UIBezierPath& y);

private:
    std::vector<Element> m_elements;
};

/// The path as closed polygons, no further than `tolerance` from the true curve.
std::vector<std::vector<CGPoint>> flattened(const UIBezierPath& path, double tolerance);

} // namespace lamina
