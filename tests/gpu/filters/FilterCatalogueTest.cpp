#include "FilterReference.h"

#include "gpu/filters/FilterCatalogue.h"
#include "gpu/filters/GPUImage3x3ConvolutionFilter.h"
#include "gpu/filters/GPUImageAlphaBlendFilter.h"
#include "gpu/filters/GPUImageColorMatrixFilter.h"
#include "gpu/filters/GPUImageDissolveBlendFilter.h"
#include "gpu/filters/GPUImageEmbossFilter.h"
#include "gpu/filters/GPUImageGaussianBlurFilter.h"
#include "gpu/filters/GPUImageHazeFilter.h"
#include "gpu/filters/GPUImageLookupFilter.h"
#include "gpu/filters/GPUImageMonochromeFilter.h"
#include "gpu/filters/GPUImageSepiaFilter.h"
#include "gpu/filters/GPUImageToonFilter.h"
#include "gpu/filters/GpuImageCustomFilter.h"
#include "gpu/filters/GpuImageCustomFilter1.h"
#include "gpu/filters/GpuImageCustomFilter3.h"

#include <gtest/gtest.h>

namespace lamina::test {
namespace {

std::shared_ptr<GPUImageStage> made(const FilterDescription& description, const FilterSettings& settings)
{
    Result<std::shared_ptr<GPUImageStage>> filter = makeFilter(description, settings);
    return filter ? *filter : nullptr;
}

/// What a filter makes of noise, with other noise in slot 1.
CGImage filteredNoise(GPUImageStage& filter)
{
    const CGImage noise = noisePicture(31, 17, true);
    auto* two = dynamic_cast<GPUImageTwoInputFilter*>(&filter);
    return two != nullptr ? filteredPair(*two, noise, noisePicture(31, 17, true, 5))
                          : filter.newCGImageByFilteringCGImage(noise);
}

/// Setting the very default is not without effect: it starts the look-up, or takes the place of what the size gives.
bool takesEffectWhenSet(const std::string& filter, const std::string& property)
{
    return filter == "GPUImageLookupFilter" || property == "texelWidth" || property == "texelHeight";
}

TEST(FilterCatalogue, WhatItTellsIsWhatANewFilterHas)
{
    ASSERT_NO_FATAL_FAILURE(requireContext());
    for (const auto& [name, description] : filterCatalogue().all()) {
        SCOPED_TRACE(name);
        EXPECT_EQ(name, description.className);
        EXPECT_FALSE(description.help.empty());
        const auto fresh = made(description, {});
        ASSERT_NE(fresh, nullptr);
        ASSERT_TRUE(fresh->canRender());
        EXPECT_EQ(description.inputs, dynamic_cast<GPUImageTwoInputFilter*>(fresh.get()) != nullptr ? 2 : 1);
        const CGImage wanted = filteredNoise(*fresh);
        // One at a time: a default of one property may switch another off.
        for (const FilterProperty& property : description.properties) {
            SCOPED_TRACE(property.name);
            EXPECT_FALSE(property.help.empty());
            if (takesEffectWhenSet(name, property.name))
                continue;
            const auto told = made(description, {{property.name, property.fallback}});
            ASSERT_NE(told, nullptr);
            expectPicture(filteredNoise(*told), wanted, 0);
        }
    }
}

/// The field behind a property.
struct Getter {
    const char* className;
    const char* property;
    std::function<TypedValue(GPUImageStage&)> read;
};

template <class Filter, class Value>
Getter getter(const char* className, const char* property, Value (Filter::*read)() const)
{
    return {className, property, [read](GPUImageStage& stage) {
                return TypedValue(std::remove_cvref_t<Value>((dynamic_cast<Filter&>(stage).*read)()));
            }};
}

TEST(FilterCatalogue, ItsDefaultsAreThoseOfTheGetters)
{
    const Getter getters[] = {
        getter("GPUImage3x3ConvolutionFilter", "convolutionKernel", &GPUImage3x3ConvolutionFilter::convolutionKernel),
        getter("GPUImageAlphaBlendFilter", "mix", &GPUImageAlphaBlendFilter::mix),
        getter("GPUImageColorMatrixFilter", "intensity", &GPUImageColorMatrixFilter::intensity),
        getter("GPUImageColorMatrixFilter", "colorMatrix", &GPUImageColorMatrixFilter::colorMatrix),
        getter("GPUImageDissolveBlendFilter", "mix", &GPUImageDissolveBlendFilter::mix),
        getter("GPUImageEmbossFilter", "intensity", &GPUImageEmbossFilter::intensity),
        getter("GPUImageGaussianBlurFilter", "blurRadiusInPixels", &GPUImageGaussianBlurFilter::blurRadiusInPixels),
        getter("GPUImageGaussianBlurFilter", "blurPasses", &GPUImageGaussianBlurFilter::blurPasses),
        getter("GPUImageHazeFilter", "distance", &GPUImageHazeFilter::distance),
        getter("GPUImageHazeFilter", "slope", &GPUImageHazeFilter::slope),
        getter("GPUImageLookupFilter", "intensity", &GPUImageLookupFilter::intensity),
        getter("GPUImageMonochromeFilter", "intensity", &GPUImageMonochromeFilter::intensity),
        getter("GPUImageMonochromeFilter", "color", &GPUImageMonochromeFilter::color),
        getter("GPUImageSepiaFilter", "intensity", &GPUImageSepiaFilter::intensity),
        getter("GPUImageSepiaFilter", "colorMatrix", &GPUImageSepiaFilter::colorMatrix),
        getter("GPUImageToonFilter", "threshold", &GPUImageToonFilter::threshold),
        getter("GPUImageToonFilter", "quantizationLevels", &GPUImageToonFilter::quantizationLevels),
        getter("GpuImageCustomFilter", "intensity", &GpuImageCustomFilter::intensity),
        getter("GpuImageCustomFilter", "color", &GpuImageCustomFilter::color),
        getter("GpuImageCustomFilter1", "intensity", &GpuImageCustomFilter1::intensity),
        getter("GpuImageCustomFilter1", "color", &GpuImageCustomFilter1::color),
        getter("GpuImageCustomFilter3", "threshold", &GpuImageCustomFilter3::threshold),
        getter("GpuImageCustomFilter3", "quantizationLevels", &GpuImageCustomFilter3::quantizationLevels),
    };
    for (const Getter& each : getters) {
        SCOPED_TRACE(std::string(each.className) + " " + each.property);
        const FilterDescription* description = filterCatalogue().find(each.className);
        ASSERT_NE(description, nullptr);
        const FilterProperty* property = description->property(each.property);
        ASSERT_NE(property, nullptr);
        EXPECT_TRUE(property->fallback == each.read(*made(*description, {})));
    }
}

TEST(FilterCatalogue, OffersTheSetterOfThreeNumbers)
{
    ASSERT_NO_FATAL_FAILURE(requireContext());
    for (const char* name : {"GPUImageMonochromeFilter", "GpuImageCustomFilter", "GpuImageCustomFilter1"}) {
        SCOPED_TRACE(name);
        const FilterDescription* description = filterCatalogue().find(name);
        ASSERT_NE(description, nullptr);
        ASSERT_EQ(description->selectors.size(), 1u);
        const FilterSelector& selector = description->selectors.front();
        EXPECT_EQ(selector.name, "setColorRed:green:blue:");
        ASSERT_EQ(selector.arguments.size(), 3u);
        const auto by = made(*description, {});
        selector.call(*by, std::vector<TypedValue>{0.9F, 0.2F, 0.6F});
        const auto same = made(*description, {{"color", GPUVector4{0.9F, 0.2F, 0.6F, 0}}});
        expectPicture(filteredNoise(*by), filteredNoise(*same), 0);
    }
}

} // namespace
} // namespace lamina::test
