#include "platform/image/drawing/PathOutline_p.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numeric>

namespace lamina {

namespace {

/// More pieces than this of one part is a pattern too fine to be seen.
constexpr double kMostDashes = 100000;

/// Where in the pattern a place of the line lies.
struct DashPlace {
    std::size_t index = 0; ///< even ones are drawn
    double left = 0;       ///< length until the next one
};

DashPlace startOf(const std::vector<double>& dash, double phase, double period)
{
    double into = phase - std::floor(phase / period) * period;
    std::size_t index = 0;
    while (into > 0 && into >= dash[index % dash.size()] && index < 2 * dash.size())
        into -= dash[index++ % dash.size()];
    return {index, dash[index % dash.size()] - into};
}

/// One part cut up; `dash` has an even number of lengths.
void addDashes(const FlatPart& part, const std::vector<double>& dash, DashPlace place, std::vector<FlatPart>& out)
{
    bool drawing = false;
    const std::size_t count = part.points.size();
    for (std::size_t i = 1; i < count + (part.closed ? 1 : 0); ++i) {
        const CGPoint from = part.points[i - 1];
        const CGPoint to = part.points[i % count];
        const double length = std::hypot(to.x - from.x, to.y - from.y);
        const auto at = [&](double along) {
            return CGPoint{from.x + (to.x - from.x) * along / length, from.y + (to.y - from.y) * along / length};
        };
        double done = 0;
        while (length > 0 && done < length) {
            if (place.index % 2 == 0 && !drawing)
                out.push_back({{at(done)}, false});
            drawing = place.index % 2 == 0;
            const double step = std::min(place.left, length - done);
            done = place.left > length - done ? length : done + step;
            if (drawing)
                out.back().points.push_back(at(done));
            place.left -= step;
            if (place.left > 0)
                continue;
            place.left = dash[++place.index % dash.size()];
            drawing = false;
        }
    }
}

double lengthOf(const FlatPart& part)
{
    double length = 0;
    for (std::size_t i = 1; i < part.points.size(); ++i)
        length += std::hypot(part.points[i].x - part.points[i - 1].x, part.points[i].y - part.points[i - 1].y);
    return length;
}

} // namespace

std::vector<FlatPart> dashed(std::vector<FlatPart> parts, const std::vector<double>& pattern, double phase)
{
    std::vector<double> dash = pattern;
    if (dash.size() % 2 != 0)
        dash.insert(dash.end(), pattern.begin(), pattern.end());
    const double period = std::accumulate(dash.begin(), dash.end(), 0.0);
    const bool sane = std::all_of(dash.begin(), dash.end(), [](double length) { return length >= 0; });
    if (!sane || !(period > 0) || !std::isfinite(period) || !std::isfinite(phase))
        return parts;
    std::vector<FlatPart> out;
    for (FlatPart& part : parts) {
        const double pieces = lengthOf(part) / period * static_cast<double>(dash.size());
        if (pieces < kMostDashes) // not for a length that is no number
            addDashes(part, dash, startOf(dash, phase, period), out);
        else
            out.push_back(std::move(part));
    }
    return out;
}

} // namespace lamina
