#include "gpu/filters/FilterCatalogue.h"
#include "FrameSource.h"
#include "GLCalls.h"
#include "GraphFixture.h"
#include "TestPictures.h"
#include "gpu/core/GPUImageTwoInputFilter.h"
#include "gpu/core/GPUVectors.h"
#include "gpu/core/TypedValue.h"
#include "gpu/sources/GPUImagePicture.h"
#include "platform/base/Result.h"

namespace lamina::test {
namespace {

class FilterCatalogueTest : public GraphFixture {
protected:
    static std::shared_ptr<GPUImageStage> made(const FilterDescription& description, const FilterSettings& settings)
    {
        Result<std::shared_ptr<GPUImageStage>> filter = makeFilter(description, settings);
        return filter ? *filter : nullptr;
    }
    /// What a filter makes of noise, with other noise in slot 1.
    static CGImage filteredNoise(const std::shared_ptr<GPUImageStage>& filter)
    {
        const auto other = std::make_shared<GPUImagePicture>(noisePicture(31, 17, CGImageAlphaInfo::Last, 5));
        if (dynamic_cast<GPUImageTwoInputFilter*>(filter.get())) {
            other->addTarget(filter, 1);
            other->processImage();
        }
        return filter->newCGImageByFilteringCGImage(noisePicture(31, 17, CGImageAlphaInfo::Last));
    }
};

/// Setting the very default is not without effect: it starts the look-up, or takes the place of what the size gives.
bool takesEffectWhenSet(const std::string& filter, const std::string& property)
{
    return filter == "GPUImageLookupFilter" || property == "texelWidth" || property == "texelHeight";
}

TEST_F(FilterCatalogueTest, WhatItTellsIsWhatANewFilterHas)
{
    for (const auto& [name, description] : filterCatalogue().all()) {
        SCOPED_TRACE(name);
        EXPECT_EQ(name, description.className);
        const auto fresh = made(description, {});
        ASSERT_TRUE(fresh && fresh->canRender());
        EXPECT_EQ(description.inputs, dynamic_cast<GPUImageTwoInputFilter*>(fresh.get()) != nullptr ? 2 : 1);
        EXPECT_EQ(description.inputNames.size(), description.inputs == 1 ? 0U : 2U);
        EXPECT_EQ(description.alphaForm, fresh->alphaForm());
        const CGImage wanted = filteredNoise(fresh);
        // One at a time: a default of one property may switch another off.
        for (const FilterProperty& property : description.properties) {
            if (takesEffectWhenSet(name, property.name))
                continue;
            EXPECT_TRUE(imagesMatch(filteredNoise(made(description, {{property.name, property.fallback}})), wanted))
                << property.name;
        }
    }
}

TEST_F(FilterCatalogueTest, NoFilterMakesObjectsOnceWarm)
{
    const CGImage picture = noisePicture(31, 17, CGImageAlphaInfo::Last);
    for (const auto& [name, description] : filterCatalogue().all()) {
        const auto filter = made(description, {});
        FrameSource other;
        m_source->addTarget(filter, 0);
        if (description.inputs > 1)
            other.addTarget(filter, 1);
        int drawn = 0;
        filter->setFrameProcessingCompletionBlock([&](GPUImageOutput&, const CMTime&) { ++drawn; });
        const auto push = [&](int frames) {
            for (int i = 0; i < frames; ++i) {
                other.push(picture, second(i));
                m_source->push(picture, second(i));
            }
        };
        push(2);
        const GLCalls warm = valueFromVideoProcessingQueue(glCallsSoFar);
        const std::size_t living = GPUImageFramebufferCache::livingCount();
        const std::size_t idle = idleFramebuffers();
        push(10);
        EXPECT_EQ((valueFromVideoProcessingQueue(glCallsSoFar) - warm).objectsMade(), 0) << name;
        EXPECT_EQ(GPUImageFramebufferCache::livingCount(), living) << name;
        EXPECT_EQ(idleFramebuffers(), idle) << name;
        EXPECT_EQ(drawn, 12) << name;
        m_source->removeAllTargets();
    }
}

TEST_F(FilterCatalogueTest, OffersTheSetterOfThreeNumbers)
{
    for (const auto& [name, selector, property] :
         {std::tuple{"GPUImageMonochromeFilter", "setColorRed:green:blue:", "color"},
          {"GpuImageCustomFilter", "setColorRed:green:blue:", "color"},
          {"GpuImageCustomFilter1", "setColorRed:green:blue:", "color"},
          {"GPUImageChromaKeyBlendFilter", "setColorToReplaceRed:green:blue:", "colorToReplace"}}) {
        SCOPED_TRACE(name);
        const FilterDescription& description = *filterCatalogue().find(name);
        ASSERT_EQ(description.selectors.size(), 1U);
        EXPECT_EQ(description.selectors.front().name, selector);
        const auto by = made(description, {});
        description.selectors.front().call(*by, std::vector<TypedValue>{0.9F, 0.2F, 0.6F});
        const bool withAlpha = std::holds_alternative<GPUVector4>(description.property(property)->fallback);
        const auto same = made(description, {{property, withAlpha ? TypedValue(GPUVector4{0.9F, 0.2F, 0.6F, 0})
                                                                  : TypedValue(GPUVector3{0.9F, 0.2F, 0.6F})}});
        EXPECT_TRUE(imagesMatch(filteredNoise(by), filteredNoise(same)));
    }
}

} // namespace
} // namespace lamina::test
