#pragma once

#include "platform/image/drawing/UIBezierPath.h"

#include "platform/base/CGGeometry.h"

#include <vector>

namespace lamina {

/// One part of a path as straight lines.
struct FlatPart {
    std::vector<CGPoint> points;
    bool closed = false;
};

/// The path's parts, no further than `tolerance` from the true curve.
std::vector<FlatPart> flattenedParts(const UIBezierPath& path, double tolerance);

/// The parts cut into the strokes of a pattern of dashes (`UIBezierPath::lineDash`), which are open; the parts
/// themselves where the pattern is none.
std::vector<FlatPart> dashed(std::vector<FlatPart> parts, const std::vector<double>& pattern, double phase);

/// The outline of the path's stroke as closed polygons, to be filled by the non-zero rule. Ends, joins, mitre limit and
/// dashes are the path's; round ones are no further than `tolerance` from the true circle.
std::vector<std::vector<CGPoint>> strokeOutline(const UIBezierPath& path, double tolerance);

} // namespace lamina
