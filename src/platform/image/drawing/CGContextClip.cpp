#include "platform/base/CGAffineTransform.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/WorkerPool.h"
#include "platform/image/drawing/CGContext_p.h"
#include "platform/image/drawing/Compositing_p.h"
#include "platform/image/drawing/CoverageMask_p.h"
#include "platform/image/drawing/ImageSampler_p.h"
#include "platform/image/drawing/Rasterizer_p.h"
#include "platform/image/drawing/UIBezierPath.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/PixelBuffer.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <optional>
#include <utility>
#include <vector>

namespace lamina {

namespace {

/// The upright image of a rectangle, when it has one.
std::optional<CGRect> uprightRect(const CGRect& rect, const CGAffineTransform& t)
{
    if ((t.b == 0 && t.c == 0) || (t.a == 0 && t.d == 0))
        return t.boundingBox(rect);
    return std::nullopt;
}

CoverageMask rendered(const RectCoverage& rect, const IntRect& area)
{
    const auto width = static_cast<std::size_t>(area.width);
    PixelBuffer bytes = PixelBuffer::allocate(width * static_cast<std::size_t>(area.height));
    if (!bytes)
        return {};
    for (int y = 0; y < area.height; ++y) {
        std::uint8_t* out = bytes.data() + static_cast<std::size_t>(y) * width;
        if (!rect.row(area.x, area.y + y, area.width, out))
            std::memset(out, 255, width);
    }
    return {area, std::move(bytes)};
}

} // namespace

void CGContext::Impl::intersectClip(const IntRect& bounds)
{
    state.clip.bounds = state.clip.bounds.intersection(bounds);
    if (state.clip.bounds.isEmpty())
        state.clip.mask = {};
}

void CGContext::Impl::intersectClip(const CoverageMask& mask)
{
    const CoverageMask before = std::move(state.clip.mask);
    state.clip.mask = {};
    intersectClip(mask.bounds());
    const IntRect area = state.clip.bounds;
    if (area.isEmpty())
        return;
    if (!before) {
        state.clip.mask = mask;
        return;
    }
    const auto width = static_cast<std::size_t>(area.width);
    PixelBuffer bytes = PixelBuffer::allocate(width * static_cast<std::size_t>(area.height));
    if (!bytes) {
        state.clip.bounds = {};
        return;
    }
    for (int y = 0; y < area.height; ++y) {
        std::uint8_t* out = bytes.data() + static_cast<std::size_t>(y) * width;
        std::memcpy(out, mask.at(area.x, area.y + y), width);
        multiplyCoverage(out, before.at(area.x, area.y + y), width);
    }
    state.clip.mask = CoverageMask(area, std::move(bytes));
}

void CGContext::clipToRect(const CGRect& rect)
{
    Impl& impl = *m_impl;
    const std::optional<CGRect> upright = uprightRect(rect, impl.state.ctm);
    if (!upright) {
        clipToPath(UIBezierPath::withRect(rect));
        return;
    }
    const RectCoverage coverage(*upright, impl.state.antialias);
    impl.intersectClip(coverage.bounds());
    if (!coverage.isWhole() && !impl.clipBounds().isEmpty())
        impl.intersectClip(rendered(coverage, impl.clipBounds()));
}

void CGContext::clipToPath(const UIBezierPath& path)
{
    Impl& impl = *m_impl;
    Rasterizer rasterizer;
    rasterizer.addPath(path, impl.state.ctm);
    impl.intersectClip(rasterizer.render(impl.clipBounds(), {path.usesEvenOddFillRule, impl.state.antialias}));
}

void CGContext::clipToMask(const CGRect& rect, const CGImage& mask)
{
    Impl& impl = *m_impl;
    if (!mask || rect.isEmpty()) {
        impl.intersectClip(IntRect{});
        return;
    }
    // As a picture drawn into the rectangle: its top edge lies at the top of the screen, whichever way y runs.
    const bool down = impl.state.ctm.determinant() > 0;
    const double sx = rect.size.width / mask.width();
    const double sy = rect.size.height / mask.height();
    const CGAffineTransform toUser = down ? CGAffineTransform{sx, 0, 0, sy, rect.minX(), rect.minY()}
                                          : CGAffineTransform{sx, 0, 0, -sy, rect.minX(), rect.maxY()};
    impl.intersectClip(impl.maskCoverage(mask, toUser.concatenating(impl.state.ctm), false));
}

CoverageMask CGContext::Impl::maskCoverage(const CGImage& mask, const CGAffineTransform& toDevice, bool inverted) const
{
    const ImageShape shape(mask.size(), toDevice, clipBounds(), state.antialias);
    const IntRect area = shape.bounds();
    if (area.isEmpty())
        return {};
    const auto width = static_cast<std::size_t>(area.width);
    PixelBuffer bytes = PixelBuffer::allocate(width * static_cast<std::size_t>(area.height));
    const std::optional<ImageSampler> sampler = ImageSampler::make(SourcePixels::coverage(mask, inverted), toDevice,
                                                                   area, state.interpolation == Interpolation::None);
    if (!bytes || !sampler)
        return {};
    parallelRows(area.y, area.bottom(), sampler->rowCost(), [&](int begin, int end) {
        ImageSampler::Band band(*sampler);
        std::vector<std::uint8_t> scratch(width);
        for (int y = begin; y < end; ++y) {
            std::uint8_t* out = bytes.data() + static_cast<std::size_t>(y - area.y) * width;
            std::memcpy(out, band.row(y, 0, area.width), width);
            if (const std::uint8_t* edge = shape.row(area.x, y, area.width, scratch.data()))
                multiplyCoverage(out, edge, width);
        }
    });
    return {area, std::move(bytes)};
}

} // namespace lamina
