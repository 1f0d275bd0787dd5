#include "platform/base/CGAffineTransform.h"
#include "platform/base/CGGeometry.h"

#include <gtest/gtest.h>
#include <limits>

namespace lamina {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(CGAffineTransform, HasNoInverseWhereItIsFlatOrInfinite)
{
    const CGAffineTransform without[] = {{1, 2, 2, 4, 0, 0}, {1, 0, 0, 1, kNaN, 0}, {kInfinity, 0, 0, 1, 0, 0}};
    for (const CGAffineTransform& hostile : without)
        EXPECT_FALSE(hostile.inverted());
}

TEST(CGRect, EdgesAndWhatIsNoNumber)
{
    const CGRect rect(10, 20, 30, 40);
    EXPECT_FALSE(rect.contains({40, 20}));
    EXPECT_FALSE(rect.contains({kNaN, 30}));
    EXPECT_EQ(rect.intersection({40, 20, 5, 5}), CGRect()); // touching is not overlapping
    EXPECT_EQ(rect.intersection({kNaN, 0, 100, 100}), CGRect());
    EXPECT_EQ(rect.intersection({0, 0, 100, -100}), CGRect());
    EXPECT_EQ(rect.unionWith({0, 0, 0, 5}), rect);
}

TEST(CGRect, CoverOfPixelsStaysHarmlessForHostileValues)
{
    EXPECT_EQ(integralCover({0.2, -0.2, 1, 1}), (IntRect{0, -1, 2, 2}));
    EXPECT_TRUE(integralCover({kNaN, 0, 1, 1}).isEmpty());
    EXPECT_TRUE(integralCover({-kInfinity, 0, kInfinity, 1}).isEmpty());
    const IntRect huge = integralCover({-1e300, 0, 2e300, 1});
    EXPECT_EQ(huge.x, 1 - (1 << 30));
    EXPECT_EQ(huge.right(), (1 << 30) - 1);
}

} // namespace
} // namespace lamina
