#include "platform/view/LayerRenderer.h"

#include <algorithm>
#include <cmath>

namespace lamina {

namespace {

bool hasBackground(const CALayer& layer)
{
    return layer.backgroundColor() && layer.backgroundColor()->alpha > 0;
}

bool hasBorder(const CALayer& layer)
{
    return layer.borderWidth() > 0 && layer.borderColor().alpha > 0;
}

/// As `rect` is seen through the layer's clip.
CGRect clipped(const CALayer& layer, const CGRect& rect)
{
    return layer.masksToBounds() ? rect.intersection(layer.bounds()) : rect;
}

/// Whether anything is painted by the layer or one above it, clips not considered.
bool paintsAnything(const CALayer& layer)
{
    if (layer.isHidden() || layer.shown().opacity <= 0)
        return false;
    if (LayerRenderer::paintsBounds(layer) || !LayerRenderer::innerBounds(layer).isEmpty())
        return true;
    const auto& sublayers = layer.sublayers();
    return std::any_of(sublayers.begin(), sublayers.end(),
                       [](const auto& sublayer) { return paintsAnything(*sublayer); });
}

/// Within what a device can have, so that sums stay far from overflowing.
int wholePixels(double length)
{
    constexpr double kFarthest = 1 << 20;
    return static_cast<int>(std::ceil(std::clamp(length, -kFarthest, kFarthest)));
}

} // namespace

CGRect LayerRenderer::innerBounds(const CALayer& layer)
{
    return layer.contentsRect().unionWith(layer.drawnBounds());
}

bool LayerRenderer::paintsBounds(const CALayer& layer)
{
    return hasBackground(layer) || hasBorder(layer);
}

CGRect LayerRenderer::ownBounds(const CALayer& layer)
{
    const CGRect inside = clipped(layer, innerBounds(layer));
    return paintsBounds(layer) ? inside.unionWith(layer.bounds()) : inside;
}

bool LayerRenderer::hasSeveralParts(const CALayer& layer)
{
    int parts = 0;
    parts += hasBackground(layer);
    parts += hasBorder(layer);
    parts += static_cast<bool>(layer.contents());
    parts += layer.drawnBounds().isEmpty() ? 0 : 2; // what a subclass draws may overlap itself
    for (const auto& sublayer : layer.sublayers()) {
        if (parts > 1)
            break;
        parts += paintsAnything(*sublayer);
    }
    return parts > 1;
}

bool LayerRenderer::castsShadow(const CALayer& layer)
{
    const bool isMask = layer.m_maskedLayer != nullptr;
    return !isMask && layer.shadow().opacity > 0 && layer.shadow().color.alpha > 0;
}

CALayer::Shadow LayerRenderer::drawnShadow(const CALayer& layer)
{
    CALayer::Shadow shadow = layer.shadow();
    shadow.opacity = std::clamp(shadow.opacity, 0.0, 1.0);
    shadow.radius = std::max(0.0, shadow.radius);
    return shadow;
}

CGRect LayerRenderer::shadowBounds(const CALayer& layer, const CGRect& painted)
{
    if (painted.isEmpty())
        return {};
    constexpr double kRounding = 2; // of the offset to whole pixels
    const double reach = CGContext::shadowReach(drawnShadow(layer).radius) + kRounding;
    return painted.insetBy(-reach, -reach).offsetBy(layer.shadow().offset.width, layer.shadow().offset.height);
}

IntRect LayerRenderer::pixelCover(const CGRect& rect)
{
    constexpr double kRounding = 1e-3;
    constexpr int kFar = 1 << 28;
    if (rect.isEmpty())
        return {};
    return integralCover(rect.insetBy(-kRounding, -kRounding)).intersection({-kFar, -kFar, 2 * kFar, 2 * kFar});
}

IntRect LayerRenderer::ShadowPixels::of(const IntRect& rect) const
{
    return rect.isEmpty()
               ? IntRect()
               : IntRect{rect.x + x - reach, rect.y + y - reach, rect.width + 2 * reach, rect.height + 2 * reach};
}

IntRect LayerRenderer::ShadowPixels::castingOn(const IntRect& rect) const
{
    return ShadowPixels{-x, -y, reach}.of(rect);
}

LayerRenderer::ShadowPixels LayerRenderer::shadowPixels(const CALayer& layer, const CGAffineTransform& t)
{
    const CALayer::Shadow shadow = drawnShadow(layer);
    constexpr int kRounding = 2; // offset and blur act in whole pixels
    const double deviation = shadow.radius * std::sqrt(std::abs(t.determinant()));
    return {wholePixels(t.a * shadow.offset.width + t.c * shadow.offset.height),
            wholePixels(t.b * shadow.offset.width + t.d * shadow.offset.height),
            CGContext::shadowReach(deviation) + kRounding};
}

IntRect LayerRenderer::treePixels(const CALayer& layer, const CGAffineTransform& toDevice)
{
    if (layer.isHidden() || layer.shown().opacity <= 0)
        return {};
    IntRect pixels = bodyPixels(layer, toDevice);
    if (castsShadow(layer))
        pixels = pixels.unionWith(shadowPixels(layer, toDevice).of(pixels));
    if (!layer.mask())
        return pixels;
    return pixels.intersection(treePixels(*layer.mask(), layer.mask()->transformToParent().concatenating(toDevice)));
}

IntRect LayerRenderer::bodyPixels(const CALayer& layer, const CGAffineTransform& toDevice)
{
    const IntRect bounds = pixelCover(toDevice.boundingBox(layer.bounds()));
    IntRect pixels = pixelCover(toDevice.boundingBox(innerBounds(layer)));
    for (const auto& sublayer : layer.sublayers())
        pixels = pixels.unionWith(treePixels(*sublayer, sublayer->shownTransformToParent().concatenating(toDevice)));
    if (layer.masksToBounds())
        pixels = pixels.intersection(bounds);
    return paintsBounds(layer) ? pixels.unionWith(bounds) : pixels;
}

bool LayerRenderer::needsGroup(const CALayer& layer, double alpha)
{
    return (alpha < 1 || layer.mask()) && (castsShadow(layer) || hasSeveralParts(layer));
}

bool LayerRenderer::cutsCornersOfGroup(const CALayer& layer)
{
    return layer.masksToBounds() && layer.cornerRadius() > 0 && hasSeveralParts(layer);
}

} // namespace lamina
