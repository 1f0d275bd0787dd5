#include "ToldFrames.h"

#include "editors/frames/Frames.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <utility>

using namespace lamina;
using namespace lamina::test;

namespace {

constexpr double kSide = 375;

struct Line {
    CGPoint from;
    CGPoint to;

    double length() const { return std::hypot(to.x - from.x, to.y - from.y); }
    CGPoint at(double t) const { return {from.x + (to.x - from.x) * t, from.y + (to.y - from.y) * t}; }
};

std::vector<Line> linesOf(const UIBezierPath& path)
{
    std::vector<Line> lines;
    CGPoint start;
    CGPoint last;
    for (const UIBezierPath::Element& element : path.elements()) {
        const bool begins = element.verb == UIBezierPath::Verb::Move;
        const CGPoint end = element.verb == UIBezierPath::Verb::Close ? start : element.end;
        if (begins)
            start = end;
        else
            lines.push_back({last, end});
        last = end;
    }
    return lines;
}

double distance(const std::vector<Line>& lines, CGPoint p)
{
    double least = std::numeric_limits<double>::infinity();
    for (const Line& line : lines)
        least = std::min(least, distanceFromLine(line.from, line.to, p));
    return least;
}

} // namespace

/// A cut is where the slot that is seen changes inside the canvas, and nowhere else.
TEST(FrameCuts, LieWhereOneSlotEndsAndNowhereElse)
{
    for (const int frame : toldFrames())
        for (const double height : {812.0, 480.0}) {
            SCOPED_TRACE(testing::Message() << frame << " at " << height);
            const ToldCanvas told(frame, kSide, height);
            const CGRect inside = told.square().insetBy(2, 2);
            const std::vector<Line> lines = linesOf(frameCuts(frameShape(frame, kSide, height)));
            for (double y = inside.minY(); y < inside.maxY(); y += 7)
                for (double x = inside.minX(); x < inside.maxX(); x += 5) {
                    const bool changes = told.changesWithin(1, {x, y});
                    if (changes || !told.changesWithin(2, {x, y})) {
                        ASSERT_EQ(distance(lines, {x, y}) < 1.5, changes) << x << ", " << y;
                    }
                }
            for (const Line& line : lines)
                for (double t = 0.1; t < 1; t += 0.2)
                    if (inside.contains(line.at(t))) {
                        ASSERT_TRUE(told.changesWithin(1, line.at(t))) << line.at(t).x << ", " << line.at(t).y;
                    }
        }
}

TEST(FrameCuts, AreWholeAtTheCanvassEdgeAndDrawnOnce)
{
    // Ends on the edge are carried beyond it; the diagonal is one line.
    const std::vector<Line> diagonal = linesOf(frameCuts(frameShape(2000, kSide, 812)));
    ASSERT_EQ(diagonal.size(), 1U);
    EXPECT_LT(diagonal[0].from.x, -10);
    EXPECT_GT(diagonal[0].to.x, kSide + 10);
    // The diamond is closed, so that its corners are.
    EXPECT_EQ(frameCuts(frameShape(2006, kSide, 812)).elements().back().verb, UIBezierPath::Verb::Close);
    // Shared lines are there once: the length of all is that of those that a person sees.
    const std::vector<std::pair<int, double>> lengths{{2003, 1 * kSide + 0.5 * kSide},
                                                      {3000, 2 * (kSide + 0.5 * kSide)},
                                                      {3004, 1.5 * kSide + 0.75 * kSide},
                                                      {3008, 3.14159265 * kSide * 2}};
    for (const auto& [frame, length] : lengths) {
        double sum = 0;
        for (const Line& line : linesOf(frameCuts(frameShape(frame, kSide, kSide))))
            sum += line.length();
        EXPECT_NEAR(sum, length, 0.5) << frame;
    }
    EXPECT_TRUE(frameCuts(frameShape(2008, kSide, 812)).isEmpty());
}
