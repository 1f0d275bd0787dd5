#include "GraphFixture.h"
#include "TestPictures.h"
#include "gpu/core/HighPrecision.h"
#include "gpu/filters/effect/GPUImageCropFilter.h"
#include "gpu/filters/effect/GPUImageGlassSphereFilter.h"
#include "gpu/filters/effect/GPUImageMosaicFilter.h"
#include "gpu/filters/effect/GPUImagePolkaDotFilter.h"
#include "gpu/filters/effect/GPUImageSwirlFilter.h"
#include "gpu/filters/effect/GPUImageTransformFilter.h"
#include "gpu/filters/effect/GPUImageVignetteFilter.h"
#include "gpu/sources/GPUImagePicture.h"
#include "platform/base/Log.h"

#include <typeinfo>
#include <utility>

// What effects do beside their formulas.

namespace lamina::test {
namespace {

using EffectBehaviourTest = GraphFixture;

template <class Filter>
std::shared_ptr<Filter> around(CGPoint center)
{
    auto filter = std::make_shared<Filter>();
    filter->setCenter(center);
    return filter;
}

TEST_F(EffectBehaviourTest, PlacesAndSensesTurnWithTheInput)
{
    const CGImage picture = rampPicture(48, 24, 90);
    const auto whirl = around<GPUImageSwirlFilter>({0.3, 0.6});
    whirl->setAngle(0.2F);
    const auto ball = around<GPUImageGlassSphereFilter>({0.6, 0.3});
    const auto dots = std::make_shared<GPUImagePolkaDotFilter>();
    dots->setFractionalWidthOfAPixel(1.0F / 6); // whole cells on both sides
    const auto part = std::make_shared<GPUImageCropFilter>();
    part->setCropRegion({0.1, 0.3, 0.5, 0.25});
    const auto leaning = std::make_shared<GPUImageTransformFilter>();
    leaning->setAffineTransform({0.8, 0.1, 0, 0.6, 0.2, 0});
    const std::shared_ptr<GPUImageFilter> filters[] = {whirl, ball,   dots, around<GPUImageVignetteFilter>({0.2, 0.4}),
                                                       part,  leaning};
    const auto turn = std::make_shared<GPUImageFilter>();
    const auto filtered = [](GPUImageFilter& filter, const CGImage& input, GPUImageRotationMode rotation) {
        onQueue([&] { filter.setInputRotation(rotation, 0); });
        return filter.newCGImageByFilteringCGImage(input);
    };
    for (int number = 0; number < 8; ++number) {
        const auto rotation = static_cast<GPUImageRotationMode>(number);
        const CGImage turned = filtered(*turn, picture, rotation);
        for (const auto& filter : filters) {
            EXPECT_TRUE(
                imagesMatch(filtered(*filter, picture, rotation), filtered(*filter, turned, kGPUImageNoRotation), 2))
                << typeid(*filter).name() << " rotation " << number;
        }
    }
}

TEST_F(EffectBehaviourTest, AMosaicIsLaidFromItsOwnTilesUntilItGetsOthers)
{
    const auto mosaic = std::make_shared<GPUImageMosaicFilter>();
    mosaic->setColorOn(false);
    const CGImage white = solidPicture(40, 40, {255, 255, 255, 255});
    EXPECT_TRUE(imagesMatch(mosaic->newCGImageByFilteringCGImage(white), white));
    EXPECT_FALSE(mosaic->setTileSet("nowhere.png").ok());
    EXPECT_EQ(mosaic->tileSet(), "");
    EXPECT_TRUE(imagesMatch(mosaic->newCGImageByFilteringCGImage(white), white)) << "an error changes nothing";

    const Rgba red{255, 0, 0, 255};
    GPUImagePicture tiles(solidPicture(16, 16, red));
    tiles.addTarget(mosaic, 1);
    tiles.processImage();
    EXPECT_TRUE(imagesMatch(mosaic->newCGImageByFilteringCGImage(white), solidPicture(40, 40, red)));
    EXPECT_TRUE(mosaic->setTileSet("").ok());
    EXPECT_TRUE(imagesMatch(mosaic->newCGImageByFilteringCGImage(white), white));
}

TEST_F(EffectBehaviourTest, WithoutHighPrecisionTheLogSaysWhoNeedsIt)
{
    std::string log;
    LogSink usual = setLogSink([&](LogLevel, std::string_view line) { log += line; });
    const std::string shader = needingHighPrecision("NoisyFilter", "void main() { gl_FragColor = vec4(1.0); }");
    EXPECT_TRUE(GPUImageFilter(shader).canRender());
    EXPECT_FALSE(GPUImageFilter("#undef GL_FRAGMENT_PRECISION_HIGH\n" + shader).canRender());
    setLogSink(std::move(usual));
    EXPECT_NE(log.find("NoisyFilter needs high precision"), std::string::npos) << log;
}

} // namespace
} // namespace lamina::test
