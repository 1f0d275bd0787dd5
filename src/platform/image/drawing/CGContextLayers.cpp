#include "platform/base/CGGeometry.h"
#include "platform/base/UIColor.h"
#include "platform/base/WorkerPool.h"
#include "platform/image/drawing/CGContext_p.h"
#include "platform/image/drawing/Compositing_p.h"
#include "platform/image/drawing/CoverageRow_p.h"
#include "platform/image/drawing/DeviceBounds_p.h"
#include "platform/image/drawing/GaussianBlur_p.h"
#include "platform/image/drawing/Surface_p.h"
#include "platform/image/pixels/PixelArithmetic.h"
#include "platform/image/pixels/PixelBuffer.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>

namespace lamina {

namespace {

/// A shadow falls into sight from no further than this outside the bitmap, in pixels, so that layers stay bounded.
constexpr double kFarthestShadow = 1024;

int wholeOffset(double offset)
{
    return static_cast<int>(std::lround(std::clamp(offset, -1e6, 1e6)));
}

/// The alpha of a layer, with room around it for the blur.
struct AlphaPlane {
    IntRect bounds;
    PixelBuffer bytes;
};

std::optional<AlphaPlane> blurredAlpha(const Surface& layer, double sigma)
{
    const int reach = blurReach(sigma);
    const IntRect inner = layer.bounds();
    const int step = blurStep(sigma);
    const auto aligned = [&](int place) { return place - ((place % step) + step) % step; };
    const int left = aligned(inner.x - reach);
    const int top = aligned(inner.y - reach);
    AlphaPlane plane{{left, top, inner.right() + reach - left, inner.bottom() + reach - top}, {}};
    const auto width = static_cast<std::size_t>(plane.bounds.width);
    plane.bytes = PixelBuffer::zeroed(width * static_cast<std::size_t>(plane.bounds.height));
    if (!plane.bytes)
        return std::nullopt;
    for (int y = inner.y; y < inner.bottom(); ++y) {
        const std::uint8_t* in = layer.at(inner.x, y) + 3;
        std::uint8_t* out =
            plane.bytes.data() + static_cast<std::size_t>(y - plane.bounds.y) * width + (inner.x - left);
        for (int x = 0; x < inner.width; ++x)
            out[x] = in[4 * x];
    }
    if (!blurGaussian(plane.bytes, {plane.bounds.width, plane.bounds.height}, sigma))
        return std::nullopt;
    return plane;
}

} // namespace

int CGContext::shadowReach(double deviation)
{
    return blurReach(deviation);
}

void CGContext::setShadow(CGSize offset, double blur, const std::optional<UIColor>& color)
{
    const bool usable = isFinite(offset) && blur >= 0;
    m_impl->state.shadow.reset();
    if (!color || !(color->alpha > 0) || !usable)
        return;
    const double scale = m_impl->scale;
    m_impl->state.shadow =
        ShadowState{{offset.width * scale, offset.height * scale}, std::min(blur / 2 * scale, kLargestSigma), *color};
}

/// The pixels that a layer needs: what the clip shows, and what throws a shadow into it.
IntRect CGContext::Impl::layerArea(const IntRect& bounds) const
{
    const IntRect& clip = state.clip.bounds;
    if (!state.shadow || clip.isEmpty())
        return bounds.intersection(clip);
    const double dx = std::clamp(state.shadow->offset.width, -kFarthestShadow, kFarthestShadow);
    const double dy = std::clamp(state.shadow->offset.height, -kFarthestShadow, kFarthestShadow);
    const int reach = std::min(blurReach(state.shadow->sigma), static_cast<int>(kFarthestShadow));
    const IntRect casting{clip.x - wholeOffset(dx) - reach, clip.y - wholeOffset(dy) - reach, clip.width + 2 * reach,
                          clip.height + 2 * reach};
    return bounds.intersection(casting.unionWith(clip));
}

void CGContext::Impl::beginLayer(const IntRect& bounds)
{
    const IntRect area = layerArea(bounds);
    TransparencyLayer layer{Surface::make(SurfaceKind::RGBA, area), state, saved.size()};
    state.alpha = 1;
    state.blendMode = CGBlendMode::Normal;
    state.shadow.reset();
    state.clip = {layer.surface ? area : IntRect{}, {}};
    layers.push_back(std::move(layer));
}

void CGContext::Impl::endLayer()
{
    TransparencyLayer layer = std::move(layers.back());
    layers.pop_back();
    saved.resize(std::min(saved.size(), layer.savedDepth));
    state = std::move(layer.outside);
    if (!layer.surface)
        return;
    if (state.shadow && state.blendMode == CGBlendMode::Normal)
        compositeShadow(*layer.surface, *state.shadow);
    compositeLayer(*layer.surface);
}

void CGContext::Impl::compositeLayer(const Surface& layer)
{
    const IntRect area = layer.bounds().intersection(clipBounds());
    const bool seen = state.alpha > 0 || state.blendMode != CGBlendMode::Normal;
    Surface* surface = area.isEmpty() || !seen ? nullptr : target();
    if (!surface)
        return;
    const std::uint16_t alpha = widened(state.alpha);
    const RowBlender rows = blender();
    const auto width = static_cast<std::size_t>(area.width);
    parallelRows(area.y, area.bottom(), width, [&](int begin, int end) {
        for (int y = begin; y < end; ++y) {
            const std::uint8_t* coverage = state.clip.mask ? state.clip.mask.at(area.x, y) : nullptr;
            rows.pixels(surface->at(area.x, y), layer.at(area.x, y), coverage, alpha, width);
        }
    });
}

void CGContext::Impl::compositeShadow(const Surface& layer, const ShadowState& shadow)
{
    const std::optional<AlphaPlane> plane = blurredAlpha(layer, shadow.sigma);
    if (!plane)
        return;
    const int dx = wholeOffset(shadow.offset.width);
    const int dy = wholeOffset(shadow.offset.height);
    IntRect moved = plane->bounds;
    moved.x += dx;
    moved.y += dy;
    const IntRect area = moved.intersection(clipBounds());
    Surface* surface = area.isEmpty() ? nullptr : target();
    if (!surface)
        return;
    const Ink ink = colors.ink(shadow.color, state.alpha);
    const auto width = static_cast<std::size_t>(area.width);
    parallelRows(area.y, area.bottom(), width, [&](int begin, int end) {
        CoverageRow coverage(width);
        for (int y = begin; y < end; ++y) {
            coverage.start(plane->bytes.data() + static_cast<std::ptrdiff_t>(y - moved.y) * moved.width +
                           (area.x - moved.x));
            if (state.clip.mask)
                coverage.multiply(state.clip.mask.at(area.x, y));
            compositeInk(surface->channels(), surface->at(area.x, y), ink, coverage.get(), width);
        }
    });
}

void CGContext::beginTransparencyLayer(const std::optional<CGRect>& bounds)
{
    Impl& impl = *m_impl;
    if (!impl.isRGB())
        return;
    constexpr CGRect kEverywhere{-kFarthestPlace, -kFarthestPlace, 2 * kFarthestPlace, 2 * kFarthestPlace};
    const IntRect area = deviceCover(bounds ? impl.state.ctm.boundingBox(*bounds) : kEverywhere);
    impl.beginLayer(area);
}

void CGContext::endTransparencyLayer()
{
    if (m_impl->isRGB() && !m_impl->layers.empty())
        m_impl->endLayer();
}

} // namespace lamina
