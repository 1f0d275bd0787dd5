#include "TestPictures.h"
#include "hud/MBBarProgressView.h"
#include "hud/MBRoundProgressView.h"
#include "platform/image/drawing/CGContext.h"
#include "platform/image/pixels/CGImage.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <numbers>
#include <optional>

namespace lamina::test {
namespace {

constexpr double kScale = 4;

/// Alpha in [0, 1] at each pixel, by its middle in points.
template <class See>
void eachPixel(const UIView& view, const See& see)
{
    std::optional<CGContext> context = CGContext::image(view.bounds().size, false, kScale);
    ASSERT_TRUE(context);
    view.layer().renderInContext(*context);
    const CGImage image = context->makeImage();
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            see(CGPoint{(x + 0.5) / kScale, (y + 0.5) / kScale}, pixelAt(image, x, y)[3] / 255.0);
}

/// Where a point lies about the middle of a round view: distance, and the share of a turn clockwise from the top.
struct Polar {
    double distance, share;
    explicit Polar(CGPoint point, double middle = 18.5)
        : distance(std::hypot(point.x - middle, point.y - middle))
        , share(std::fmod(std::atan2(point.x - middle, middle - point.y) / (2 * std::numbers::pi) + 1, 1))
    {
    }
    bool isWithin(double from, double to) const { return distance > from && distance < to; }
};

TEST(RoundProgress, FillsItsShareFromTheTopClockwise)
{
    constexpr double kAlpha = 0.5;
    constexpr double kRingAlpha = 0.2;
    for (const float progress : {0.0F, 0.1F, 0.3F, 0.5F, 0.77F, 1.0F, 7.0F, -1.0F, NAN}) {
        const double share = progress >= 0 ? std::min(1.0F, progress) : 0;
        for (const bool annular : {false, true}) {
            MBRoundProgressView view;
            view.setProgress(progress);
            view.setAnnular(annular);
            view.setProgressTintColor(UIColor::fromWhite(0, kAlpha));
            view.setBackgroundTintColor(UIColor::fromWhite(0, kRingAlpha));
            int wrong = 0;
            eachPixel(view, [&](CGPoint point, double alpha) {
                const Polar at(point);
                // Square ends reach beyond the arc by half the line's width.
                const double blur = annular ? 0.03 : 0.01;
                const bool nearEnd = std::abs(at.share - share) < blur || at.share < blur || at.share > 1 - blur;
                const bool done = at.share < share;
                double expected = -1; // not looked at
                if (at.isWithin(0, annular ? 16 : 14))
                    expected = 0;
                else if (annular && at.isWithin(16.8, 18.2) && !nearEnd)
                    expected = done ? kRingAlpha + (1 - kRingAlpha) * kAlpha : kRingAlpha;
                else if (!annular && at.isWithin(16.8, 18.2))
                    expected = kAlpha; // where the arc lies on the circle too
                else if (!annular && at.isWithin(14.8, 16.2) && !nearEnd)
                    expected = done ? kAlpha : 0;
                wrong += expected >= 0 && std::abs(alpha - expected) > 0.02;
            });
            EXPECT_EQ(wrong, 0) << progress << (annular ? " annular" : " pie");
        }
    }
}

TEST(BarProgress, EndsAtItsShareWithinRoundEnds)
{
    constexpr CGSize kSize{120, 20};
    constexpr double kRadius = kSize.height / 2 - 4;
    for (const float progress : {0.0F, 0.02F, 0.05F, 0.08F, 0.0834F, 0.5F, 0.916F, 0.93F, 0.97F, 1.0F, 2.0F, NAN}) {
        MBBarProgressView view;
        view.setBounds({{}, kSize});
        view.setProgress(progress);
        view.setLineColor(UIColor::clear());
        const double amount = progress >= 0 ? std::min(1.0F, progress) * kSize.width : 0;
        int wrong = 0;
        eachPixel(view, [&](CGPoint point, double alpha) {
            const double axis = std::clamp(point.x, 4 + kRadius, kSize.width - 4 - kRadius);
            const double distance = std::hypot(point.x - axis, point.y - kSize.height / 2) - kRadius;
            const double inside = std::max(distance, point.x - amount); // below 0: inside
            wrong += std::abs(inside) > 0.3 && (alpha > 0.5) != (inside < 0);
        });
        EXPECT_EQ(wrong, 0) << progress;
    }
    MBBarProgressView outline; // 2 points wide, 2 in from the edges
    eachPixel(outline, [&](CGPoint point, double alpha) {
        const bool onLine = std::abs(point.x - 60) < 40 && std::abs(std::abs(point.y - 5) - 3) < 0.9;
        const bool beside = std::abs(point.x - 60) < 40 && std::abs(std::abs(point.y - 5) - 3) > 1.1;
        EXPECT_TRUE(onLine ? alpha > 0.99 : !beside || alpha == 0) << point.x << ' ' << point.y;
    });
}

} // namespace
} // namespace lamina::test
