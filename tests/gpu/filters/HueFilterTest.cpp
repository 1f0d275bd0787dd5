#include "FilterReference.h"

#include "gpu/filters/GPUImageHueFilter.h"
#include "gpu/filters/GpuImageCustomHue.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

namespace lamina::test {
namespace {

constexpr double kPi = std::numbers::pi;

/// In polar form: the angle of (I, Q) falls by `angle`, the length stays.
Formula hueTurnedBy(double angle, double greenInI, double iInRed)
{
    return [=](const Texture& in, double u, double v) {
        const Color c = in.sample(u, v);
        const double y = 0.299 * c[0] + 0.587 * c[1] + 0.114 * c[2];
        const double i = 0.595716 * c[0] + greenInI * c[1] - 0.321263 * c[2];
        const double q = 0.211456 * c[0] - 0.522591 * c[1] + 0.31135 * c[2];
        const double hue = std::atan2(q, i) - angle;
        const double chroma = std::hypot(i, q);
        const double turnedI = chroma * std::cos(hue);
        const double turnedQ = chroma * std::sin(hue);
        return Color{y + iInRed * turnedI + 0.6210 * turnedQ, y - 0.2721 * turnedI - 0.6474 * turnedQ,
                     y - 1.1070 * turnedI + 1.7046 * turnedQ, c[3]};
    };
}

Formula turned(double angle)
{
    return hueTurnedBy(angle, -0.274453, 0.9563);
}

Formula shifted(double angle)
{
    return hueTurnedBy(angle, -0.474453, 0.2563);
}

TEST(HueFilter, TurnsByDegrees)
{
    ASSERT_NO_FATAL_FAILURE(requireContext());
    for (const CGImage& picture : usualPictures()) {
        expectFilter(*std::make_shared<GPUImageHueFilter>(), picture, turned(kPi / 2));
        for (const double degrees : {0.0, 200.0, -30.0}) {
            SCOPED_TRACE(degrees);
            const auto filter = std::make_shared<GPUImageHueFilter>();
            filter->setHue(static_cast<float>(degrees));
            expectFilter(*filter, picture, turned(degrees * kPi / 180));
        }
    }
    expectFilterInAllRotations([] { return std::make_shared<GPUImageHueFilter>(); }, noisePicture(11, 26, true),
                               turned(kPi / 2));
}

TEST(HueFilter, CountsFullTurnsAsNone)
{
    ASSERT_NO_FATAL_FAILURE(requireContext());
    GPUImageHueFilter filter;
    EXPECT_FLOAT_EQ(filter.hue(), static_cast<float>(kPi / 2)); // radians, of the 90 degrees of a new filter
    for (const auto& [given, same] : {std::pair(450.0F, 90.0F), {-450.0F, -90.0F}, {720.0F, 0.0F}}) {
        filter.setHue(given);
        EXPECT_FLOAT_EQ(filter.hue(), static_cast<float>(same * kPi / 180));
    }
    const auto over = std::make_shared<GPUImageHueFilter>();
    over->setHue(450);
    expectFilter(*over, gradientPicture(37, 23, false), turned(kPi / 2));
}

TEST(HueFilter, LeavesGreysGrey)
{
    ASSERT_NO_FATAL_FAILURE(requireContext());
    const CGImage greys = makePicture(256, 1, [](int x, int) {
        const auto level = static_cast<std::uint8_t>(x);
        return Rgba{level, level, level, 255};
    });
    expectFilter(
        *std::make_shared<GPUImageHueFilter>(), greys,
        [](const Texture& in, double u, double v) { return in.sample(u, v); }, 1);
}

TEST(CustomHue, ShiftsAndTurns)
{
    ASSERT_NO_FATAL_FAILURE(requireContext());
    for (const CGImage& picture : usualPictures()) {
        expectFilter(*std::make_shared<GpuImageCustomHue>(), picture, shifted(3 * kPi / 4));
        const auto unturned = std::make_shared<GpuImageCustomHue>();
        unturned->setHue(0);
        expectFilter(*unturned, picture, shifted(0));
    }
    GpuImageCustomHue filter;
    filter.setHue(390);
    EXPECT_FLOAT_EQ(filter.hue(), static_cast<float>(kPi / 4));
}

} // namespace
} // namespace lamina::test
