#include "platform/image/drawing/CGContext_p.h"

#include "platform/base/UIScreen.h"
#include "platform/image/pixels/CGColorSpace.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>

namespace lamina {

namespace {

/// Sides beyond this are mistakes; products of them would overflow.
constexpr int kLongestSide = 1 << 20;

std::optional<SurfaceKind> kindOf(const CGColorSpace& space, CGBitmapInfo info)
{
    const auto alpha = static_cast<CGImageAlphaInfo>(info & kCGBitmapAlphaInfoMask);
    const CGBitmapInfo order = info & kCGBitmapByteOrderMask;
    if ((info & ~(kCGBitmapAlphaInfoMask | kCGBitmapByteOrderMask)) != 0)
        return std::nullopt;
    const bool plainOrder = order == kCGBitmapByteOrderDefault;
    switch (space.model()) {
    case CGColorSpace::Model::Gray:
        return alpha == CGImageAlphaInfo::None && plainOrder ? std::optional(SurfaceKind::Gray) : std::nullopt;
    case CGColorSpace::Model::AlphaOnly:
        return alpha == CGImageAlphaInfo::Only && plainOrder ? std::optional(SurfaceKind::Alpha) : std::nullopt;
    case CGColorSpace::Model::CMYK:
        return alpha == CGImageAlphaInfo::None && plainOrder ? std::optional(SurfaceKind::CMYK) : std::nullopt;
    case CGColorSpace::Model::RGB:
        break;
    }
    const bool bytes = plainOrder || order == kCGBitmapByteOrder32Little || order == kCGBitmapByteOrder32Big;
    const bool known = isPremultiplied(alpha) || skipsAlpha(alpha);
    return known && bytes ? std::optional(SurfaceKind::RGBA) : std::nullopt;
}

} // namespace

CGContext::Impl::Impl(Surface surface, const CGImageLayout& pictureLayout, const CGAffineTransform& base,
                      double pixelsPerPoint)
    : bottom(std::move(surface))
    , layout(pictureLayout)
    , scale(pixelsPerPoint)
    , colors(pictureLayout.colorSpace)
{
    state.ctm = base;
    state.clip.bounds = bottom.bounds();
    if (isRGB() && skipsAlpha(layout.alphaInfo()))
        bottom.makeOpaque();
}

std::optional<CGContext> CGContext::bitmap(int width, int height, std::size_t bytesPerRow, const CGColorSpace& space,
                                           CGBitmapInfo info)
{
    const std::optional<SurfaceKind> kind = kindOf(space, info);
    if (!kind || width <= 0 || height <= 0 || width > kLongestSide || height > kLongestSide)
        return std::nullopt;
    std::optional<Surface> surface = Surface::make(*kind, {0, 0, width, height}, bytesPerRow);
    if (!surface)
        return std::nullopt;
    CGImageLayout layout{width, height, surface->bytesPerRow(), 8, 8 * surface->channels(), info, space};
    const CGAffineTransform base{1, 0, 0, -1, 0, static_cast<double>(height)};
    return CGContext(std::make_unique<Impl>(std::move(*surface), layout, base, 1.0));
}

std::optional<CGContext> CGContext::image(CGSize size, bool opaque, double scale)
{
    if (scale == 0)
        scale = UIScreen::main().scale;
    // A size that is a whole number of pixels but for the last bits of the product must not gain a row.
    const auto pixels = [&](double points) { return std::ceil(points * scale - kPixelNoise); };
    const double width = pixels(size.width);
    const double height = pixels(size.height);
    if (!(scale > 0) || !(width >= 1 && width <= kLongestSide) || !(height >= 1 && height <= kLongestSide))
        return std::nullopt;
    const CGImageLayout layout =
        CGImageLayout::rgba(static_cast<int>(width), static_cast<int>(height),
                            opaque ? CGImageAlphaInfo::NoneSkipLast : CGImageAlphaInfo::PremultipliedLast);
    std::optional<Surface> surface = Surface::make(SurfaceKind::RGBA, {0, 0, layout.width, layout.height});
    if (!surface)
        return std::nullopt;
    return CGContext(
        std::make_unique<Impl>(std::move(*surface), layout, CGAffineTransform::scaling(scale, scale), scale));
}

CGContext::CGContext(std::unique_ptr<Impl> impl)
    : m_impl(std::move(impl))
{
}

CGContext::CGContext(CGContext&&) noexcept = default;
CGContext& CGContext::operator=(CGContext&&) noexcept = default;
CGContext::~CGContext() = default;

int CGContext::width() const
{
    return m_impl->bottom.bounds().width;
}

int CGContext::height() const
{
    return m_impl->bottom.bounds().height;
}

double CGContext::scale() const
{
    return m_impl->scale;
}

void CGContext::saveGState()
{
    m_impl->saved.push_back(m_impl->state);
}

void CGContext::restoreGState()
{
    const std::size_t depth = m_impl->layers.empty() ? 0 : m_impl->layers.back().savedDepth;
    if (m_impl->saved.size() <= depth)
        return;
    m_impl->state = std::move(m_impl->saved.back());
    m_impl->saved.pop_back();
}

CGAffineTransform CGContext::deviceTransform() const
{
    return m_impl->state.ctm;
}

void CGContext::concatCTM(const CGAffineTransform& transform)
{
    m_impl->state.ctm = transform.concatenating(m_impl->state.ctm);
}

void CGContext::setAlpha(double alpha)
{
    m_impl->state.alpha = alpha > 0 ? std::min(alpha, 1.0) : 0;
}

void CGContext::setBlendMode(CGBlendMode mode)
{
    m_impl->state.blendMode = mode;
}

void CGContext::setFillColor(const UIColor& color)
{
    m_impl->state.fillColor = color;
}

void CGContext::setStrokeColor(const UIColor& color)
{
    m_impl->state.strokeColor = color;
}

void CGContext::setShouldAntialias(bool antialias)
{
    m_impl->state.antialias = antialias;
}

void CGContext::setInterpolationQuality(Interpolation quality)
{
    m_impl->state.interpolation = quality;
}

IntRect CGContext::clipBounds() const
{
    return m_impl->clipBounds();
}

bool CGContext::Impl::keepsOpaque() const
{
    return layers.empty() && skipsAlpha(layout.alphaInfo());
}

RowBlender CGContext::Impl::blender(CGBlendMode mode) const
{
    return {mode, bottom.channels(), isRGB() && keepsOpaque()};
}

Surface* CGContext::Impl::target()
{
    if (layers.empty())
        return bottom.detach() ? &bottom : nullptr;
    std::optional<Surface>& surface = layers.back().surface;
    return surface ? &*surface : nullptr;
}

} // namespace lamina
