#include "editors/collage/CollageEffectWork.h"

#include "editors/collage/CollageEffects.h"
#include "gpu/core/VideoProcessingQueue.h"
#include "gpu/filters/color/GPUImageHighlightShadowFilter.h"
#include "gpu/filters/color/GPUImageSaturationFilter.h"
#include "gpu/filters/effect/GPUImageVignetteFilter.h"
#include "imageops/ImageFilters.h"
#include "platform/base/CGGeometry.h"
#include "platform/image/drawing/Resampling.h"

#include <algorithm>
#include <cmath>

namespace lamina {

namespace {

/// What a coarse picture has: about a canvas at three pixels a point.
constexpr double kCoarsePixels = 1.2e6;

constexpr double kVignetteStartOffset = 0.2;
constexpr double kVignetteEndOffset = 0.4;

double pixelCount(const UIImage& picture)
{
    const IntSize size = picture.cgImage().size();
    return static_cast<double>(size.width) * size.height;
}

UIImage vignetted(const UIImage& picture, double value, GPUImageVignetteFilter& filter)
{
    filter.setVignetteEnd(static_cast<float>(value + kVignetteEndOffset));
    filter.setVignetteStart(static_cast<float>(value + kVignetteStartOffset));
    return filter.imageByFilteringImage(picture);
}

UIImage saturated(const UIImage& picture, double value, GPUImageSaturationFilter& filter)
{
    filter.setSaturation(static_cast<float>(value));
    return filter.imageByFilteringImage(picture);
}

UIImage highlighted(const UIImage& picture, double value, GPUImageHighlightShadowFilter& filter)
{
    filter.setHighlights(static_cast<float>(value));
    return filter.imageByFilteringImage(picture);
}

} // namespace

/// The slider of opacity was once one of highlights too, and what is made for it replaces what was made for the other.
void CollageEffectFilters::make()
{
    runSynchronouslyOnVideoProcessingQueue([this] {
        if (m_highlightFilter)
            return;
        m_vignetteImageFilter = std::make_shared<GPUImageVignetteFilter>();
        m_saturationFilter = std::make_shared<GPUImageSaturationFilter>();
        m_highlightFilter = std::make_shared<GPUImageHighlightShadowFilter>();
        m_highlightFilter = std::make_shared<GPUImageHighlightShadowFilter>();
    });
}

std::shared_ptr<GPUImageVignetteFilter> CollageEffectFilters::vignetteImageFilter()
{
    make();
    return m_vignetteImageFilter;
}

std::shared_ptr<GPUImageSaturationFilter> CollageEffectFilters::saturationFilter()
{
    make();
    return m_saturationFilter;
}

std::shared_ptr<GPUImageHighlightShadowFilter> CollageEffectFilters::highlightFilter()
{
    make();
    return m_highlightFilter;
}

UIImage pictureWithEffect(CollageEffect effect, const UIImage& picture, CollageEffectFilters& filters)
{
    const auto [tag, value] = effect;
    const auto bias = static_cast<long>(value);
    switch (tag) {
    case collageslider::kContrast:
        return contrastAdjustmentWithValue(picture, static_cast<float>(value));
    case collageslider::kBrightness:
        return brightenWithValue(picture, static_cast<float>(value));
    case collageslider::kEmboss:
        return embossWithBias(picture, bias);
    case collageslider::kSharpen:
        return sharpenWithBias(picture, bias);
    case collageslider::kUnsharpen:
        return unsharpenWithBias(picture, bias);
    case collageslider::kVignette:
        return vignetted(picture, value, *filters.vignetteImageFilter());
    case collageslider::kSaturation:
        return saturated(picture, value, *filters.saturationFilter());
    case collageslider::kHighlight:
        return highlighted(picture, value, *filters.highlightFilter());
    default:
        return picture;
    }
}

bool CoarsePicture::isWorthwhile(const UIImage& picture)
{
    return pixelCount(picture) > kCoarsePixels;
}

UIImage CoarsePicture::of(const UIImage& picture)
{
    if (m_coarse && picture.isIdenticalTo(m_whole))
        return m_coarse;
    const IntSize size = picture.cgImage().size();
    const double share = std::sqrt(kCoarsePixels / std::max(pixelCount(picture), 1.0));
    const auto reduced = [share](int side) { return std::max(1, static_cast<int>(std::lround(side * share))); };
    m_whole = picture;
    m_coarse = UIImage(resampled(picture.cgImage(), {reduced(size.width), reduced(size.height)}), 1,
                       picture.imageOrientation());
    return m_coarse;
}

UIImage coarsePicture(const CollageEffectChain& chain, CoarsePicture& coarse, CollageEffectFilters& filters)
{
    UIImage picture = CoarsePicture::isWorthwhile(chain.base) ? coarse.of(chain.base) : chain.base;
    for (const CollageEffect& effect : chain.effects)
        picture = pictureWithEffect(effect, picture, filters);
    return picture;
}

} // namespace lamina
