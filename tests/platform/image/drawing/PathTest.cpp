#include "Canvas.h"
#include "platform/image/drawing/UIBezierPath.h"

#include <cmath>
#include <cstddef>
#include <numbers>
#include <numeric>
#include <random>

namespace lamina::test {
namespace {

/// Coverage of a path on a canvas, in [0, 255].
Grid coverage(const UIBezierPath& path, int width, int height, bool stroke = false)
{
    const CGImage image = drawn(width, height, [&](CGContext& context) {
        if (stroke)
            context.strokePath(path);
        else
            context.fillPath(path);
    });
    return componentGrid(image, kAlpha);
}

double totalOf(const Grid& grid)
{
    double sum = 0;
    for (const std::vector<int>& row : grid)
        sum += std::accumulate(row.begin(), row.end(), 0) / 255.0;
    return sum;
}

UIBezierPath openLine(const std::vector<CGPoint>& places, double width)
{
    UIBezierPath path;
    for (const CGPoint& place : places)
        path.addLineToPoint(place);
    path.lineWidth = width;
    return path;
}

using Polygon = std::vector<CGPoint>;

/// The polygon cut to a half plane n·p <= limit, by Sutherland and Hodgman's method.
Polygon cut(const Polygon& polygon, CGPoint n, double limit)
{
    Polygon out;
    for (std::size_t i = 0; i < polygon.size(); ++i) {
        const CGPoint a = polygon[i];
        const CGPoint b = polygon[(i + 1) % polygon.size()];
        const double da = n.x * a.x + n.y * a.y - limit;
        const double db = n.x * b.x + n.y * b.y - limit;
        if (da <= 0)
            out.push_back(a);
        if ((da < 0 && db > 0) || (da > 0 && db < 0))
            out.push_back({a.x + (b.x - a.x) * da / (da - db), a.y + (b.y - a.y) * da / (da - db)});
    }
    return out;
}

double shoelace(const Polygon& polygon)
{
    double twice = 0;
    for (std::size_t i = 0; i < polygon.size(); ++i) {
        const CGPoint a = polygon[i];
        const CGPoint b = polygon[(i + 1) % polygon.size()];
        twice += a.x * b.y - b.x * a.y;
    }
    return std::abs(twice) / 2;
}

double areaInPixel(Polygon polygon, int x, int y)
{
    polygon = cut(polygon, {1, 0}, x + 1);
    polygon = cut(polygon, {-1, 0}, -x);
    polygon = cut(polygon, {0, 1}, y + 1);
    polygon = cut(polygon, {0, -1}, -y);
    return shoelace(polygon);
}

TEST(Path, EveryPixelIsCoveredByItsExactArea)
{
    std::mt19937 random(7);
    std::uniform_real_distribution<double> place(-6, 30); // partly outside on all sides
    for (int round = 0; round < 40; ++round) {
        const Polygon triangle{
            {place(random), place(random)}, {place(random), place(random)}, {place(random), place(random)}};
        const Grid got = coverage(UIBezierPath::polygon(triangle), 24, 24);
        for (int y = 0; y < 24; ++y) {
            for (int x = 0; x < 24; ++x)
                ASSERT_NEAR(got[std::size_t(y)][std::size_t(x)], 255 * areaInPixel(triangle, x, y), 1)
                    << "triangle " << round << ", pixel " << x << ", " << y;
        }
    }
}

TEST(Path, FillRulesDifferWhereAreasLieTwice)
{
    UIBezierPath path = UIBezierPath::withRect({1, 1, 8, 8});
    path.appendPath(UIBezierPath::withRect({3, 3, 4, 4}));
    EXPECT_NEAR(totalOf(coverage(path, 10, 10)), 64, 0.01);
    EXPECT_TRUE(path.contains({5, 5}));
    EXPECT_FALSE(path.contains({5, 5}, true));
    // The other way round it is a hole by both rules.
    UIBezierPath ring = UIBezierPath::withRect({1, 1, 8, 8});
    ring.appendPath(UIBezierPath::polygon({{3, 3}, {3, 7}, {7, 7}, {7, 3}}));
    EXPECT_NEAR(totalOf(coverage(ring, 10, 10)), 48, 0.01);
    EXPECT_FALSE(ring.contains({5, 5}));
}

TEST(Path, RoundShapesHaveRoundAreas)
{
    const double corners = (4 - std::numbers::pi) * 12 * 12;
    EXPECT_NEAR(totalOf(coverage(UIBezierPath::withRoundedRect({5, 5, 80, 50}, 12), 100, 70)), 80 * 50 - corners, 0.5);
    // A radius that is too large counts as half of the shorter side.
    EXPECT_EQ(UIBezierPath::withRoundedRect({0, 0, 80, 50}, 999), UIBezierPath::withRoundedRect({0, 0, 80, 50}, 25));
    EXPECT_EQ(UIBezierPath::withRoundedRect({0, 0, 8, 5}, 0), UIBezierPath::withRect({0, 0, 8, 5}));
}

TEST(Path, FlatteningStaysWithinTheTolerance)
{
    for (const double radius : {1.0, 40.0, 5000.0}) {
        const UIBezierPath circle = UIBezierPath::withOvalIn({-radius, -radius, 2 * radius, 2 * radius});
        for (const Polygon& polygon : flattened(circle, 0.05)) {
            for (std::size_t i = 1; i < polygon.size(); ++i) {
                const CGPoint middle{(polygon[i - 1].x + polygon[i].x) / 2, (polygon[i - 1].y + polygon[i].y) / 2};
                // The curve itself is within 0.00028 of the circle.
                EXPECT_NEAR(std::hypot(middle.x, middle.y), radius, 0.05 + radius * 0.0003);
            }
        }
    }
}

TEST(Path, StrokesHaveMitredJoinsAndFlatEnds)
{
    EXPECT_NEAR(totalOf(coverage(openLine({{3, 5}, {9, 5}}, 2), 12, 12, true)), 12, 0.01); // nothing beyond the ends
    // An angle of 2·atan(1/20) is sharper than the limit allows: bevelled, so that the tip ends at about the corner.
    const Grid tip = coverage(openLine({{5, 19}, {45, 21}, {5, 23}}, 2), 70, 42, true);
    for (const std::vector<int>& row : tip)
        EXPECT_EQ(row[48], 0);
    EXPECT_GT(tip[21][44], 200);
    // Twice the corner's angle and the mitre stands: its length is width / sin(half the angle), half of it beyond the
    // corner, so that it ends at 45 + 1 / sin(atan(1/4)) = 49.1.
    const Grid mitre = coverage(openLine({{5, 11}, {45, 21}, {5, 31}}, 2), 70, 42, true);
    EXPECT_GT(mitre[20][46], 150);
    EXPECT_EQ(mitre[20][50], 0);
}

TEST(Path, ArcsRunTheWayThatIsAskedFor)
{
    constexpr double kQuarter = std::numbers::pi / 2;
    struct Case {
        double start, end;
        bool clockwise;
        double quarters; ///< of the disc that the closed arc with the centre covers
    };
    const Case cases[] = {
        {-kQuarter, -kQuarter + 0.9, true, 0.9 / kQuarter},
        {0, kQuarter, false, 3},
        {0, -kQuarter, true, 3},
        {3 * kQuarter, 0, true, 1},
        {0, 5 * kQuarter, true, 4},
        {1, 1, true, 0},
        {0, -9 * kQuarter, false, 4},
    };
    for (const Case& c : cases) {
        UIBezierPath pie;
        pie.moveToPoint({30, 30});
        pie.addArc({30, 30}, 25, c.start, c.end, c.clockwise);
        EXPECT_NEAR(totalOf(coverage(pie, 60, 60)), c.quarters * kQuarter / 2 * 25 * 25, 0.8)
            << c.start << " " << c.end;
    }
    // Clockwise from the right is down, and the arc begins where nothing is yet.
    const UIBezierPath down = UIBezierPath::withArcCenter({30, 30}, 25, 0, kQuarter, true);
    EXPECT_EQ(down.elements().front().end, (CGPoint{55, 30}));
    EXPECT_NEAR(down.elements().back().end.y, 55, 1e-9);
}

TEST(Path, StrokesEndTurnAndBreakAsThePathSays)
{
    using Cap = UIBezierPath::LineCap;
    using Join = UIBezierPath::LineJoin;
    const double disc = std::numbers::pi * 4 * 4;
    const std::vector<CGPoint> line{{20, 20}, {50, 20}};
    const std::vector<CGPoint> corner{{20, 20}, {50, 20}, {50, 50}};
    const double legs = 2 * 30 * 8 - 16; // both cover the inner quarter of the corner
    struct Case {
        std::vector<CGPoint> places;
        Cap cap;
        Join join;
        std::vector<double> dash;
        double phase;
        double area; ///< of a stroke of width 8
    };
    const Case cases[] = {
        {line, Cap::Butt, Join::Miter, {}, 0, 240},
        {line, Cap::Square, Join::Miter, {}, 0, 240 + 64},
        {line, Cap::Round, Join::Miter, {}, 0, 240 + disc},
        {{{20, 20}, {20, 20}}, Cap::Round, Join::Miter, {}, 0, disc},
        {{{20, 20}, {20, 20}}, Cap::Butt, Join::Miter, {}, 0, 0},
        {corner, Cap::Butt, Join::Miter, {}, 0, legs + 16},
        {corner, Cap::Butt, Join::Bevel, {}, 0, legs + 8},
        {corner, Cap::Butt, Join::Round, {}, 0, legs + disc / 4},
        {line, Cap::Butt, Join::Miter, {4, 6}, 0, 3 * 4 * 8},
        {line, Cap::Butt, Join::Miter, {4, 6}, 2, (2 + 4 + 4 + 2) * 8},
        {line, Cap::Butt, Join::Miter, {5}, -5, 3 * 5 * 8},
        {line, Cap::Round, Join::Miter, {0, 12}, 0, 3 * disc},
        {corner, Cap::Butt, Join::Miter, {25, 10, 15, 99}, 0, (25 + 15) * 8}, // a dash begins after the corner
        {line, Cap::Butt, Join::Miter, {4, -1}, 0, 240},
    };
    for (const Case& c : cases) {
        UIBezierPath path = openLine(c.places, 8);
        path.lineCap = c.cap;
        path.lineJoin = c.join;
        path.lineDash = c.dash;
        path.lineDashPhase = c.phase;
        EXPECT_NEAR(totalOf(coverage(path, 80, 80, true)), c.area, 0.5) << &c - cases;
    }
}

TEST(Path, DegenerateOutlinesAreHarmless)
{
    const double nan = std::nan("");
    UIBezierPath odd;
    odd.closePath();
    EXPECT_TRUE(odd.isEmpty());
    odd.addLineToPoint({3, 3});
    odd.addLineToPoint({3, 3});
    odd.addCurveToPoint({nan, 3}, {1, 1}, {2, 2});
    odd.lineWidth = nan;
    EXPECT_EQ(totalOf(coverage(odd, 8, 8)), 0);
    EXPECT_EQ(totalOf(coverage(odd, 8, 8, true)), 0);
    EXPECT_FALSE(odd.contains({3, 3}));
    EXPECT_EQ(totalOf(coverage(UIBezierPath(), 8, 8)), 0);
    EXPECT_EQ(totalOf(coverage(UIBezierPath::polygon({{1, 1}, {7, 7}}), 8, 8)), 0);
    const UIBezierPath vast = UIBezierPath::withOvalIn({-1e12, -1e12, 2e12, 2e12});
    EXPECT_NEAR(totalOf(coverage(vast, 8, 8)), 64, 0.01);
}

} // namespace
} // namespace lamina::test
