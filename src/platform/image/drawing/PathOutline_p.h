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

/// The outline of the path's stroke as closed polygons, to be filled by the non-zero rule: flat ends, mitred joins,
/// bevelled where the mitre would be longer than ten times the width.
std::vector<std::vector<CGPoint>> strokeOutline(const UIBezierPath& path, double lineWidth, double tolerance);

} // namespace lamina
