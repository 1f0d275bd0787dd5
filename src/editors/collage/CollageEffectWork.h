#pragma once

#include "platform/base/DispatchTimer.h"
#include "platform/image/pixels/UIImage.h"

#include <cstddef>
#include <memory>
#include <optional>

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

/// The picture as the effect of that tag (see collageslider) makes it at a value of its slider. Biases are the value
/// with its fraction cut off; the vignette begins at value + 0.2 and ends at value + 0.4. Opacity is no matter of
/// pixels: it gives the picture itself. Empty when it fails. From any thread, one at a time for the same filters.
UIImage pictureWithEffect(int tag, double value, const UIImage& picture, CollageEffectFilters& filters);

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

/// What a slider asks for.
struct CollageEffectInHand {
    int tag;
    double value;
    std::size_t slot;
    UIImage base;
};

/// What the effects of an editor hold beside its composition.
struct CollageEffectState {
    std::shared_ptr<CollageEffectFilters> filters = std::make_shared<CollageEffectFilters>();
    std::shared_ptr<CoarsePicture> coarse = std::make_shared<CoarsePicture>(); ///< of the thread for slow pictures
    std::optional<CollageEffectInHand> inHand; ///< what is shown coarsely now, and is to be made exactly
    DispatchTimer rest;                        ///< until then
    bool failed = false;                       ///< the last one; the user has been told
};

} // namespace lamina
