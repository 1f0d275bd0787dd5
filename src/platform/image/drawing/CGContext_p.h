#pragma once

#include "platform/base/CGAffineTransform.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/UIColor.h"
#include "platform/image/drawing/CGContext.h"
#include "platform/image/drawing/CoverageMask_p.h"
#include "platform/image/drawing/Rasterizer_p.h"
#include "platform/image/drawing/RowBlender_p.h"
#include "platform/image/drawing/SourcePixels.h"
#include "platform/image/drawing/Surface_p.h"
#include "platform/image/drawing/TargetColors_p.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/PixelArithmetic.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace lamina {

/// What still lets drawing through: a rectangle of device pixels, and inside it a mask where edges are not on pixel
/// borders.
struct ClipState {
    IntRect bounds;
    CoverageMask mask; ///< empty: everything in the bounds; otherwise it covers at least the bounds
};

struct ShadowState {
    CGSize offset; ///< device pixels
    double sigma;  ///< device pixels
    UIColor color;
};

struct GraphicsState {
    CGAffineTransform ctm;
    ClipState clip;
    double alpha = 1;
    CGBlendMode blendMode = CGBlendMode::Normal;
    UIColor fillColor = UIColor::black();
    UIColor strokeColor = UIColor::black();
    bool antialias = true;
    CGContext::Interpolation interpolation = CGContext::Interpolation::High;
    std::optional<ShadowState> shadow;
};

/// A picture being put together by itself. Without a surface (memory was short, or nothing can be seen) it takes
/// nothing.
struct TransparencyLayer {
    std::optional<Surface> surface;
    GraphicsState outside;  ///< as it was at the beginning
    std::size_t savedDepth; ///< saved states that belong to the outside
};

struct CGContext::Impl {
    Impl(Surface surface, const CGImageLayout& layout, const CGAffineTransform& base, double scale);

    Surface bottom;
    CGImageLayout layout; ///< of the pictures that are taken
    double scale;
    TargetColors colors;
    GraphicsState state;
    std::vector<GraphicsState> saved;
    std::vector<TransparencyLayer> layers;

    bool isRGB() const { return bottom.kind() == SurfaceKind::RGBA; }
    bool keepsOpaque() const;
    /// For rows of what is drawn into at the moment.
    RowBlender blender(CGBlendMode mode) const;
    RowBlender blender() const { return blender(state.blendMode); }

    /// What is drawn into at the moment, ready to be written; null when nothing can be.
    Surface* target();
    IntRect clipBounds() const { return state.clip.bounds; }

    void intersectClip(const IntRect& bounds);
    void intersectClip(const CoverageMask& mask);

    /// Drawing without shadow.
    void fillPolygons(const Rasterizer& rasterizer, bool evenOdd, const UIColor& color);
    void fillRect(const CGRect& rect);
    void erase(const CGRect& rect);
    void drawImage(const CGImage& image, const CGAffineTransform& toDevice);
    CoverageMask maskCoverage(const CGImage& mask, const CGAffineTransform& toDevice, bool inverted) const;

    /// Calls `draw`; with a shadow in force, inside a layer that lets it fall. `bounds`: the device pixels that `draw`
    /// may touch.
    template <class Draw>
    void withShadow(const IntRect& bounds, Draw draw);

    void beginLayer(const IntRect& bounds);
    IntRect layerArea(const IntRect& bounds) const;
    void endLayer();
    void compositeLayer(const Surface& layer);
    void compositeShadow(const Surface& layer, const ShadowState& shadow);
};

template <class Draw>
void CGContext::Impl::withShadow(const IntRect& bounds, Draw draw)
{
    if (!state.shadow || !isRGB() || state.blendMode != CGBlendMode::Normal) {
        draw();
        return;
    }
    beginLayer(bounds);
    draw();
    endLayer();
}

} // namespace lamina
