#include "FilterReference.h"

#include "gpu/core/GPUImageContext.h"
#include "gpu/filters/GPUImageAlphaBlendFilter.h"
#include "gpu/filters/GPUImageColorMatrixFilter.h"
#include "gpu/filters/GPUImageDissolveBlendFilter.h"
#include "gpu/filters/GPUImageGrayscaleFilter.h"
#include "gpu/filters/GPUImageHazeFilter.h"
#include "gpu/filters/GPUImageMonochromeFilter.h"
#include "gpu/filters/GPUImageSepiaFilter.h"
#include "gpu/filters/GpuImageCustomFilter.h"
#include "gpu/filters/GpuImageCustomFilter1.h"

#include <cmath>
#include <gtest/gtest.h>

namespace lamina::test {
namespace {

using Make = std::function<std::shared_ptr<GPUImageFilter>()>;

template <class Filter, class... Setting>
Make make(Setting... setting)
{
    return [setting...] {
        auto filter = std::make_shared<Filter>();
        (setting(*filter), ...);
        return filter;
    };
}

Color mixed(const Color& from, const Color& to, double share)
{
    Color color{};
    for (std::size_t k = 0; k < color.size(); ++k)
        color[k] = (1 - share) * from[k] + share * to[k];
    return color;
}

Color sepia(const Color& c, double intensity)
{
    const double luma = 0.299 * c[0] + 0.587 * c[1] + 0.114 * c[2];
    return mixed(c, {1.2 * luma, luma, 0.8 * luma, c[3]}, intensity);
}

Color tinted(const Color& c, double intensity, const std::array<double, 3>& tint)
{
    const double luma = 0.2125 * c[0] + 0.7154 * c[1] + 0.0721 * c[2];
    Color color{0, 0, 0, c[3]};
    for (std::size_t k = 0; k < tint.size(); ++k)
        color[k] = luma < 0.5 ? 2 * luma * tint[k] : 1 - 2 * (1 - luma) * (1 - tint[k]);
    return mixed(c, color, intensity);
}

Color dehazed(const Color& c, double haze)
{
    Color color{};
    for (std::size_t k = 0; k < color.size(); ++k)
        color[k] = (c[k] - haze) / (1 - haze);
    return color;
}

struct PointCase {
    const char* name;
    Make make;
    std::function<Color(const Color& c, double v)> formula;
};

// Every row of the matrix counts, and none equals a column.
constexpr GPUMatrix4x4 kUnevenMatrix{
    {0.5F, 0.25F, 0, 0.125F}, {0, 0.75F, 0.5F, 0}, {-0.25F, 0, 1, 0.25F}, {0.25F, 0, -0.125F, 0.75F}};

const PointCase kPointCases[] = {
    {"ColorMatrixAtFirst", make<GPUImageColorMatrixFilter>(), [](const Color& c, double) { return c; }},
    {"ColorMatrixHalf",
     make<GPUImageColorMatrixFilter>([](auto& f) { f.setColorMatrix(kUnevenMatrix); },
                                     [](auto& f) { f.setIntensity(0.5F); }),
     [](const Color& c, double) {
         const Color full{0.5 * c[0] + 0.25 * c[1] + 0.125 * c[3], 0.75 * c[1] + 0.5 * c[2],
                          -0.25 * c[0] + c[2] + 0.25 * c[3], 0.25 * c[0] - 0.125 * c[2] + 0.75 * c[3]};
         return mixed(c, full, 0.5);
     }},
    {"Sepia", make<GPUImageSepiaFilter>(), [](const Color& c, double) { return sepia(c, 1); }},
    {"SepiaWeak", make<GPUImageSepiaFilter>([](auto& f) { f.setIntensity(0.3F); }),
     [](const Color& c, double) { return sepia(c, 0.3); }},
    {"Grayscale", make<GPUImageGrayscaleFilter>(),
     [](const Color& c, double) {
         const double luma = 0.2125 * c[0] + 0.7154 * c[1] + 0.0721 * c[2];
         return Color{luma, luma, luma, c[3]};
     }},
    {"Haze", make<GPUImageHazeFilter>(), [](const Color& c, double) { return dehazed(c, 0.2); }},
    {"HazeAddedDownwards",
     make<GPUImageHazeFilter>([](auto& f) { f.setDistance(0.1F); }, [](auto& f) { f.setSlope(-0.4F); }),
     [](const Color& c, double v) { return dehazed(c, 0.1 - 0.4 * v); }},
    {"Monochrome", make<GPUImageMonochromeFilter>(),
     [](const Color& c, double) {
         return tinted(c, 1, {0.6, 0.45, 0.3});
     }},
    {"MonochromeBlue",
     make<GPUImageMonochromeFilter>(
         [](auto& f) {
             f.setColor({0.1F, 0.2F, 0.9F, 0.5F});
         },
         [](auto& f) { f.setIntensity(0.8F); }),
     [](const Color& c, double) {
         return tinted(c, 0.8, {0.1, 0.2, 0.9});
     }},
    {"Custom", make<GpuImageCustomFilter>(),
     [](const Color& c, double) {
         return tinted(c, 1, {0.35, 0.1, 0.23});
     }},
    {"Custom1", make<GpuImageCustomFilter1>(),
     [](const Color& c, double) {
         return tinted(c, 5, {0.35, 0.23, 0.1});
     }},
};

class PointFilter : public testing::TestWithParam<PointCase> {};

TEST_P(PointFilter, FollowsItsFormula)
{
    ASSERT_NO_FATAL_FAILURE(requireContext());
    for (const CGImage& picture : usualPictures()) {
        const auto formula = [](const Texture& in, double u, double v) {
            return GetParam().formula(in.sample(u, v), v);
        };
        expectFilter(*GetParam().make(), picture, formula);
    }
}

INSTANTIATE_TEST_SUITE_P(Filters, PointFilter, testing::ValuesIn(kPointCases),
                         [](const auto& chosen) { return std::string(chosen.param.name); });

TEST(PointFilters, SeeTheTurnedPictureInAllRotations)
{
    ASSERT_NO_FATAL_FAILURE(requireContext());
    for (const bool translucent : {false, true}) {
        expectFilterInAllRotations(make<GPUImageSepiaFilter>(), noisePicture(19, 8, translucent),
                                   [](const Texture& in, double u, double v) { return sepia(in.sample(u, v), 1); });
    }
}

TEST(PointFilters, ATintChangesWithoutTheColour)
{
    ASSERT_NO_FATAL_FAILURE(requireContext());
    GpuImageCustomFilter filter;
    filter.setColorRed(0.8F, 0.4F, 0.2F);
    EXPECT_EQ(filter.color(), (GPUVector4{0.1F, 0.35F, 0.23F, 8}));
    expectFilter(*make<GpuImageCustomFilter>([](auto& f) { f.setColorRed(0.8F, 0.4F, 0.2F); })(),
                 gradientPicture(20, 9, false), [](const Texture& in, double u, double v) {
                     return tinted(in.sample(u, v), 1, {0.4, 0.8, 0.2});
                 });
}

// What is rounded on the way shows twelve times as large. Little changes from pixel to pixel, or the driver's reads
// would.
TEST(PointFilters, ATintGoesFarPastItsEndWithoutLoss)
{
    ASSERT_NO_FATAL_FAILURE(requireContext());
    constexpr float kIntensity = 12;
    expectFilter(
        *make<GpuImageCustomFilter1>([](auto& f) { f.setIntensity(kIntensity); })(), gradientPicture(255, 255, false),
        [](const Texture& in, double u, double v) {
            return tinted(in.sample(u, v), kIntensity, {0.35, 0.23, 0.1});
        },
        1);
}

// The divisor is 0: white included, every channel ends at 0.
TEST(HazeFilter, LeavesNothingOfAPictureThatIsAllHaze)
{
    ASSERT_NO_FATAL_FAILURE(requireContext());
    for (const bool translucent : {false, true}) {
        expectFilter(
            *make<GPUImageHazeFilter>([](auto& f) { f.setDistance(1); })(), noisePicture(64, 48, translucent),
            [](const Texture&, double, double) { return Color{}; }, 0);
    }
}

TEST(GrayscaleFilter, LeavesMonochromeInputAlone)
{
    ASSERT_NO_FATAL_FAILURE(requireContext());
    const auto filter = std::make_shared<GPUImageGrayscaleFilter>();
    EXPECT_TRUE(filter->wantsMonochromeInput());
    EXPECT_TRUE(filter->providesMonochromeOutput());
    runSynchronouslyOnVideoProcessingQueue([&] {
        const auto input = GPUImageContext::sharedFramebufferCache().fetchFramebufferForSize({8, 8}, {}, false);
        const auto draw = [&](bool monochrome) {
            filter->setCurrentlyReceivingMonochromeInput(monochrome);
            filter->setInputSize({8, 8}, 0);
            filter->setInputFramebuffer(input, 0);
            filter->renderToTextureWithVertices(kGPUImageQuadVertices,
                                                GPUImageFilter::textureCoordinatesForRotation(kGPUImageNoRotation));
        };
        draw(true);
        EXPECT_EQ(filter->framebufferForOutput(), nullptr);
        EXPECT_EQ(input->framebufferReferenceCount(), 2u); // the fetch, and the slot's, which stays
        draw(false);
        ASSERT_NE(filter->framebufferForOutput(), nullptr);
        EXPECT_EQ(input->framebufferReferenceCount(), 2u);
        filter->framebufferForOutput()->unlock();
        filter->removeOutputFramebuffer();
        input->unlock();
        input->unlock();
    });
}

class MixingFilter : public testing::TestWithParam<float> {};

TEST_P(MixingFilter, FollowsItsFormula)
{
    ASSERT_NO_FATAL_FAILURE(requireContext());
    const float mix = GetParam();
    for (const CGImage& first : usualPictures()) {
        // The second is stretched over the first: the same size, and a single pixel, need no filtering of texels.
        for (const CGImage& second :
             {noisePicture(first.width(), first.height(), true, 7),
              gradientPicture(first.width(), first.height(), false), flatPicture(1, 1, {250, 40, 120, 90}, true)}) {
            const auto alphaBlend = std::make_shared<GPUImageAlphaBlendFilter>();
            alphaBlend->setMix(mix);
            const auto blended = [mix](const Texture& b, const Texture& o, double u, double v) {
                const Color base = b.sample(u, v);
                Color color = mixed(base, o.sample(u, v), o.sample(u, v)[3] * mix);
                color[3] = base[3];
                return color;
            };
            expectTwoInputFilter(*alphaBlend, first, second, blended);
            const auto dissolve = std::make_shared<GPUImageDissolveBlendFilter>();
            dissolve->setMix(mix);
            const auto dissolved = [mix](const Texture& b, const Texture& o, double u, double v) {
                return mixed(b.sample(u, v), o.sample(u, v), mix);
            };
            expectTwoInputFilter(*dissolve, first, second, dissolved);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Mix, MixingFilter, testing::Values(0.0F, 0.14F, 0.5F, 1.0F));

} // namespace
} // namespace lamina::test
