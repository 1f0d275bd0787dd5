#include "platform/view/ImageRendering.h"

#include "platform/base/CGGeometry.h"
#include "platform/base/UIColor.h"
#include "platform/base/UIScreen.h"
#include "platform/image/drawing/CGContext.h"
#include "platform/view/CALayer.h"
#include "platform/view/UIScrollView.h"

#include <cmath>
#include <optional>

namespace lamina {

namespace {

bool isWhole(double pixels)
{
    constexpr double kRounding = 1e-6; // of the product of a length and a scale
    return std::abs(pixels - std::round(pixels)) < kRounding;
}

/// Whether the background leaves no pixel of a picture of the bounds' size to see through.
bool hasOpaqueGround(const CALayer& layer, CGPoint offset, double scale)
{
    const CGRect bounds = layer.bounds();
    const std::optional<UIColor> ground = layer.backgroundColor();
    const bool opaque = ground && ground->alpha >= 1 && layer.opacity() >= 1 && !layer.isHidden() && !layer.mask();
    const bool inCorner = bounds.origin.x + offset.x == 0 && bounds.origin.y + offset.y == 0;
    return opaque && inCorner && layer.cornerRadius() == 0 && isWhole(bounds.size.width * scale) &&
           isWhole(bounds.size.height * scale);
}

/// The layer's own coordinates, moved by `offset` points, on a surface of the bounds' size.
UIImage rendered(const UIView& view, CGPoint offset, double scale)
{
    if (scale == 0)
        scale = UIScreen::main().scale;
    const bool opaque = view.isOpaque() || hasOpaqueGround(view.layer(), offset, scale);
    std::optional<CGContext> context = CGContext::image(view.bounds().size, opaque, scale);
    if (!context)
        return {};
    context->translateCTM(offset.x, offset.y);
    view.layer().renderInContext(*context);
    return context->makeUIImage();
}

} // namespace

UIImage imageByRenderingView(const UIView& view, double scale)
{
    return rendered(view, {0, 0}, scale);
}

UIImage imageByRenderingCurrentVisibleRect(const UIScrollView& scrollView)
{
    return rendered(scrollView, {0, -scrollView.contentOffset().y}, 0);
}

} // namespace lamina
