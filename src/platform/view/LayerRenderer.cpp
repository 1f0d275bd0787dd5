#include "platform/view/LayerRenderer.h"

#include "platform/base/UIColor.h"
#include "platform/image/drawing/SharedEdges.h"
#include "platform/image/drawing/UIBezierPath.h"
#include "platform/image/drawing/UIImageDrawing.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/view/EdgeCopies.h"
#include "platform/view/PictureCopies.h"
#include "platform/view/PictureReductions.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

namespace lamina {

namespace {

class SavedState {
public:
    explicit SavedState(CGContext& context)
        : m_context(context)
    {
        m_context.saveGState();
    }
    ~SavedState() { m_context.restoreGState(); }
    SavedState(const SavedState&) = delete;
    SavedState& operator=(const SavedState&) = delete;

private:
    CGContext& m_context;
};

/// Turns by right angles leave something like 1e-16 where a zero belongs; with the zero, edges stay on pixel borders.
CGAffineTransform tidied(CGAffineTransform t)
{
    constexpr double kNothing = 1e-12;
    if (std::max(std::abs(t.b), std::abs(t.c)) < kNothing * std::min(std::abs(t.a), std::abs(t.d)))
        t.b = t.c = 0;
    else if (std::max(std::abs(t.a), std::abs(t.d)) < kNothing * std::min(std::abs(t.b), std::abs(t.c)))
        t.a = t.d = 0;
    return t;
}

bool covers(const CGRect& outer, const CGRect& inner)
{
    return inner.minX() >= outer.minX() && inner.maxX() <= outer.maxX() && inner.minY() >= outer.minY() &&
           inner.maxY() <= outer.maxY();
}

} // namespace

LayerRenderer::LayerRenderer(CGContext& context, PictureReductions* reductions, PictureCopies* copies,
                             EdgeCopies* edges)
    : m_context(context)
    , m_reductions(reductions)
    , m_copies(copies)
    , m_edges(edges)
{
}

void LayerRenderer::render(const CALayer& layer)
{
    const SavedState saved(m_context);
    draw(layer, 1);
}

void LayerRenderer::drawPlaced(const CALayer& layer, double inheritedAlpha)
{
    const SavedState saved(m_context);
    m_context.concatCTM(tidied(layer.shownTransformToParent()));
    draw(layer, inheritedAlpha);
}

void LayerRenderer::draw(const CALayer& layer, double inheritedAlpha)
{
    if (layer.isHidden() || inheritedAlpha * layer.shown().opacity <= 0)
        return;
    if (!castsShadow(layer) && layer.masksToBounds() && !isSeen(layer.bounds()))
        return;
    const SavedState saved(m_context);
    if (!layer.mask() || clipToMask(layer))
        drawUnmasked(layer, inheritedAlpha);
}

void LayerRenderer::drawUnmasked(const CALayer& layer, double inheritedAlpha)
{
    const double alpha = inheritedAlpha * layer.shown().opacity;
    if (layer.isHidden() || alpha <= 0)
        return;
    if (castsShadow(layer)) {
        drawWithShadow(layer, alpha);
    } else if (needsGroup(layer, alpha) && !cutsCornersOfGroup(layer)) {
        m_context.setAlpha(alpha);
        m_context.beginTransparencyLayer(inUserSpace(bodyPixels(layer, m_context.deviceTransform())));
        drawParts(layer, 1, false);
        m_context.endTransparencyLayer();
    } else {
        drawBody(layer, alpha);
    }
}

void LayerRenderer::drawBody(const CALayer& layer, double alpha)
{
    if (!cutsCornersOfGroup(layer)) {
        drawParts(layer, alpha, false);
        return;
    }
    const SavedState saved(m_context);
    clipToBounds(layer);
    m_context.setAlpha(alpha);
    m_context.beginTransparencyLayer(layer.bounds());
    drawParts(layer, 1, true);
    m_context.endTransparencyLayer();
}

void LayerRenderer::drawWithShadow(const CALayer& layer, double alpha)
{
    const CGAffineTransform t = m_context.deviceTransform();
    const IntRect pixels = treePixels(layer, t);
    if (pixels.intersection(m_context.clipBounds()).isEmpty())
        return;
    // The shadow must not be seen through the layer, so the group's alpha acts on both together.
    const bool group = needsGroup(layer, alpha);
    if (group) {
        m_context.setAlpha(alpha);
        m_context.beginTransparencyLayer(inUserSpace(pixels));
    }
    const CALayer::Shadow shadow = drawnShadow(layer);
    const double scale = m_context.scale();
    const CGSize offset{(t.a * shadow.offset.width + t.c * shadow.offset.height) / scale,
                        (t.b * shadow.offset.width + t.d * shadow.offset.height) / scale};
    const double deviation = shadow.radius * std::sqrt(std::abs(t.determinant())) / scale;
    m_context.saveGState();
    m_context.setAlpha(1);
    // The context speaks of a blur's width, which is two standard deviations.
    m_context.setShadow(offset, 2 * deviation, shadow.color.withAlpha(shadow.color.alpha * shadow.opacity));
    m_context.beginTransparencyLayer(inUserSpace(bodyPixels(layer, t)));
    drawBody(layer, 1);
    m_context.endTransparencyLayer();
    m_context.restoreGState();
    if (group)
        m_context.endTransparencyLayer();
}

void LayerRenderer::drawParts(const CALayer& layer, double alpha, bool square)
{
    drawBackground(layer, alpha, square);
    const CGRect drawn = layer.drawnBounds();
    const CGRect contents = layer.contentsRect();
    const bool clips = layer.masksToBounds() && !square;
    // A picture that keeps inside needs no clip, and its edges are not to be softened twice.
    const bool clipsContents = clips && (layer.cornerRadius() > 0 || !covers(layer.bounds(), contents));
    if (!clipsContents)
        drawContents(layer, alpha);
    if (!layer.sublayers().empty() || !drawn.isEmpty() || (clipsContents && layer.contents())) {
        const SavedState saved(m_context);
        if (clips)
            clipToBounds(layer);
        if (clipsContents)
            drawContents(layer, alpha);
        if (!drawn.isEmpty() && isSeen(drawn)) {
            const SavedState inner(m_context);
            m_context.setAlpha(alpha);
            layer.drawInContext(m_context);
        }
        drawSublayers(layer, alpha);
    }
    drawBorder(layer, alpha, square);
}

void LayerRenderer::drawSublayers(const CALayer& layer, double alpha)
{
    const std::size_t count = layer.sublayers().size();
    for (std::size_t next = 0; next < count;) {
        const std::size_t end = endOfSharing(layer, next);
        if (end > next)
            drawSharing(layer, next, end, alpha);
        else
            drawPlaced(*layer.sublayers()[next], alpha);
        next = std::max(end, next + 1);
    }
}

void LayerRenderer::drawSharing(const CALayer& parent, std::size_t first, std::size_t end, double alpha)
{
    std::vector<UIBezierPath> outlines;
    for (std::size_t i = first; i < end; ++i) {
        const CALayer& layer = *parent.sublayers()[i];
        outlines.push_back(cutOf(layer).value_or(UIBezierPath()));
        outlines.back().applyTransform(
            tidied(layer.shownTransformToParent()).concatenating(m_context.deviceTransform()));
    }
    const auto draw = [&](std::size_t outline) {
        const CALayer& layer = *parent.sublayers()[first + outline];
        m_context.concatCTM(tidied(layer.shownTransformToParent()));
        drawUnmasked(layer, alpha);
    };
    if (m_edges)
        m_context.drawSharingEdges(m_edges->of(std::move(outlines), m_context), draw);
    else
        m_context.drawSharingEdges(SharedEdges(outlines, m_context.clipBounds()), draw);
}

void LayerRenderer::drawBackground(const CALayer& layer, double alpha, bool square)
{
    const std::optional<UIColor> color = layer.backgroundColor();
    if (!color || !(color->alpha > 0) || !isSeen(layer.bounds()))
        return;
    m_context.setAlpha(alpha);
    m_context.setFillColor(*color);
    if (layer.cornerRadius() > 0 && !square)
        m_context.fillPath(UIBezierPath::withRoundedRect(layer.bounds(), layer.cornerRadius()));
    else
        m_context.fillRect(layer.bounds());
}

void LayerRenderer::drawContents(const CALayer& layer, double alpha)
{
    const CGRect rect = layer.contentsRect();
    if (!isSeen(rect))
        return;
    m_context.setAlpha(alpha);
    const UIImage& picture = layer.contents();
    if (m_copies && !layer.contentsAreTransient() && m_copies->draw(layer, m_context, !m_reductions))
        return;
    if (!m_reductions) {
        drawInRect(picture, m_context, rect);
        return;
    }
    const CGAffineTransform t = m_context.deviceTransform();
    const IntSize pixels = picture.pixelSize();
    const double stretch = std::max(std::hypot(t.a, t.b) * rect.size.width / pixels.width,
                                    std::hypot(t.c, t.d) * rect.size.height / pixels.height);
    drawInRect(m_reductions->fitting(picture, stretch), m_context, rect);
}

void LayerRenderer::drawBorder(const CALayer& layer, double alpha, bool square)
{
    const double width = layer.borderWidth();
    if (!(width > 0) || !(layer.borderColor().alpha > 0) || !isSeen(layer.bounds()))
        return;
    const CGRect& outside = layer.bounds();
    const double radius = std::min({layer.cornerRadius(), outside.size.width / 2, outside.size.height / 2});
    UIBezierPath ring = UIBezierPath::withRoundedRect(outside, square ? 0 : radius);
    const CGRect inside = outside.insetBy(width, width);
    if (!inside.isEmpty()) {
        ring.appendPath(UIBezierPath::withRoundedRect(inside, std::max(0.0, radius - width)));
        ring.usesEvenOddFillRule = true;
    }
    m_context.setAlpha(alpha);
    m_context.setFillColor(layer.borderColor());
    m_context.fillPath(ring);
}

void LayerRenderer::clipToBounds(const CALayer& layer)
{
    if (layer.cornerRadius() > 0)
        m_context.clipToPath(UIBezierPath::withRoundedRect(layer.bounds(), layer.cornerRadius()));
    else
        m_context.clipToRect(layer.bounds());
}

CGRect LayerRenderer::inUserSpace(const IntRect& pixels) const
{
    const std::optional<CGAffineTransform> fromDevice = m_context.deviceTransform().inverted();
    if (!fromDevice || pixels.isEmpty())
        return {};
    return fromDevice->boundingBox(CGRect(pixels.x, pixels.y, pixels.width, pixels.height));
}

bool LayerRenderer::isSeen(const CGRect& rect) const
{
    if (rect.isEmpty())
        return false;
    return !integralCover(m_context.deviceTransform().boundingBox(rect)).intersection(m_context.clipBounds()).isEmpty();
}

} // namespace lamina
