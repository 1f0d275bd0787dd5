#pragma once

#include "platform/image/pixels/UIImage.h"

#include <memory>
#include <optional>
#include <vector>

namespace lamina {

class GPUImageHighlightShadowFilter;
class GPUImageSaturationFilter;
class GPUImageVignetteFilter;

/// The filters behind three of the effects, made once, when the first of them is asked for or all are warmed. From any
/// thread; the first call makes the GL context where there is none yet.
class CollageEffectFilters {
public:
    /// Makes them now.
    void make();

    /// Never null, nor are the two below.
    std::shared_ptr<GPUImageVignetteFilter> vignetteImageFilter();
    /// See vignetteImageFilter.
    std::shared_ptr<GPUImageSaturationFilter> saturationFilter();
    /// See vignetteImageFilter.
    std::shared_ptr<GPUImageHighlightShadowFilter> highlightFilter();

private:
    // Of the video processing queue.
    std::shared_ptr<GPUImageVignetteFilter> m_vignetteImageFilter;
    std::shared_ptr<GPUImageSaturationFilter> m_saturationFilter;
    std::shared_ptr<GPUImageHighlightShadowFilter> m_highlightFilter;
};

/// What a slider does: its tag (see collageslider), and its value.
struct CollageEffect {
    int tag;
    double value;
};

/// Effects one upon another, the first on `base`.
struct CollageEffectChain {
    UIImage base;
    std::vector<CollageEffect> effects;
};

/// The picture as the effect makes it. Biases are the value
/// with its fraction cut off; the vignette begins at value + 0.2 and ends at value + 0.4. Opacity is no matter of
/// pixels: it gives the picture itself. Empty when it fails. From any thread, one at a time for the same filters.
UIImage pictureWithEffect(CollageEffect effect, const UIImage& picture, CollageEffectFilters& filters);

/// Coarse pictures to be shown while a finger slides: large enough for a canvas, and small enough for every move.
///
/// They are reduced by whole pixels, so a convolution looks somewhat stronger than in the whole picture. Not safe to be
/// used by several threads at once.
class CoarsePicture {
public:
    /// Whether the picture has more pixels than a coarse one.
    static bool isWorthwhile(const UIImage& picture);
    /// The picture with that few pixels, at scale 1. The last one is remembered. Empty when memory is short.
    UIImage of(const UIImage& picture);

private:
    UIImage m_whole;
    UIImage m_coarse;
};

/// What the effects make of a coarse picture of their base, where one is worthwhile. As pictureWithEffect.
UIImage coarsePicture(const CollageEffectChain& chain, CoarsePicture& coarse, CollageEffectFilters& filters);

/// What the effects of an editor hold beside its composition.
struct CollageEffectState {
    std::shared_ptr<CollageEffectFilters> filters = std::make_shared<CollageEffectFilters>(); ///< of exact pictures
    // Of the thread for what is shown in between.
    std::shared_ptr<CollageEffectFilters> coarseFilters = std::make_shared<CollageEffectFilters>();
    std::shared_ptr<CoarsePicture> coarse = std::make_shared<CoarsePicture>();
    std::optional<CollageEffect> inHand; ///< what is shown coarsely now, and is to be made exactly
    CollageEffect making{};              ///< what has been made exactly last, or is being made
    int asked = 0;                       ///< number of the picture that was asked for last
    int shown = 0;                       ///< of the one that is shown
    bool failed = false;                 ///< the last one; the user has been told
};

} // namespace lamina
