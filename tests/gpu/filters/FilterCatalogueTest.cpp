#include "gpu/filters/FilterCatalogue.h"
#include "FrameSource.h"
#include "GLCalls.h"
#include "GraphFixture.h"
#include "TestPictures.h"
#include "gpu/core/GPUImageFilterPipeline.h"
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

bool bringsItsOwnSecondPicture(const std::string& filter)
{
    return filter == "GPUImageMosaicFilter";
}

TEST_F(FilterCatalogueTest, WhatItTellsIsWhatANewFilterHas)
{
    for (const auto& [name, description] : filterCatalogue().all()) {
        SCOPED_TRACE(name);
        EXPECT_EQ(name, description.className);
        const auto fresh = made(description, {});
        ASSERT_TRUE(fresh && fresh->canRender());
        const bool takesTwo = dynamic_cast<GPUImageTwoInputFilter*>(fresh.get()) && !bringsItsOwnSecondPicture(name);
        EXPECT_EQ(description.inputs, takesTwo ? 2 : 1);
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
        for (const FilterSelector& operation : description.selectors) {
            EXPECT_TRUE(imagesMatch(filteredNoise(made(description, {{operation.name, operation.arguments}})), wanted))
                << operation.name;
        }
    }
}

/// The first frame passes as it is.
bool showsNothingOfAStill(const std::string& filter)
{
    return filter == "GPUImageLowPassFilter" || filter == "GPUImageHighPassFilter";
}

TEST_F(FilterCatalogueTest, SamplesShowWhatTheFilterDoes)
{
    const CGImage picture = noisePicture(31, 17, CGImageAlphaInfo::Last);
    for (const auto& [name, description] : filterCatalogue().all()) {
        const Outcome suits = checkSettings(description, description.sample);
        ASSERT_TRUE(suits.ok()) << name << ": " << suits.error().message();
        const bool shows = !imagesMatch(filteredNoise(made(description, description.sample)), picture, 8);
        EXPECT_NE(shows, showsNothingOfAStill(name)) << name;
    }
}

TEST_F(FilterCatalogueTest, NoFilterMakesObjectsOnceWarm)
{
    const CGImage picture = noisePicture(31, 17, CGImageAlphaInfo::Last);
    for (const auto& [name, description] : filterCatalogue().all()) {
        const auto filter = made(description, {});
        FrameSource other;
        if (description.inputs > 1)
            other.addTarget(filter, 1);
        m_source->addTarget(filter, 0);
        const auto consumer = consumerOf(*filter);
        GLCalls warm;
        for (int frame = 0; frame < 12; ++frame) {
            other.push(picture, second(frame));
            m_source->push(picture, second(frame));
            if (frame == 1)
                warm = valueFromVideoProcessingQueue(glCallsSoFar);
        }
        EXPECT_EQ((valueFromVideoProcessingQueue(glCallsSoFar) - warm).objectsMade(), 0) << name;
        EXPECT_EQ(consumer->frames().size(), 12U) << name;
        m_source->removeAllTargets();
    }
}

TEST_F(FilterCatalogueTest, OffersTheSetterOfThreeNumbers)
{
    for (const char* name : {"GPUImageMonochromeFilter", "GpuImageCustomFilter", "GpuImageCustomFilter1"}) {
        SCOPED_TRACE(name);
        const FilterDescription& description = *filterCatalogue().find(name);
        ASSERT_EQ(description.selectors.size(), 1U);
        EXPECT_EQ(description.selectors.front().name, "setColorRed:green:blue:");
        const auto by = made(description, {});
        description.selectors.front().call(*by, std::vector<TypedValue>{0.9F, 0.2F, 0.6F});
        const auto same = made(description, {{"color", GPUVector4{0.9F, 0.2F, 0.6F, 0}}});
        EXPECT_TRUE(imagesMatch(filteredNoise(by), filteredNoise(same)));
    }
}

TEST_F(FilterCatalogueTest, PipelinesTakeEveryKindOfValueAndOperationsInTheirOrder)
{
    struct Case {
        const char* filter;
        const char* attributes;
        FilterSettings same;
    };
    const FilterRegistry& catalogue = filterCatalogue();
    const ValueKind& choice =
        kindOf(catalogue.find("GPUImageSkinToneFilter")->property("upperSkinToneColor")->fallback);
    for (const Case& one : std::initializer_list<Case>{
             {"GPUImageHSBFilter",
              R"json("adjustSaturation:": "float(0)", "reset": [], "rotateHue:": ["float(120)"])json",
              {{"rotateHue:", 120.0F}}},
             {"GPUImageLevelsFilter",
              R"json("setRedMin:gamma:max:minOut:maxOut:":
                  ["float(0)", "float(1)", "float(1)", "float(1)", "float(0)"])json",
              {{"setRedMin", std::vector<TypedValue>{0.0F, 1.0F, 1.0F, 1.0F, 0.0F}}}},
             {"GPUImageSkinToneFilter",
              R"json("setUpperSkinToneColor:": "NSString(orange)", "setSkinToneAdjust:": "float(1)")json",
              {{"skinToneAdjust", 1.0F}, {"upperSkinToneColor", NamedChoice{&choice, 1}}}},
             {"GPUImageToneCurveFilter",
              R"json("setRedControlPoints:": "NSString(0,1;1,0)")json",
              {{"redControlPoints", std::vector<CGPoint>{{0, 1}, {1, 0}}}}},
         }) {
        SCOPED_TRACE(one.filter);
        const auto configuration =
            PipelineConfiguration::fromJson(R"({"Filters": [{"FilterName": ")" + std::string(one.filter) +
                                                R"(", "Attributes": {)" + one.attributes + "}}]}",
                                            "");
        ASSERT_TRUE(configuration.ok()) << configuration.error().message();
        const auto chain = GPUImageFilterPipeline::makeWithConfiguration(*configuration, catalogue, nullptr, nullptr);
        ASSERT_TRUE(chain.ok()) << chain.error().message();
        const CGImage got = filteredNoise((*chain)->filters().front());
        EXPECT_TRUE(imagesMatch(got, filteredNoise(made(*catalogue.find(one.filter), one.same))));
        EXPECT_FALSE(imagesMatch(got, filteredNoise(made(*catalogue.find(one.filter), {})), 20));
    }
}

TEST_F(FilterCatalogueTest, NoFilterMakesGLObjectsForAFrame)
{
    const CGImage picture = noisePicture(31, 17, CGImageAlphaInfo::Last);
    for (const auto& [name, description] : filterCatalogue().all()) {
        SCOPED_TRACE(name);
        const auto filter = made(description, {});
        std::vector<std::shared_ptr<GPUImagePicture>> others;
        for (int slot = 1; slot < description.inputs; ++slot) {
            others.push_back(std::make_shared<GPUImagePicture>(picture));
            others.back()->addTarget(filter, slot);
            others.back()->processImage();
        }
        m_source->addTarget(filter, 0);
        const auto push = [&](int frame) { m_source->push(picture, second(frame)); };
        push(0);
        push(1);
        const GLCalls before = valueFromVideoProcessingQueue(glCallsSoFar);
        push(2);
        EXPECT_EQ((valueFromVideoProcessingQueue(glCallsSoFar) - before).objectsMade(), 0);
        m_source->removeAllTargets();
    }
}

} // namespace
} // namespace lamina::test
