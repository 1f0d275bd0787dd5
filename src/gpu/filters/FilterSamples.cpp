#include "gpu/filters/FilterSamples.h"

#include "gpu/core/GPUVectors.h"
#include "gpu/core/TypedValue.h"
#include "platform/base/CGAffineTransform.h"
#include "platform/base/CGGeometry.h"

#include <map>
#include <vector>

namespace lamina {

namespace {

using Arguments = std::vector<TypedValue>;

/// For small pictures too. Filters that are not here show what they do as they are.
const std::map<std::string_view, FilterSettings>& samples()
{
    static const std::map<std::string_view, FilterSettings> kSamples{
        {"GPUImage3x3ConvolutionFilter",
         {{"convolutionKernel", GPUMatrix3x3{{-1, -1, -1}, {-1, 9, -1}, {-1, -1, -1}}}}},
        {"GPUImageBilateralFilter", {{"distanceNormalizationFactor", 2.0F}}},
        {"GPUImageBrightnessFilter", {{"brightness", 0.25F}}},
        {"GPUImageClosingFilter", {{"radius", 3}}},
        {"GPUImageColorMatrixFilter",
         {{"colorMatrix", GPUMatrix4x4{{0, 0, 1, 0}, {1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 0, 1}}}}},
        {"GPUImageContrastFilter", {{"contrast", 1.8F}}},
        {"GPUImageCropFilter", {{"cropRegion", CGRect{{0.25, 0.2}, {0.5, 0.5}}}}},
        {"GPUImageCrosshairGenerator",
         {{"crosshairWidth", 48.0F}, {"crosshairs", std::vector<CGPoint>{{0.3, 0.3}, {0.7, 0.4}, {0.45, 0.75}}}}},
        {"GPUImageCrosshatchFilter", {{"crossHatchSpacing", 0.04F}, {"lineWidth", 0.01F}}},
        {"GPUImageDilationFilter", {{"radius", 3}}},
        {"GPUImageErosionFilter", {{"radius", 3}}},
        {"GPUImageExposureFilter", {{"exposure", 0.8F}}},
        {"GPUImageGammaFilter", {{"gamma", 0.6F}}},
        {"GPUImageGaussianBlurFilter", {{"blurRadiusInPixels", 4.0F}}},
        {"GPUImageHSBFilter", {{"rotateHue:", Arguments{60.0F}}, {"adjustSaturation:", Arguments{1.4F}}}},
        {"GPUImageHalftoneFilter", {{"fractionalWidthOfAPixel", 0.02F}}},
        {"GPUImageHighlightShadowFilter", {{"shadows", 0.8F}, {"highlights", 0.4F}}},
        {"GPUImageHighlightShadowTintFilter", {{"shadowTintIntensity", 0.5F}, {"highlightTintIntensity", 0.5F}}},
        {"GPUImageLevelsFilter", {{"setMin:gamma:max:minOut:maxOut:", Arguments{0.15F, 1.0F, 0.75F, 0.0F, 1.0F}}}},
        {"GPUImageLineGenerator",
         {{"lineWidth", 4.0F}, {"lines", std::vector<CGPoint>{{0.5, 0}, {-1, 0.3}, {0, -0.5}}}}},
        {"GPUImageLookupFilter", {{"intensity", 1.0F}}},
        {"GPUImageMosaicFilter", {{"displayTileSize", CGSize{0.04, 0.04}}}},
        {"GPUImageOpacityFilter", {{"opacity", 0.4F}}},
        {"GPUImageOpeningFilter", {{"radius", 3}}},
        {"GPUImagePosterizeFilter", {{"colorLevels", 4}}},
        {"GPUImageRGBClosingFilter", {{"radius", 3}}},
        {"GPUImageRGBDilationFilter", {{"radius", 3}}},
        {"GPUImageRGBErosionFilter", {{"radius", 3}}},
        {"GPUImageRGBFilter", {{"red", 1.2F}, {"blue", 0.6F}}},
        {"GPUImageRGBOpeningFilter", {{"radius", 3}}},
        {"GPUImageSaturationFilter", {{"saturation", 1.8F}}},
        {"GPUImageSharpenFilter", {{"sharpness", 2.0F}}},
        {"GPUImageSingleComponentGaussianBlurFilter", {{"blurRadiusInPixels", 4.0F}}},
        {"GPUImageSkinToneFilter", {{"skinToneAdjust", 0.6F}}},
        {"GPUImageSolidColorGenerator", {{"color", GPUVector4{0.9F, 0.5F, 0.3F, 1}}}},
        {"GPUImageSwirlFilter", {{"angle", 0.5F}}},
        {"GPUImageToneCurveFilter",
         {{"rgbCompositeControlPoints", std::vector<CGPoint>{{0, 0}, {0.25, 0.12}, {0.75, 0.88}, {1, 1}}}}},
        {"GPUImageTransformFilter", {{"affineTransform", CGAffineTransform{0.7, 0.3, -0.3, 0.7, 0, 0}}}},
        {"GPUImageUnsharpMaskFilter", {{"intensity", 3.0F}}},
        {"GPUImageVignetteFilter", {{"vignetteStart", 0.2F}, {"vignetteEnd", 0.7F}}},
        {"GPUImageWhiteBalanceFilter", {{"temperature", 7500.0F}}},
        {"GPUImageiOSBlurFilter", {{"blurRadiusInPixels", 3.0F}}},
    };
    return kSamples;
}

} // namespace

FilterSettings sampleSettings(std::string_view className)
{
    const auto found = samples().find(className);
    return found == samples().end() ? FilterSettings() : found->second;
}

} // namespace lamina
