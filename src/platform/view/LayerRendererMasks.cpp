#include "platform/image/drawing/UIBezierPath.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/view/CAShapeLayer.h"
#include "platform/view/LayerRenderer.h"

#include <algorithm>
#include <cstddef>
#include <optional>

namespace lamina {

namespace {

/// Whether nothing but one picture or one drawing of its own is to be seen of the layer, unaltered.
bool isBare(const CALayer& layer)
{
    return layer.opacity() == 1 && !layer.backgroundColor() && !(layer.borderWidth() > 0) && !layer.masksToBounds() &&
           !LayerRenderer::castsShadow(layer) && !layer.mask() && layer.sublayers().empty();
}

} // namespace

bool LayerRenderer::clipToMask(const CALayer& layer)
{
    const CALayer& mask = *layer.mask();
    const CGAffineTransform toDevice = mask.transformToParent().concatenating(m_context.deviceTransform());
    const IntRect seen = treePixels(mask, toDevice).intersection(m_context.clipBounds());
    if (seen.isEmpty())
        return false;
    if (const std::optional<UIBezierPath> cut = cutOf(layer)) {
        m_context.clipToPath(*cut);
        return true;
    }
    if (isBare(mask) && clipToPictureOf(mask))
        return true;
    return clipToDrawingOf(mask, seen);
}

std::optional<UIBezierPath> LayerRenderer::cutOf(const CALayer& layer)
{
    const auto* shape = dynamic_cast<const CAShapeLayer*>(layer.mask().get());
    if (!shape || shape->isHidden() || !isBare(*shape) || shape->contents() || shape->strokeColor() ||
        !shape->fillColor() || shape->fillColor()->alpha != 1)
        return std::nullopt;
    UIBezierPath path = shape->path();
    path.applyTransform(shape->transformToParent());
    return path;
}

std::size_t LayerRenderer::endOfSharing(const CALayer& parent, std::size_t first)
{
    if (!parent.sharesEdges())
        return first;
    std::size_t end = first;
    while (end < parent.sublayers().size() && cutOf(*parent.sublayers()[end]))
        ++end;
    return end;
}

bool LayerRenderer::clipToPictureOf(const CALayer& mask)
{
    const UIImage& picture = mask.contents();
    const CGAffineTransform t = mask.transformToParent();
    // A picture without alpha lets all through, however dark it is: its outline is drawn instead.
    const bool plain = picture && picture.cgImage().hasAlpha() && !picture.cgImage().mask() &&
                       picture.imageOrientation() == UIImageOrientation::Up;
    if (!plain || !mask.drawnBounds().isEmpty() || !t.isAxisAligned() || !(t.a > 0) || !(t.d > 0) ||
        !(m_context.deviceTransform().determinant() > 0))
        return false;
    m_context.clipToMask(t.boundingBox(mask.contentsRect()), picture.cgImage());
    return true;
}

bool LayerRenderer::clipToDrawingOf(const CALayer& mask, const IntRect& seen)
{
    const CGAffineTransform toDevice = m_context.deviceTransform();
    const std::optional<CGAffineTransform> fromDevice = toDevice.inverted();
    if (!fromDevice)
        return false;
    // It starts at the device's origin, so that a mask drawn for a part gets exactly the bytes of one drawn for all.
    const int left = std::min(0, seen.x);
    const int top = std::min(0, seen.y);
    std::optional<CGContext> drawing = CGContext::image(
        {static_cast<double>(seen.right() - left), static_cast<double>(seen.bottom() - top)}, false, 1);
    if (!drawing)
        return false;
    drawing->translateCTM(-left, -top);
    drawing->clipToRect({static_cast<double>(seen.x), static_cast<double>(seen.y), static_cast<double>(seen.width),
                         static_cast<double>(seen.height)});
    drawing->concatCTM(toDevice);
    LayerRenderer(*drawing).drawPlaced(mask, 1);
    m_context.concatCTM(*fromDevice);
    m_context.clipToMask({static_cast<double>(left), static_cast<double>(top), static_cast<double>(drawing->width()),
                          static_cast<double>(drawing->height())},
                         drawing->makeImage());
    m_context.concatCTM(toDevice);
    return true;
}

} // namespace lamina
