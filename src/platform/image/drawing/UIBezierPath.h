#pragma once

#include "platform/base/CGAffineTransform.h"

#include <vector>

namespace lamina {

/// An outline of straight lines and cubic curves, in the coordinates of whoever draws it.
/// A plain value, usable from any thread.
class UIBezierPath {
public:
    enum class Verb { Move, Line, Curve, Close };
    /// `Move` and `Line` use `end`; `Curve` uses both controls and `end`; `Close` none.
    struct Element {
        Verb verb;
        CGPoint control1;
        CGPoint control2;
        CGPoint end;
    };

    UIBezierPath() = default;
    static UIBezierPath withRect(const CGRect& rect);
    /// Corners are quarter circles; a radius above half of the shorter side counts as that half.
    static UIBezierPath withRoundedRect(const CGRect& rect, double cornerRadius);
    static UIBezierPath withOvalIn(const CGRect& rect);
    static UIBezierPath polygon(const std::vector<CGPoint>& corners);

    void moveToPoint(CGPoint p);
    void addLineToPoint(CGPoint p);
    void addCurveToPoint(CGPoint end, CGPoint control1, CGPoint control2);
    void addQuadCurveToPoint(CGPoint end, CGPoint control);
    void closePath();
    void appendPath(const UIBezierPath& other);
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

    friend bool operator==(const UIBezierPath& x, const UIBezierPath& y);

private:
    std::vector<Element> m_elements;
};

/// The path as closed polygons, no further than `tolerance` from the true curve.
std::vector<std::vector<CGPoint>> flattened(const UIBezierPath& path, double tolerance);

} // namespace lamina
