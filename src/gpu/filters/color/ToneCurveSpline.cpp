// Natural cubic splines through control points. The system of equations for the second derivatives is tridiagonal
// (W. H. Press et al., Numerical Recipes, section 3.3).

#include "gpu/filters/color/GPUImageToneCurveFilter.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace lamina {

namespace {

constexpr double kLargest = 255;

/// From the unit square to 0 to 255, sorted; of points with the same x the last.
GPUImageToneCurveFilter::Points sortedPoints(const GPUImageToneCurveFilter::Points& points)
{
    GPUImageToneCurveFilter::Points sorted = points;
    for (CGPoint& point : sorted)
        point = {std::clamp(point.x, 0.0, 1.0) * kLargest, std::clamp(point.y, 0.0, 1.0) * kLargest};
    std::ranges::stable_sort(sorted, {}, &CGPoint::x);
    const auto isFollowed = [end = sorted.data() + sorted.size()](const CGPoint& point) {
        return &point + 1 != end && (&point + 1)->x == point.x;
    };
    GPUImageToneCurveFilter::Points distinct;
    std::ranges::copy_if(sorted, std::back_inserter(distinct), std::not_fn(isFollowed));
    return distinct;
}

/// One row of the system: what stands below, on and above the diagonal, and right of the equals sign.
struct Row {
    double below = 0;
    double diagonal = 1;
    double above = 0;
    double right = 0;
};

/// Natural: the ends, whose rows stay as they are, have second derivatives of 0.
std::vector<Row> splineSystem(const GPUImageToneCurveFilter::Points& points)
{
    std::vector<Row> rows(points.size());
    for (std::size_t i = 1; i + 1 < points.size(); ++i) {
        const CGPoint& before = points[i - 1];
        const CGPoint& here = points[i];
        const CGPoint& after = points[i + 1];
        rows[i] = {(here.x - before.x) / 6, (after.x - before.x) / 3, (after.x - here.x) / 6,
                   (after.y - here.y) / (after.x - here.x) - (here.y - before.y) / (here.x - before.x)};
    }
    return rows;
}

} // namespace

std::vector<double> GPUImageToneCurveFilter::secondDerivative(const Points& points)
{
    if (points.size() < 2)
        return {};
    std::vector<Row> rows = splineSystem(points);
    for (std::size_t i = 1; i < rows.size(); ++i) {
        const double factor = rows[i].below / rows[i - 1].diagonal;
        rows[i].diagonal -= factor * rows[i - 1].above;
        rows[i].right -= factor * rows[i - 1].right;
    }
    for (std::size_t i = rows.size() - 1; i-- > 0;)
        rows[i].right -= rows[i].above / rows[i + 1].diagonal * rows[i + 1].right;
    std::vector<double> derivatives;
    derivatives.reserve(rows.size());
    for (const Row& row : rows)
        derivatives.push_back(row.right / row.diagonal);
    return derivatives;
}

GPUImageToneCurveFilter::Points GPUImageToneCurveFilter::splineCurve(const Points& points)
{
    if (points.empty())
        return {};
    const std::vector<double> derivatives = secondDerivative(points);
    Points curve;
    for (std::size_t i = 0; i + 1 < points.size(); ++i) {
        const CGPoint& from = points[i];
        const CGPoint& to = points[i + 1];
        const double width = to.x - from.x;
        for (int x = static_cast<int>(from.x); x < static_cast<int>(to.x); ++x) {
            const double t = (x - from.x) / width;
            const double a = 1 - t;
            const double bend = (a * a * a - a) * derivatives[i] + (t * t * t - t) * derivatives[i + 1];
            const double y = a * from.y + t * to.y + width * width / 6 * bend;
            curve.push_back({static_cast<double>(x), std::clamp(y, 0.0, kLargest)});
        }
    }
    curve.push_back(points.back());
    return curve;
}

std::vector<float> GPUImageToneCurveFilter::getPreparedSplineCurve(const Points& points)
{
    if (points.empty())
        return {};
    const Points curve = splineCurve(sortedPoints(points));
    std::vector<float> offsets;
    if (curve.front().x > 0) {
        for (int x = 0; x <= static_cast<int>(curve.front().x); ++x)
            offsets.push_back(static_cast<float>(-x));
    }
    for (const CGPoint& point : curve)
        offsets.push_back(static_cast<float>(point.y - point.x));
    if (curve.back().x < kLargest) {
        for (int x = static_cast<int>(curve.back().x + 1); x <= static_cast<int>(kLargest); ++x)
            offsets.push_back(static_cast<float>(kLargest - x));
    }
    return offsets;
}

} // namespace lamina
