#include "platform/base/CGAffineTransform.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/UIColor.h"
#include "platform/base/WorkerPool.h"
#include "platform/image/drawing/CGContext_p.h"
#include "platform/image/drawing/Compositing_p.h"
#include "platform/image/drawing/CoverageMask_p.h"
#include "platform/image/drawing/CoverageRow_p.h"
#include "platform/image/drawing/PathOutline_p.h"
#include "platform/image/drawing/Rasterizer_p.h"
#include "platform/image/drawing/Surface_p.h"
#include "platform/image/drawing/UIBezierPath.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace lamina {

namespace {

/// Calls `put(dst, coverage, pixels)` for every row of `area`; null coverage means all of it.
template <class Shape, class Put>
void forRows(Surface& surface, const ClipState& clip, const IntRect& area, const Shape& shape, Put put)
{
    const auto width = static_cast<std::size_t>(area.width);
    parallelRows(area.y, area.bottom(), width, [&](int begin, int end) {
        CoverageRow coverage(width);
        for (int y = begin; y < end; ++y) {
            coverage.start(shape.row(area.x, y, area.width, coverage.scratch()));
            if (clip.mask)
                coverage.multiply(clip.mask.at(area.x, y));
            put(surface.at(area.x, y), coverage.get(), width);
        }
    });
}

struct MaskShape {
    const CoverageMask& mask;
    const std::uint8_t* row(int x, int y, int, std::uint8_t*) const { return mask.at(x, y); }
};

} // namespace

void CGContext::Impl::fillRect(const CGRect& rect)
{
    const CGAffineTransform& t = state.ctm;
    const bool upright = (t.b == 0 && t.c == 0) || (t.a == 0 && t.d == 0);
    if (!upright) {
        Rasterizer rasterizer;
        rasterizer.addPath(UIBezierPath::withRect(rect), t);
        fillPolygons(rasterizer, false, state.fillColor);
        return;
    }
    const RectCoverage shape(t.boundingBox(rect), state.antialias);
    withShadow(shape.bounds(), [&] {
        const IntRect area = shape.bounds().intersection(clipBounds());
        Surface* surface = area.isEmpty() ? nullptr : target();
        if (!surface)
            return;
        const Ink ink = colors.ink(state.fillColor, state.alpha);
        const RowBlender rows = blender();
        forRows(*surface, state.clip, area, shape, [&](std::uint8_t* dst, const std::uint8_t* coverage, std::size_t n) {
            rows.ink(dst, ink, coverage, n);
        });
    });
}

void CGContext::Impl::erase(const CGRect& rect)
{
    const CGAffineTransform& t = state.ctm;
    const bool upright = (t.b == 0 && t.c == 0) || (t.a == 0 && t.d == 0);
    const auto eraseShape = [&](const auto& shape, const IntRect& bounds) {
        const IntRect area = bounds.intersection(clipBounds());
        Surface* surface = area.isEmpty() ? nullptr : target();
        if (!surface)
            return;
        const RowBlender rows = blender(CGBlendMode::Clear);
        forRows(*surface, state.clip, area, shape, [&](std::uint8_t* dst, const std::uint8_t* coverage, std::size_t n) {
            rows.ink(dst, {}, coverage, n);
        });
    };
    if (upright) {
        const RectCoverage shape(t.boundingBox(rect), state.antialias);
        eraseShape(shape, shape.bounds());
        return;
    }
    Rasterizer rasterizer;
    rasterizer.addPath(UIBezierPath::withRect(rect), t);
    const CoverageMask mask = rasterizer.render(clipBounds(), {false, state.antialias});
    eraseShape(MaskShape{mask}, mask.bounds());
}

void CGContext::Impl::fillPolygons(const Rasterizer& rasterizer, bool evenOdd, const UIColor& color)
{
    const UIColor inkColor = color; // the state that may hold it changes below
    withShadow(rasterizer.bounds(), [&] {
        const CoverageMask mask = rasterizer.render(clipBounds(), {evenOdd, state.antialias});
        Surface* surface = mask ? target() : nullptr;
        if (!surface)
            return;
        const Ink ink = colors.ink(inkColor, state.alpha);
        const RowBlender rows = blender();
        forRows(
            *surface, state.clip, mask.bounds(), MaskShape{mask},
            [&](std::uint8_t* dst, const std::uint8_t* coverage, std::size_t n) { rows.ink(dst, ink, coverage, n); });
    });
}

void CGContext::fillRect(const CGRect& rect)
{
    m_impl->fillRect(rect);
}

void CGContext::clearRect(const CGRect& rect)
{
    m_impl->erase(rect);
}

void CGContext::fillPath(const UIBezierPath& path)
{
    Rasterizer rasterizer;
    rasterizer.addPath(path, m_impl->state.ctm);
    m_impl->fillPolygons(rasterizer, path.usesEvenOddFillRule, m_impl->state.fillColor);
}

void CGContext::strokePath(const UIBezierPath& path)
{
    const CGAffineTransform& t = m_impl->state.ctm;
    if (!(path.lineWidth > 0) || !std::isfinite(path.lineWidth) || !t.isFinite())
        return;
    // The tolerance holds on the device, the outline is made in user space, where the pen is round.
    const double stretch = std::max(std::hypot(t.a, t.b), std::hypot(t.c, t.d));
    if (!(stretch > 0))
        return;
    constexpr double kTolerance = 0.01;
    Rasterizer rasterizer;
    for (std::vector<CGPoint>& polygon : strokeOutline(path, kTolerance / stretch)) {
        for (CGPoint& corner : polygon)
            corner = t.apply(corner);
        rasterizer.addPolygon(polygon);
    }
    m_impl->fillPolygons(rasterizer, false, m_impl->state.strokeColor);
}

} // namespace lamina
