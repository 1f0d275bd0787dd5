#include "EveryProcessor.h"
#include "GLCalls.h"
#include "GraphFixture.h"
#include "TestPictures.h"
#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageFilterGroup.h"
#include "gpu/core/GPUVectors.h"
#include "gpu/filters/FilterCatalogue.h"
#include "gpu/filters/color/GPUImageSepiaFilter.h"
#include "gpu/filters/color/GPUImageToneCurveFilter.h"
#include "gpu/filters/color/LookupTables.h"
#include "gpu/filters/edge/GPUImageSobelEdgeDetectionFilter.h"
#include "gpu/sources/GPUImagePicture.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

// Filters without GL beside the same filters with it, whose formulas a table holds against numpy.

namespace lamina::test {
namespace {

/// With kernels where the processor draws, which the machines that test do.
class KernelTest : public GraphFixture {
protected:
    void TearDown() override
    {
        GPUImageContext::setUsesKernels(true);
        GraphFixture::TearDown();
    }
};

struct Case {
    const char* filter;
    FilterSettings settings = {};
    int most = 1;           ///< difference: that of one filter
    bool hasSecond = false; ///< picture
};

const std::vector<Case>& cases()
{
    static const GPUMatrix4x4 mixing{
        {0.4F, 0.3F, -0.2F, 0.1F}, {0, 1.2F, 0.1F, 0}, {0.5F, 0, 0.4F, -0.3F}, {0.2F, 0.1F, 0, 0.7F}};
    static const std::vector<Case> all{
        {"GPUImageColorMatrixFilter", {{"intensity", 0.7F}, {"colorMatrix", mixing}}},
        {"GPUImageSepiaFilter"},
        {"GPUImageGrayscaleFilter"},
        {"GPUImageHueFilter", {{"hue", 200.0F}}},
        {"GpuImageCustomHue"},
        {"GPUImageHazeFilter", {{"distance", 0.2F}, {"slope", -0.5F}}},
        {"GPUImageHSBFilter"},
        {"GPUImageBrightnessFilter", {{"brightness", -0.2F}}},
        {"GPUImageContrastFilter", {{"contrast", 1.7F}}},
        {"GPUImageExposureFilter", {{"exposure", 0.6F}}},
        {"GPUImageSaturationFilter", {{"saturation", 1.6F}}},
        {"GPUImageOpacityFilter", {{"opacity", 0.4F}}},
        {"GPUImageRGBFilter", {{"red", 0.3F}, {"green", 1.8F}}},
        {"GPUImageColorInvertFilter"},
        {"GPUImageFalseColorFilter"},
        {"GPUImageGammaFilter", {{"gamma", 2.2F}}},
        {"GPUImageLevelsFilter"},
        {"GPUImageToneCurveFilter",
         {{"redControlPoints", GPUImageToneCurveFilter::Points{{0, 0.2}, {0.6, 0.3}, {1, 1}}}}},
        {"GPUImageMonochromeFilter", {{"intensity", 0.8F}}},
        {"GpuImageCustomFilter"},
        {"GpuImageCustomFilter1"},
        {"GPUImageAmatorkaFilter"},
        {"GPUImageLookupFilter", {{"intensity", 0.6F}}, 1, true},
        {"GPUImageAlphaBlendFilter", {{"mix", 0.3F}}, 1, true},
        {"GPUImageGaussianBlurFilter"},
        {"GPUImageGaussianBlurFilter", {{"blurRadiusInPixels", 10.0F}, {"blurPasses", 2}}},
        {"GPUImageBoxBlurFilter", {{"blurRadiusInPixels", 12.0F}}},
        {"GPUImageSoftEleganceFilter", {}, 3}, // four filters, of which the last steepens what it gets
        {"GPUImageToonFilter"},
        {"GpuImageCustomFilter3", {{"threshold", 0.4F}, {"quantizationLevels", 3.5F}}},
        {"GPUImageEmbossFilter", {{"intensity", 0.6F}}},
        {"GPUImageErosionFilter"},
        {"GPUImageRGBDilationFilter"},
    };
    return all;
}

int largestDifference(const CGImage& x, const CGImage& y)
{
    const std::vector<Rgba> ofX = pixelsOf(x);
    const std::vector<Rgba> ofY = pixelsOf(y);
    int largest = ofX.size() == ofY.size() ? 0 : 255;
    for (std::size_t i = 0; i < ofX.size() && largest < 255; ++i)
        largest = std::max(largest, difference(ofX[i], ofY[i]));
    return largest;
}

/// What a new filter makes of the picture, and of a table or another picture in its second slot. `uploads`: how often
/// GL was given memory.
CGImage drawn(const Case& wanted, const CGImage& picture, int* uploads = nullptr)
{
    const auto filter = makeFilter(*filterCatalogue().find(wanted.filter), wanted.settings);
    if (!filter)
        return {};
    const bool grades = std::string(wanted.filter) == "GPUImageLookupFilter";
    const auto second = std::make_shared<GPUImagePicture>(
        grades ? lookupTable("lookup_miss_etikate.png")
               : noisePicture(picture.width(), picture.height(), CGImageAlphaInfo::Last, 7));
    if (wanted.hasSecond) {
        second->addTarget(*filter, 1);
        second->processImage();
    }
    const GLCalls before = glCallsSoFar();
    GPUImagePicture first(picture);
    first.addTarget(*filter, 0);
    (*filter)->useNextFrameForImageCapture();
    first.processImage();
    CGImage result = (*filter)->newCGImageFromCurrentlyProcessedOutput();
    if (uploads)
        *uploads = (glCallsSoFar() - before).uploads;
    return result;
}

TEST_F(KernelTest, AreWithinAStepOfTheirShaders)
{
    for (const auto& [width, height] : {std::pair{131, 67}, {1, 9}, {40, 1}}) {
        const CGImage picture = noisePicture(width, height, CGImageAlphaInfo::Last, 3);
        const CGImage ramp = rampPicture(width, height, 90);
        for (const Case& wanted : cases()) {
            for (const CGImage& input : {picture, ramp}) {
                GPUImageContext::setUsesKernels(true);
                int uploads = -1;
                const CGImage made = drawn(wanted, input, &uploads);
                EXPECT_EQ(uploads, 0) << wanted.filter << " went by GL";
                GPUImageContext::setUsesKernels(false);
                const CGImage shaded = drawn(wanted, input);
                ASSERT_TRUE(made && shaded) << wanted.filter;
                EXPECT_LE(largestDifference(made, shaded), wanted.most)
                    << wanted.filter << " of " << width << " x " << height;
            }
        }
    }
}

TEST_F(KernelTest, GiveTheSameBytesOnEveryProcessor)
{
    const CGImage picture = noisePicture(259, 130, CGImageAlphaInfo::Last, 4);
    std::vector<std::vector<std::uint8_t>> expected;
    for (const Case& wanted : cases())
        expected.push_back(bytesOf(drawn(wanted, picture)));
    onEveryProcessor([&](const std::string& processor) {
        for (std::size_t i = 0; i < cases().size(); ++i)
            EXPECT_TRUE(bytesOf(drawn(cases()[i], picture)) == expected[i]) << cases()[i].filter << ", " << processor;
    });
}

/// Pixels go up where a filter samples them and come back where a kernel reads them, whichever was first.
TEST_F(KernelTest, MixWithFiltersThatAreDrawn)
{
    const CGImage picture = noisePicture(50, 31, CGImageAlphaInfo::Last, 5);
    const auto mixed = [&](bool uses) {
        GPUImageContext::setUsesKernels(uses);
        GPUImagePicture source(picture);
        const auto group = std::make_shared<GPUImageFilterGroup>();
        group->addFiltersInLine({std::make_shared<GPUImageSepiaFilter>(),
                                 std::make_shared<GPUImageSobelEdgeDetectionFilter>(),
                                 std::make_shared<GPUImageSepiaFilter>(), multiplying(0.5F)});
        const auto beside = std::make_shared<GPUImageSepiaFilter>();
        source.addTarget(multiplying(0.5F)); // has the texture of the very picture that a kernel reads next
        source.addTarget(group);
        source.addTarget(beside);
        std::vector<CGImage> made;
        for (int time = 0; time < 3; ++time) { // with what the pool has kept
            group->useNextFrameForImageCapture();
            beside->useNextFrameForImageCapture();
            source.processImage();
            made.push_back(group->newCGImageFromCurrentlyProcessedOutput());
            made.push_back(beside->newCGImageFromCurrentlyProcessedOutput());
        }
        return made;
    };
    const std::vector<CGImage> made = mixed(true);
    const std::vector<CGImage> shaded = mixed(false);
    for (std::size_t i = 0; i < made.size(); ++i) {
        EXPECT_EQ(bytesOf(made[i]), bytesOf(made[i % 2])) << "a picture that was given away has not changed";
        EXPECT_LE(largestDifference(made[i], shaded[i]), 6) << i; // edges of what differs by a step
    }
}

} // namespace
} // namespace lamina::test
