#include "platform/view/CanvasFrame.h"

#include "platform/view/LayerRenderer.h"

#include <algorithm>
#include <bit>
#include <unordered_map>

namespace lamina {

namespace {

/// Stirs `value` into a running stamp; the finaliser of the splitmix64 generator spreads every bit over all others.
std::uint64_t stirred(std::uint64_t stamp, std::uint64_t value)
{
    std::uint64_t x = stamp + 0x9E3779B97F4A7C15u + value;
    x = (x ^ (x >> 30)) * 0xBF58476D1CE4E5B9u;
    x = (x ^ (x >> 27)) * 0x94D049BB133111EBu;
    return x ^ (x >> 31);
}

std::uint64_t stirredTree(std::uint64_t stamp, const CALayer& layer)
{
    stamp = stirred(stamp, layer.revision());
    if (layer.mask())
        stamp = stirredTree(stirred(stamp, 1), *layer.mask());
    for (const auto& sublayer : layer.sublayers())
        stamp = stirredTree(stirred(stamp, 2), *sublayer);
    return stirred(stamp, 3);
}

} // namespace

/// The surroundings up to the next layer that throws a shadow: its shadow is thrown by what its clips let through. All
/// in whole pixels, because a pixel that a clip and a layer both touch can change even where their outlines don't meet.
struct CanvasFrame::Scope {
    const Scope* outer = nullptr;
    IntRect clip;
    LayerRenderer::ShadowPixels shadow;

    IntRect pixelsOf(const IntRect& painted) const
    {
        IntRect rect = painted.intersection(clip);
        for (const Scope* scope = this; scope->outer && !rect.isEmpty(); scope = scope->outer)
            rect = rect.unionWith(scope->shadow.of(rect)).intersection(scope->outer->clip);
        return rect;
    }
};

struct CanvasFrame::Surroundings {
    Scope scope;
    CGAffineTransform toDevice; ///< from the layer's own coordinates
    double alpha = 1;           ///< that comes down from above
    std::uint64_t stamp = 0;
};

CanvasFrame::CanvasFrame(const CALayer& root, double scale, IntSize size)
{
    const IntRect bitmap{0, 0, size.width, size.height};
    const CGAffineTransform toDevice = CGAffineTransform::translation(-root.bounds().minX(), -root.bounds().minY())
                                           .concatenating(CGAffineTransform::scaling(scale, scale));
    add(root, {{nullptr, bitmap, {}}, toDevice, 1, 0});
}

void CanvasFrame::add(const CALayer& layer, const Surroundings& around)
{
    Surroundings here = around;
    here.alpha *= layer.shown().opacity;
    if (layer.isHidden() || here.alpha <= 0 || here.scope.clip.isEmpty())
        return;
    const CGAffineTransform& t = here.toDevice;
    if (layer.mask()) {
        const CALayer& mask = *layer.mask();
        const IntRect shown = LayerRenderer::treePixels(mask, mask.transformToParent().concatenating(t));
        here.scope.clip = here.scope.clip.intersection(shown);
        here.stamp = stirredTree(stirred(here.stamp, layer.revision()), mask);
    }
    // Whether a layer is grouped may hang on what stands in it, and rounds the bytes of all of that differently.
    const bool cut = LayerRenderer::cutsCornersOfGroup(layer);
    if (cut || LayerRenderer::needsGroup(layer, here.alpha)) {
        here.stamp = stirred(stirred(here.stamp, std::bit_cast<std::uint64_t>(here.alpha)), cut);
        here.alpha = 1;
    }
    if (!LayerRenderer::castsShadow(layer)) {
        addInside(layer, here);
        return;
    }
    const Scope outside = here.scope;
    here.scope.outer = &outside;
    here.scope.shadow = LayerRenderer::shadowPixels(layer, t);
    here.scope.clip = outside.clip.unionWith(here.scope.shadow.castingOn(outside.clip));
    here.stamp = stirred(here.stamp, layer.revision());
    addInside(layer, here);
}

void CanvasFrame::addInside(const CALayer& layer, const Surroundings& around)
{
    const CGAffineTransform& t = around.toDevice;
    Surroundings inside = around;
    const IntRect bounds = LayerRenderer::pixelCover(t.boundingBox(layer.bounds()));
    if (layer.masksToBounds()) {
        inside.scope.clip = inside.scope.clip.intersection(bounds);
        inside.stamp = stirred(inside.stamp, layer.revision());
    }
    IntRect pixels = inside.scope.pixelsOf(LayerRenderer::pixelCover(t.boundingBox(LayerRenderer::innerBounds(layer))));
    if (LayerRenderer::paintsBounds(layer))
        pixels = pixels.unionWith(around.scope.pixelsOf(bounds));
    if (!pixels.isEmpty())
        m_records.push_back({&layer, layer.superlayer(), layer.revision(), around.stamp, around.alpha, t, pixels});
    addSublayers(layer, inside);
}

void CanvasFrame::addSublayers(const CALayer& layer, const Surroundings& around)
{
    const auto& sublayers = layer.sublayers();
    Surroundings inside = around;
    for (std::size_t i = 0, end = 0; i < sublayers.size(); ++i) {
        // Layers that share edges decide together what is seen of each along them.
        if (i >= end) {
            end = LayerRenderer::endOfSharing(layer, i);
            inside.stamp = around.stamp;
            for (std::size_t other = i; other < end; ++other)
                inside.stamp =
                    stirredTree(stirred(inside.stamp, sublayers[other]->revision()), *sublayers[other]->mask());
        }
        inside.toDevice = sublayers[i]->shownTransformToParent().concatenating(around.toDevice);
        add(*sublayers[i], inside);
    }
}

IntRect CanvasFrame::differenceTo(const CanvasFrame& next) const
{
    std::unordered_map<const CALayer*, std::size_t> places;
    for (std::size_t i = 0; i < m_records.size(); ++i)
        places.emplace(m_records[i].layer, i);
    std::vector<bool> stays(m_records.size(), false);
    std::vector<std::size_t> same; // places in this frame of what has not changed, in the next frame's order
    IntRect area;
    for (const LayerRecord& record : next.m_records) {
        const auto found = places.find(record.layer);
        if (found != places.end() && m_records[found->second] == record) {
            same.push_back(found->second);
            stays[found->second] = true;
        } else {
            area = area.unionWith(record.pixels);
        }
    }
    for (std::size_t i = 0; i < m_records.size(); ++i) {
        if (!stays[i])
            area = area.unionWith(m_records[i].pixels);
    }
    return std::is_sorted(same.begin(), same.end()) ? area : area.unionWith(exchangedArea(same));
}

/// Where layers overlap that stand in another order than in this frame.
IntRect CanvasFrame::exchangedArea(const std::vector<std::size_t>& order) const
{
    IntRect area;
    for (std::size_t upper = 1; upper < order.size(); ++upper) {
        for (std::size_t lower = 0; lower < upper; ++lower) {
            if (order[lower] > order[upper])
                area = area.unionWith(m_records[order[lower]].pixels.intersection(m_records[order[upper]].pixels));
        }
    }
    return area;
}

} // namespace lamina
