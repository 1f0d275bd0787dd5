#include "LookupReference.h"

#include "gpu/filters/GPUImageAmatorkaFilter.h"
#include "gpu/filters/GPUImageMissEtikateFilter.h"
#include "gpu/filters/GPUImageSoftEleganceFilter.h"
#include "gpu/filters/LookupTables.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <vector>

namespace lamina::test {
namespace {

template <class Group>
void expectLook(const char* table)
{
    ASSERT_NO_FATAL_FAILURE(requireContext());
    for (const CGImage& picture : usualPictures()) {
        const auto group = std::make_shared<Group>();
        expectFilter(*group, picture, lookUp(lookupTable(table), 1));
        // The table came once, and serves the next picture too.
        expectFilter(*group, noisePicture(8, 5, true, 9), lookUp(lookupTable(table), 1));
    }
}

TEST(LookupGroups, AmatorkaFollowsItsTable)
{
    expectLook<GPUImageAmatorkaFilter>("lookup_amatorka.png");
}

TEST(LookupGroups, MissEtikateFollowsItsTable)
{
    expectLook<GPUImageMissEtikateFilter>("lookup_miss_etikate.png");
}

/// Gaussian of 10 pixels along one axis: 22 neighbours on each side, where the bell falls below 1/256.
Formula blurred(double stepX, double stepY)
{
    constexpr double kSigma = 10;
    constexpr int kReach = 22;
    std::vector<double> weights;
    double total = 0;
    for (int i = -kReach; i <= kReach; ++i) {
        weights.push_back(std::exp(-i * i / (2 * kSigma * kSigma)));
        total += weights.back();
    }
    return [=](const Texture& in, double u, double v) {
        Color sum{};
        for (std::size_t i = 0; i < weights.size(); ++i) {
            const int away = static_cast<int>(i) - kReach;
            const Color color = in.sample(u + away * stepX / in.width(), v + away * stepY / in.height());
            for (std::size_t k = 0; k < sum.size(); ++k)
                sum[k] += color[k] * weights[i] / total;
        }
        return sum;
    };
}

CGImage softElegance(const CGImage& picture)
{
    const CGImage pale = evaluated(picture, lookUp(lookupTable("lookup_soft_elegance_1.png"), 1));
    const Texture gleam(evaluated(evaluated(pale, blurred(0, 1)), blurred(1, 0)));
    const CGImage both = evaluated(pale, [&](const Texture& in, double u, double v) {
        Color color = in.sample(u, v);
        const Color light = gleam.sample(u, v);
        for (std::size_t k = 0; k < 3; ++k)
            color[k] = std::lerp(color[k], light[k], 0.14 * light[3]);
        return color;
    });
    return evaluated(both, lookUp(lookupTable("lookup_soft_elegance_2.png"), 1));
}

TEST(LookupGroups, SoftEleganceFollowsItsChain)
{
    ASSERT_NO_FATAL_FAILURE(requireContext());
    // Rounding to bytes after the first table and after the mixture may differ by one each way. The second table climbs
    // by at most 10 from one entry to the next, 4 apart: 2.5 times as steep as what goes in.
    constexpr int kTolerance = 4;
    for (const CGImage& picture : usualPictures()) {
        const auto group = std::make_shared<GPUImageSoftEleganceFilter>();
        for (int time = 0; time < 2; ++time)
            expectPicture(group->newCGImageByFilteringCGImage(picture), softElegance(picture), kTolerance);
    }
}

/// The mean difference of a colour's component.
double meanDistance(const CGImage& one, const CGImage& other)
{
    double sum = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            for (std::size_t k = 0; k < 3; ++k)
                sum += std::abs(pixelAt(one, x, y)[k] - pixelAt(other, x, y)[k]);
        }
    }
    return sum / (3.0 * one.width() * one.height());
}

TEST(LookupGroups, EveryLookIsALook)
{
    ASSERT_NO_FATAL_FAILURE(requireContext());
    const CGImage picture = gradientPicture(64, 64, false);
    std::vector<CGImage> pictures{picture};
    pictures.push_back(std::make_shared<GPUImageAmatorkaFilter>()->newCGImageByFilteringCGImage(picture));
    pictures.push_back(std::make_shared<GPUImageMissEtikateFilter>()->newCGImageByFilteringCGImage(picture));
    pictures.push_back(std::make_shared<GPUImageSoftEleganceFilter>()->newCGImageByFilteringCGImage(picture));
    for (std::size_t i = 0; i < pictures.size(); ++i) {
        for (std::size_t j = 0; j < i; ++j) {
            ASSERT_EQ(pictures[i].size(), picture.size());
            EXPECT_GT(meanDistance(pictures[i], pictures[j]), 8) << j << " and " << i;
        }
    }
}

} // namespace
} // namespace lamina::test
