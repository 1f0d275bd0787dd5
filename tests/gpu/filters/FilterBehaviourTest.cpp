#include "GLCalls.h"
#include "GraphFixture.h"
#include "TestPictures.h"
#include "gpu/core/GPUImageContext.h"
#include "gpu/core/GPUImageFilterGroup.h"
#include "gpu/core/GPUImageRotationMode.h"
#include "gpu/filters/blend/BlendFilters.h"
#include "gpu/filters/blur/GPUImageGaussianBlurFilter.h"
#include "gpu/filters/color/GPUImageGrayscaleFilter.h"
#include "gpu/filters/color/GPUImageLookupFilter.h"
#include "gpu/filters/color/GPUImageSepiaFilter.h"
#include "gpu/filters/color/GPUImageToneCurveFilter.h"
#include "gpu/filters/color/LookupTables.h"
#include "gpu/filters/edge/GPUImage3x3ConvolutionFilter.h"
#include "gpu/filters/edge/GPUImageColourFASTFeatureDetector.h"
#include "gpu/filters/edge/GPUImageErosionFilter.h"
#include "gpu/filters/edge/GPUImageSobelEdgeDetectionFilter.h"
#include "gpu/filters/edge/GPUImageToonFilter.h"
#include "gpu/filters/edge/MorphologyShaders.h"
#include "gpu/sources/GPUImagePicture.h"
#include "platform/base/MemoryWarning.h"

#include <cmath>
#include <cstddef>
#include <typeinfo>
#include <utility>

// What filters do beside their formulas, which a table holds against numpy.

namespace lamina::test {
namespace {

using Blur = GPUImageGaussianBlurFilter;

CGImage noise(int width, int height)
{
    return noisePicture(width, height, CGImageAlphaInfo::Last);
}

using FilterBehaviourTest = GraphFixture;

constexpr GPUMatrix3x3 kLopsided{{0.3F, -0.1F, 0.05F}, {0.2F, 0.25F, -0.3F}, {-0.15F, 0.35F, 0.4F}};

/// Has a direction, downwards, in its first pass.
std::shared_ptr<Blur> blurDownwards(int passes)
{
    auto filter = std::make_shared<Blur>();
    filter->setBlurPasses(passes);
    filter->setHorizontalTexelSpacing(0);
    return filter;
}

TEST_F(FilterBehaviourTest, SeesItsInputTurnedInAllRotations)
{
    const CGImage picture = noise(23, 14);
    const auto erosion = std::make_shared<GPUImageErosionFilter>(2);
    erosion->setVerticalTexelSpacing(3);
    const auto features = std::make_shared<GPUImageColourFASTFeatureDetector>();
    features->setBlurRadiusInPixels(0); // the rounding of a blur would show in the angle
    const std::shared_ptr<GPUImageStage> filters[] = {std::make_shared<GPUImageSepiaFilter>(),
                                                      std::make_shared<GPUImageToonFilter>(),
                                                      std::make_shared<GPUImageSobelEdgeDetectionFilter>(),
                                                      features,
                                                      erosion,
                                                      blurDownwards(1),
                                                      blurDownwards(2),
                                                      blurDownwards(3)};
    const auto turn = std::make_shared<GPUImageFilter>();
    const auto lopsided = std::make_shared<GPUImage3x3ConvolutionFilter>();
    lopsided->setConvolutionKernel(kLopsided);
    const auto filtered = [](GPUImageStage& filter, const CGImage& input, GPUImageRotationMode rotation) {
        onQueue([&] { filter.setInputRotation(rotation, 0); });
        return filter.newCGImageByFilteringCGImage(input);
    };
    for (int number = 0; number < 8; ++number) {
        const auto rotation = static_cast<GPUImageRotationMode>(number);
        const CGImage turned = filtered(*turn, picture, rotation);
        for (const auto& filter : filters) {
            EXPECT_TRUE(
                imagesMatch(filtered(*filter, picture, rotation), filtered(*filter, turned, kGPUImageNoRotation), 1))
                << typeid(*filter).name() << " rotation " << number;
        }
        // Neighbours of a single pass are those of the texture: what has a direction turns with it.
        const CGImage convolved = filtered(*lopsided, picture, kGPUImageNoRotation);
        EXPECT_TRUE(imagesMatch(filtered(*lopsided, picture, rotation), filtered(*turn, convolved, rotation), 1))
            << number;
    }
}

TEST_F(FilterBehaviourTest, ABlendOfPremultipliedColoursTakesAndGivesStraightPictures)
{
    const auto blend = std::make_shared<GPUImageMultiplyBlendFilter>();
    const auto group = std::make_shared<GPUImageFilterGroup>();
    group->setInitialFilters({blend});
    group->setTerminalFilter(blend);
    group->addFilter(blend);
    for (const auto& [overlay, wanted] : {std::pair<Rgba, Rgba>{{255, 255, 255, 0}, {200, 100, 50, 128}},
                                          // What black lets through of the base, in the alpha of both.
                                          {{0, 0, 0, 128}, {67, 33, 17, 192}}}) {
        GPUImagePicture source(solidPicture(5, 3, overlay), PictureUpload::as(blend->alphaForm()));
        source.addTarget(blend, 1);
        for (GPUImageStage* stage :
             {static_cast<GPUImageStage*>(blend.get()), static_cast<GPUImageStage*>(group.get())}) {
            source.processImage();
            EXPECT_TRUE(imagesMatch(stage->newCGImageByFilteringCGImage(solidPicture(5, 3, {200, 100, 50, 128})),
                                    solidPicture(5, 3, wanted), 2));
        }
    }
}

TEST_F(FilterBehaviourTest, SourceOverReadsBothAtOnePlace)
{
    const auto filter = std::make_shared<GPUImageSourceOverBlendFilter>();
    GPUImagePicture overlay(noise(9, 4));
    overlay.addTarget(filter, 1);
    const auto filtered = [&](GPUImageRotationMode rotationOfOverlay) {
        onQueue([&] { filter->setInputRotation(rotationOfOverlay, 1); });
        overlay.processImage();
        return filter->newCGImageByFilteringCGImage(chartPicture(9, 4));
    };
    EXPECT_TRUE(imagesMatch(filtered(kGPUImageRotate180), filtered(kGPUImageNoRotation)));
}

TEST_F(FilterBehaviourTest, BlurShadersOfSingleReadsAndOfPairsAgree)
{
    const CGImage picture = noise(37, 23);
    for (const unsigned reach : {0U, 1U, 4U, 7U}) {
        const auto blurredBy = [&](const std::string& vertexShader, const std::string& fragmentShader) {
            Blur filter;
            filter.switchToVertexShader(vertexShader, fragmentShader);
            return filter.newCGImageByFilteringCGImage(picture);
        };
        EXPECT_TRUE(imagesMatch(blurredBy(Blur::vertexShaderForStandardBlurOfRadius(reach, 2.5),
                                          Blur::fragmentShaderForStandardBlurOfRadius(reach, 2.5)),
                                blurredBy(Blur::vertexShaderForOptimizedBlurOfRadius(reach, 2.5),
                                          Blur::fragmentShaderForOptimizedBlurOfRadius(reach, 2.5)),
                                2))
            << reach;
    }
}

/// The picture as a filter gives it whose shaders are those of pairs on every device.
CGImage blurredByPairs(const CGImage& picture, GPUImageRotationMode rotation, unsigned reach, double sigma,
                       const std::function<void(Blur&)>& change)
{
    FrameSource source;
    const auto filter = std::make_shared<Blur>();
    filter->switchToVertexShader(Blur::vertexShaderForOptimizedBlurOfRadius(reach, sigma),
                                 Blur::fragmentShaderForOptimizedBlurOfRadius(reach, sigma));
    change(*filter);
    source.addTarget(filter);
    source.setRotation(rotation);
    const auto consumer = consumerOf(*filter);
    source.push(picture, second(1));
    return consumer->last().pixels;
}

TEST_F(FilterBehaviourTest, ABlurThatReadsEachTexelGivesWhatPairsGive)
{
    const auto same = [](Blur&) {};
    struct Case {
        GPUImageRotationMode rotation = kGPUImageNoRotation;
        std::function<void(Blur&)> change;
        int tolerance = 0;
    };
    const Case cases[] = {
        {kGPUImageNoRotation, same, 1},
        {kGPUImageRotateLeft, same, 1},
        {kGPUImageRotateRight, [](Blur& blur) { blur.setBlurPasses(3); }, 2},
        // Pairs read between texels then, and so does a blur on every device.
        {kGPUImageNoRotation, [](Blur& blur) { blur.setTexelSpacingMultiplier(2); }},
        {kGPUImageNoRotation,
         [](Blur& blur) {
             blur.forceProcessingAtSize({20, 31});
         },
         1},
    };
    const CGImage picture = noise(37, 23);
    const auto filter = std::make_shared<Blur>();
    filter->setBlurRadiusInPixels(10);
    m_source->addTarget(filter);
    const auto consumer = consumerOf(*filter);
    for (const auto& [rotation, change, tolerance] : cases) {
        change(*filter);
        m_source->setRotation(rotation);
        m_source->push(picture, second(1));
        EXPECT_TRUE(imagesMatch(consumer->last().pixels, blurredByPairs(picture, rotation, 22, 10, change), tolerance));
        filter->setBlurPasses(1);
        filter->setTexelSpacingMultiplier(1);
    }
}

TEST_F(FilterBehaviourTest, FewVaryingsTakeFewPairsOfABlur)
{
    const CGImage picture = noise(37, 23);
    const CGImage wanted = blurredByPairs(picture, kGPUImageNoRotation, 22, 10, [](Blur&) {});
    for (const auto& [vectors, places] : {std::pair{8, "[7]"}, {11, "[9]"}, {15, "[13]"}, {16, "[15]"}, {1, "[7]"}}) {
        GPUImageContext::limitVaryingVectors(vectors);
        EXPECT_THAT(Blur::vertexShaderForOptimizedBlurOfRadius(22, 10), testing::HasSubstr(places));
        EXPECT_TRUE(imagesMatch(blurredByPairs(picture, kGPUImageNoRotation, 22, 10, [](Blur&) {}), wanted, 1));
    }
    GPUImageContext::limitVaryingVectors(0);
}

TEST_F(FilterBehaviourTest, MorphologyShadersOfPlacesHandedOverAndComputedAgree)
{
    const CGImage picture = noise(37, 23);
    for (const unsigned radius : {1U, 4U}) {
        const auto widened = [&](MorphologyPlaces places) {
            const std::string vertex = morphologyVertexShader(places, radius);
            const std::string fragment =
                morphologyFragmentShader(Morphology::Dilation, MorphologyChannels::All, places, radius);
            return GPUImageTwoPassTextureSamplingFilter(vertex, fragment, vertex, fragment)
                .newCGImageByFilteringCGImage(picture);
        };
        EXPECT_TRUE(imagesMatch(widened(MorphologyPlaces::HandedOver), widened(MorphologyPlaces::Computed))) << radius;
    }
}

TEST_F(FilterBehaviourTest, ABlurMakesShadersOnlyForARadiusThatIsNew)
{
    Blur filter;
    const int isNew = GPUImageContext::deviceDrawsOnProcessor() ? 2 : 1; // passes of pairs share one
    for (const auto& [radius, made] : {std::pair{2.0F, 0},
                                       {23.0F, isNew},
                                       {23.3F, 0},
                                       {24.0F, isNew},
                                       {23.0F, 0},
                                       {std::nanf(""), 0},
                                       {HUGE_VALF, 0}}) {
        const GLCalls before = glCallsSoFar();
        filter.setBlurRadiusInPixels(radius);
        EXPECT_EQ((glCallsSoFar() - before).programs, made) << radius;
    }
    EXPECT_EQ(filter.blurRadiusInPixels(), 23.0F) << "what is no number changes nothing";
}

TEST_F(FilterBehaviourTest, FractionsBecomeARadiusWithTheNextSizeOnce)
{
    Blur filter;
    const auto radiusAfter = [&](int width, int height) {
        filter.newCGImageByFilteringCGImage(noise(width, height));
        return filter.blurRadiusInPixels();
    };
    filter.setBlurRadiusAsFractionOfImageWidth(0.1F);
    filter.setTexelSpacingMultiplier(1); // there is no size yet
    EXPECT_EQ(filter.blurRadiusInPixels(), 2.0F);
    EXPECT_EQ(radiusAfter(60, 30), 6.0F);
    EXPECT_EQ(radiusAfter(30, 60), 6.0F) << "the fraction is used up";
    filter.setBlurRadiusAsFractionOfImageHeight(0.1F);
    filter.setBlurRadiusAsFractionOfImageWidth(-1);
    EXPECT_EQ(radiusAfter(60, 30), 3.0F) << "negative fractions change nothing";
    filter.setBlurRadiusAsFractionOfImageWidth(0.5F);
    filter.setBlurRadiusInPixels(5);
    EXPECT_EQ(radiusAfter(60, 30), 5.0F) << "a radius in pixels ends the fraction";
}

TEST_F(FilterBehaviourTest, PassesOfABlurTakeTwoFramebuffersAndLeaveNoCounts)
{
    const CGImage picture = noise(24, 16);
    const auto filter = std::make_shared<Blur>();
    filter->setBlurPasses(3);
    m_source->addTarget(filter);
    m_source->push(picture, second(0));
    const std::size_t idle = idleFramebuffers();
    EXPECT_EQ(idle, 3U) << "the source's and two of the filter's";
    const GLCalls before = glCallsSoFar();
    m_source->push(picture, second(1));
    EXPECT_EQ((glCallsSoFar() - before).objectsMade(), 0);
    EXPECT_EQ(idleFramebuffers(), idle);

    // A kept frame is the last pass's, and is given back when it is taken.
    filter->useNextFrameForImageCapture();
    m_source->push(picture, second(2));
    EXPECT_EQ(idleFramebuffers(), idle - 1);
    EXPECT_TRUE(
        imagesMatch(filter->newCGImageFromCurrentlyProcessedOutput(), filter->newCGImageByFilteringCGImage(picture)));
    filter->setPreventRendering(true);
    m_source->push(picture, second(3));
    EXPECT_EQ(idleFramebuffers(), GPUImageFramebufferCache::livingCount()) << "a frozen filter gives its input back";
}

TEST_F(FilterBehaviourTest, GrayscaleLeavesMonochromeInputAlone)
{
    const auto filter = std::make_shared<GPUImageGrayscaleFilter>();
    m_source->addTarget(filter);
    const auto consumer = consumerOf(*filter);
    for (const bool monochrome : {true, false}) {
        m_source->setMonochrome(monochrome);
        m_source->push({8, 8}, {}, second(1));
        EXPECT_EQ(consumer->frames().empty(), monochrome);
        EXPECT_EQ(idleFramebuffers() == 0, monochrome) << "the input's count stays";
    }
}

TEST_F(FilterBehaviourTest, ALookupShowsNoLookBeforeItsIntensityIsSet)
{
    const CGImage picture = rampPicture(37, 23, 90);
    const auto graded = [&](GPUImageLookupFilter& filter) {
        const auto table = std::make_shared<GPUImagePicture>(lookupTable("lookup_amatorka.png"));
        table->addTarget(std::shared_ptr<GPUImageInput>(filter.shared_from_this(), &filter), 1);
        table->processImage();
        return filter.newCGImageByFilteringCGImage(picture);
    };
    const auto told = std::make_shared<GPUImageLookupFilter>();
    told->setIntensity(1);
    EXPECT_FALSE(imagesMatch(graded(*told), picture, 20));
    const auto fresh = std::make_shared<GPUImageLookupFilter>();
    EXPECT_EQ(fresh->intensity(), 1);
    EXPECT_TRUE(imagesMatch(graded(*fresh), picture)) << "in the program that has just had an intensity";
}

TEST_F(FilterBehaviourTest, ToneCurvesKeepTheirTextureAndWhatIsInForce)
{
    const CGImage picture = noise(24, 16);
    GPUImageToneCurveFilter filter;
    const GLCalls before = glCallsSoFar();
    filter.setRedControlPoints({{0, 1}, {1, 0}});
    EXPECT_EQ((glCallsSoFar() - before).objectsMade(), 0);
    const CGImage curved = filter.newCGImageByFilteringCGImage(picture);
    EXPECT_FALSE(imagesMatch(curved, picture, 20));
    filter.setRedControlPoints({});
    const GPUImageToneCurveFilter other; // leaves a texture of its own bound
    EXPECT_TRUE(imagesMatch(filter.newCGImageByFilteringCGImage(picture), curved)) << "no points are no curve";
    EXPECT_FALSE(filter.setPointsWithACV(LAMINA_CORPUS "/acv/whole-no-points").ok());
    EXPECT_FALSE(filter.setPointsWithACVURL(LAMINA_CORPUS "/acv/whole-no-points").ok());
    EXPECT_TRUE(filter.redControlPoints().empty()) << "a file that is refused changes nothing";
}

TEST_F(FilterBehaviourTest, LookupTablesAreSharedUntilMemoryIsShort)
{
    const CGImage table = lookupTable("lookup_identity.png");
    EXPECT_EQ(table.size(), (IntSize{512, 512}));
    EXPECT_TRUE(lookupTable("lookup_identity.png").sharesBytesWith(table));
    NotificationCenter::defaultCenter().post(UIApplicationDidReceiveMemoryWarningNotification);
    EXPECT_FALSE(lookupTable("lookup_identity.png").sharesBytesWith(table));
    EXPECT_TRUE(imagesMatch(lookupTable("lookup_identity.png"), table));
    EXPECT_FALSE(lookupTable("lookup_unknown.png"));
}

} // namespace
} // namespace lamina::test
