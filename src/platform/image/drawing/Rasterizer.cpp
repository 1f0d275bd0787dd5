#include "platform/image/drawing/Rasterizer_p.h"

#include "platform/base/WorkerPool.h"
#include "platform/image/drawing/DeviceBounds_p.h"
#include "platform/image/pixels/PixelBuffer.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

// Exact area coverage by summed signed areas: the accumulation buffer of font rasterizers, as R. Levien describes it
// ("Inside the fastest font renderer in the world", 2016), here in whole steps.

namespace lamina {

namespace {

/// Chords lie inside the curve all along: a hundredth of a pixel is what coverage of 1/255 can just tell.
constexpr double kTolerance = 0.01;
/// Rows that are summed up together: the edges are looked through once for all of them.
constexpr int kBandRows = 16;

/// Coverage is summed up in whole steps of this share of a pixel: sums of whole numbers don't depend on where they
/// begin, so that a part of an outline gets exactly the bytes of the whole.
constexpr std::int32_t kFullCoverage = 1 << 16;

/// Unsigned, because an outline that winds absurdly often must wrap around and not overflow.
using Steps = std::uint32_t;

Steps inSteps(double share)
{
    return static_cast<Steps>(static_cast<std::int32_t>(std::lround(share * kFullCoverage)));
}

/// The integral over t in [0, length] of max(0, x - t).
double ramp(double x, double length)
{
    const double inside = std::clamp(x, 0.0, length);
    return inside * inside / 2 + length * std::max(0.0, x - length);
}

/// Adds to `sums`, which begins at pixel `origin`, what an edge piece inside one row changes from pixel to pixel: it
/// runs from `xa` to `xb` while it goes down by `height` (signed). What lies to its right is covered by `height`, the
/// pixels it crosses by their share.
void addPiece(Steps* sums, int origin, int width, double xa, double xb, double height)
{
    const double left = std::min(xa, xb);
    const double length = std::max(xa, xb) - left;
    const Steps all = inSteps(height);
    if (left >= origin + width)
        return;
    if (left + length <= origin) {
        sums[0] += all;
        return;
    }
    if (length < 1e-9) {
        const int x = static_cast<int>(std::floor(left));
        const Steps share = inSteps(height * (x + 1 - left));
        if (x >= origin)
            sums[x - origin] += share;
        else
            sums[0] += share;
        sums[x + 1 - origin] += all - share;
        return;
    }
    const int first = std::max(origin, static_cast<int>(std::floor(left)));
    const int last = static_cast<int>(std::min<double>(origin + width, std::ceil(left + length)));
    Steps before = 0;
    double low = ramp(first - left, length);
    for (int x = first; x < last; ++x) {
        const double high = ramp(x + 1 - left, length);
        // What the piece leaves to its right inside this pixel.
        const Steps share = inSteps(height * ((high - low) / length));
        sums[x - origin] += share - before;
        before = share;
        low = high;
    }
    sums[last - origin] += all - before;
}

} // namespace

void Rasterizer::addPolygon(const std::vector<CGPoint>& corners)
{
    if (corners.size() < 2)
        return;
    const auto usable = [](const CGPoint& p) { return !std::isnan(p.x) && !std::isnan(p.y); };
    if (!std::all_of(corners.begin(), corners.end(), usable))
        return;
    const auto near = [](const CGPoint& p) {
        return CGPoint{std::clamp(p.x, -kFarthestPlace, kFarthestPlace),
                       std::clamp(p.y, -kFarthestPlace, kFarthestPlace)};
    };
    CGPoint from = near(corners.back());
    for (const CGPoint& corner : corners) {
        const CGPoint to = near(corner);
        if (from.y < to.y)
            m_edges.push_back({from, to, 1});
        else if (from.y > to.y)
            m_edges.push_back({to, from, -1});
        from = to;
    }
}

void Rasterizer::addPath(const UIBezierPath& path, const CGAffineTransform& toDevice)
{
    UIBezierPath onDevice = path;
    onDevice.applyTransform(toDevice);
    for (const std::vector<CGPoint>& polygon : flattened(onDevice, kTolerance))
        addPolygon(polygon);
}

IntRect Rasterizer::bounds() const
{
    if (m_edges.empty())
        return {};
    CGPoint low = m_edges.front().top;
    CGPoint high = low;
    for (const Edge& edge : m_edges) {
        low = {std::min({low.x, edge.top.x, edge.bottom.x}), std::min(low.y, edge.top.y)};
        high = {std::max({high.x, edge.top.x, edge.bottom.x}), std::max(high.y, edge.bottom.y)};
    }
    return deviceCover({low.x, low.y, high.x - low.x, high.y - low.y});
}

CoverageMask Rasterizer::render(const IntRect& area, const Rules& rules) const
{
    const IntRect inside = area.intersection(bounds());
    if (inside.isEmpty())
        return {};
    const auto width = static_cast<std::size_t>(inside.width);
    PixelBuffer bytes = PixelBuffer::allocate(width * static_cast<std::size_t>(inside.height));
    if (!bytes)
        return {};
    std::vector<Edge> edges;
    for (const Edge& edge : m_edges) {
        if (edge.bottom.y > inside.y && edge.top.y < inside.bottom())
            edges.push_back(edge);
    }
    std::sort(edges.begin(), edges.end(), [](const Edge& a, const Edge& b) { return a.top.y < b.top.y; });
    parallelRows(inside.y, inside.bottom(), width, [&](int begin, int end) {
        for (int y = begin; y < end; y += kBandRows)
            renderRows(inside, rules, edges, y, std::min(end, y + kBandRows),
                       bytes.data() + static_cast<std::size_t>(y - inside.y) * width);
    });
    return {inside, std::move(bytes)};
}

namespace {

std::uint8_t coverageOf(Steps sum, bool evenOdd)
{
    // The lowest number has no opposite; it is a whole number of windings.
    std::int64_t share = std::abs(std::int64_t{static_cast<std::int32_t>(sum)});
    if (evenOdd) {
        share %= 2 * kFullCoverage;
        share = share > kFullCoverage ? 2 * kFullCoverage - share : share;
    }
    return static_cast<std::uint8_t>((std::min<std::int64_t>(share, kFullCoverage) * 255 + kFullCoverage / 2) /
                                     kFullCoverage);
}

} // namespace

void Rasterizer::renderRows(const IntRect& area, const Rules& rules, const std::vector<Edge>& edges, int begin, int end,
                            std::uint8_t* out) const
{
    const int width = area.width;
    const std::size_t step = static_cast<std::size_t>(width) + 2;
    std::vector<Steps> sums(step * static_cast<std::size_t>(end - begin));
    for (const Edge& edge : edges) {
        if (edge.top.y >= end)
            break;
        if (edge.bottom.y <= begin)
            continue;
        const double slope = (edge.bottom.x - edge.top.x) / (edge.bottom.y - edge.top.y);
        const auto placeAt = [&](double y) {
            const double x = edge.top.x + (y - edge.top.y) * slope;
            return std::clamp(x, std::min(edge.top.x, edge.bottom.x), std::max(edge.top.x, edge.bottom.x));
        };
        const int firstRow = std::max(begin, static_cast<int>(std::floor(edge.top.y)));
        const int lastRow = std::min(end, static_cast<int>(std::ceil(edge.bottom.y)));
        for (int y = firstRow; y < lastRow; ++y) {
            Steps* row = sums.data() + static_cast<std::size_t>(y - begin) * step;
            if (rules.antialias) {
                const double from = std::max<double>(y, edge.top.y);
                const double to = std::min<double>(y + 1, edge.bottom.y);
                addPiece(row, area.x, width, placeAt(from), placeAt(to), (to - from) * edge.direction);
            } else if (y + 0.5 >= edge.top.y && y + 0.5 < edge.bottom.y) {
                const double x = std::clamp<double>(std::ceil(placeAt(y + 0.5) - 0.5), area.x, area.right());
                row[static_cast<int>(x) - area.x] += inSteps(edge.direction);
            }
        }
    }
    for (int y = begin; y < end; ++y) {
        const Steps* row = sums.data() + static_cast<std::size_t>(y - begin) * step;
        Steps sum = 0;
        for (int x = 0; x < width; ++x) {
            sum += row[x];
            *out++ = coverageOf(sum, rules.evenOdd);
        }
    }
}

} // namespace lamina
