#include "platform/base/CGAffineTransform.h"
#include "platform/base/UIScreen.h"

#include <gtest/gtest.h>
#include <limits>
#include <numbers>

namespace lamina {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

void expectNear(CGPoint got, CGPoint wanted)
{
    EXPECT_NEAR(got.x, wanted.x, 1e-12);
    EXPECT_NEAR(got.y, wanted.y, 1e-12);
}

TEST(CGAffineTransform, NewStepsActInsideWhatIsThere)
{
    const CGPoint origin;
    expectNear(CGAffineTransform::identity().scaled(2, 2).translated(10, 0).apply(origin), {20, 0});
    expectNear(CGAffineTransform::identity().translated(10, 0).scaled(2, 2).apply({1, 1}), {12, 2});
    // A step along x inside a quarter turn (clockwise on a screen) goes down.
    const auto turned = CGAffineTransform::identity().rotated(std::numbers::pi / 2);
    expectNear(turned.translated(10, 0).apply(origin), {0, 10});
    expectNear(turned.scaled(3, 1).apply({1, 0}), {0, 3});
    // Concatenation reads from left to right.
    const auto both = CGAffineTransform::translation(1, 2).concatenating(CGAffineTransform::scaling(10, 100));
    expectNear(both.apply(origin), {10, 200});
}

TEST(CGAffineTransform, InverseBringsPointsBackAndFlatOnesHaveNone)
{
    const auto transform = CGAffineTransform::translation(-7, 3).rotated(0.7).scaled(-2.5, 0.3).translated(11, 0.5);
    const auto inverse = transform.inverted();
    ASSERT_TRUE(inverse);
    for (const CGPoint p : {CGPoint{0, 0}, CGPoint{100, -40}, CGPoint{0.25, 1e3}}) {
        const CGPoint back = inverse->apply(transform.apply(p));
        EXPECT_NEAR(back.x, p.x, 1e-9);
        EXPECT_NEAR(back.y, p.y, 1e-9);
    }
    EXPECT_FALSE(CGAffineTransform::scaling(0, 1).inverted());
    EXPECT_FALSE((CGAffineTransform{1, 2, 2, 4, 0, 0}).inverted());
    EXPECT_FALSE(CGAffineTransform::translation(kNaN, 0).inverted());
    EXPECT_FALSE(CGAffineTransform::scaling(kInfinity, 1).inverted());
}

TEST(CGAffineTransform, BoundingBoxHoldsAllCorners)
{
    const CGRect square(-1, -1, 2, 2);
    const CGRect turned = CGAffineTransform::rotation(std::numbers::pi / 4).boundingBox(square);
    EXPECT_NEAR(turned.minX(), -std::numbers::sqrt2, 1e-12);
    EXPECT_NEAR(turned.maxY(), std::numbers::sqrt2, 1e-12);
    EXPECT_EQ(CGAffineTransform::scaling(-1, 2).boundingBox({1, 1, 2, 3}), CGRect(-3, 2, 2, 6));
}

TEST(CGRect, EdgesAndCommonParts)
{
    const CGRect rect(10, 20, 30, 40);
    EXPECT_TRUE(rect.contains({10, 20}));
    EXPECT_FALSE(rect.contains({40, 20}));
    EXPECT_FALSE(rect.contains({kNaN, 30}));
    EXPECT_EQ(rect.intersection({0, 50, 20, 100}), CGRect(10, 50, 10, 10));
    EXPECT_EQ(rect.intersection({40, 20, 5, 5}), CGRect()); // touching is not overlapping
    EXPECT_EQ(rect.intersection({kNaN, 0, 100, 100}), CGRect());
    EXPECT_EQ(rect.intersection({0, 0, 100, -100}), CGRect());
    EXPECT_EQ(rect.unionWith({0, 0, 0, 5}), rect);
    EXPECT_EQ(rect.unionWith({0, 0, 1, 1}), CGRect(0, 0, 40, 60));
}

TEST(CGRect, CoverOfPixelsStaysHarmlessForHostileValues)
{
    EXPECT_EQ(integralCover({0.2, -0.2, 1, 1}), (IntRect{0, -1, 2, 2}));
    EXPECT_EQ(integralCover({1, 2, 3, 4}), (IntRect{1, 2, 3, 4}));
    EXPECT_TRUE(integralCover({kNaN, 0, 1, 1}).isEmpty());
    EXPECT_TRUE(integralCover({-kInfinity, 0, kInfinity, 1}).isEmpty());
    const IntRect huge = integralCover({-1e300, 0, 2e300, 1});
    EXPECT_EQ(huge.x, 1 - (1 << 30));
    EXPECT_EQ(huge.right(), (1 << 30) - 1);
}

TEST(UIScreen, KeepsUsableValuesOnly)
{
    const UIScreen before = UIScreen::main();
    EXPECT_GE(before.scale, 1);
    UIScreen::setMain({{430, 932}, 2});
    EXPECT_EQ(UIScreen::main(), (UIScreen{{430, 932}, 2}));
    UIScreen::setMain({{kNaN, -5}, 0.5});
    EXPECT_EQ(UIScreen::main(), (UIScreen{{375, 667}, 1}));
    UIScreen::setMain({{kInfinity, 667}, kNaN});
    EXPECT_EQ(UIScreen::main(), (UIScreen{{375, 667}, 1}));
    UIScreen::setMain(before);
}

} // namespace
} // namespace lamina
