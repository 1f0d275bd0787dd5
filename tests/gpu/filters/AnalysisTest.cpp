#include "FrameSource.h"
#include "GraphFixture.h"
#include "TestPictures.h"
#include "gpu/core/GPUImageContext.h"
#include "gpu/filters/analysis/GPUImageAverageColor.h"
#include "gpu/filters/analysis/GPUImageHarrisCornerDetectionFilter.h"
#include "gpu/filters/analysis/GPUImageHistogramFilter.h"
#include "gpu/filters/analysis/GPUImageHoughTransformLineDetector.h"
#include "gpu/filters/analysis/GPUImageMotionDetector.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

// What filters tell in numbers.

namespace lamina::test {
namespace {

using AnalysisTest = GraphFixture;

/// White where `isLit(x, y)` is true, black elsewhere.
template <class IsLit>
CGImage drawn(int width, int height, const IsLit& isLit)
{
    return makePicture(width, height, [&](int x, int y) {
        return isLit(x, y) ? Rgba{255, 255, 255, 255} : Rgba{0, 0, 0, 255};
    });
}

TEST_F(AnalysisTest, EveryPixelWeighsTheSameInAnAverage)
{
    GPUImageAverageColor filter;
    for (const auto& [width, height] : {std::pair{1, 1}, {3, 5}, {65, 67}, {4001, 2999}}) {
        // All that is not black stands in the last column and row, which passes of halves meet alone.
        const CGImage image = drawn(width, height, [width = width, height = height](int x, int y) {
            return x == width - 1 || y == height - 1 || (x + y) % 16 == 0;
        });
        double lit = 0;
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x)
                lit += image.row(y)[std::ptrdiff_t{4} * x] / 255.0;
        }
        double told = -1;
        filter.setColorAverageProcessingFinishedBlock([&](double red, double, double, double alpha, CMTime) {
            EXPECT_TRUE(isOnVideoProcessingQueue());
            EXPECT_NEAR(alpha, 1, 1e-9);
            told = red;
        });
        filter.newCGImageByFilteringCGImage(image);
        EXPECT_NEAR(told, lit / (static_cast<double>(width) * height), 1.0 / 255) << width << " x " << height;
    }
}

TEST_F(AnalysisTest, ABinHoldsMoreThanAByteAndUnknownTypesCountAllChannels)
{
    GPUImageHistogramFilter filter(static_cast<GPUImageHistogramType>(9));
    filter.setDownsamplingFactor(1);
    GPUImageHistogram told;
    filter.setHistogramBlock([&](const GPUImageHistogram& histogram, CMTime) { told = histogram; });
    filter.newCGImageByFilteringCGImage(solidPicture(70, 50, {0, 128, 255, 255}));
    EXPECT_EQ(told.points, 3500U);
    EXPECT_EQ((std::array{told.channels[0][0], told.channels[1][128], told.channels[2][255], told.luminance[110]}),
              (std::array{3500U, 3500U, 3500U, 0U}));
}

TEST_F(AnalysisTest, OfMoreCornersThanThereIsRoomForTheLastIsKept)
{
    // The strongest are on the right.
    const CGImage board = makePicture(31 * 12, 21 * 12, [](int x, int y) {
        const auto grey = static_cast<std::uint8_t>((x / 12 + y / 12) % 2 == 0 ? (x < 186 ? 54 : 60) : 0);
        return Rgba{grey, grey, grey, 255};
    });
    GPUImageHarrisCornerDetectionFilter filter;
    filter.setThreshold(0.05F);
    std::vector<GPUImageHarrisCornerDetectionFilter::Corner> all;
    filter.setCornersBlock([&](const auto& corners, CMTime) { all = corners; });
    std::vector<float> array;
    filter.setCornersDetectedBlock([&](std::span<const float> corners, unsigned count, CMTime) {
        EXPECT_TRUE(isOnVideoProcessingQueue());
        EXPECT_EQ(count, 511U);
        array.assign(corners.begin(), corners.end());
    });
    filter.newCGImageByFilteringCGImage(board);
    ASSERT_EQ(all.size(), 600U);
    for (const auto& [place, strength] : all) {
        EXPECT_NEAR(std::remainder(place.x * 31, 1), 0, 0.1);
        EXPECT_NEAR(std::remainder(place.y * 21, 1), 0, 0.1);
    }
    EXPECT_TRUE(std::ranges::is_sorted(all, std::greater(), [](const auto& corner) { return corner.strength; }));
    EXPECT_GT(all.front().strength, all.back().strength);
    ASSERT_EQ(array.size(), 1024U);
    const float last[] = {30.0F / 31, 17.0F / 21, 30.0F / 31, 20.0F / 21}; // the 510th and the 600th
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_NEAR(array[1018 + i], last[i], 0.01) << i;
}

struct LineCase {
    const char* name;
    double slope; ///< y = slope x + intercept, in places from -1 to 1; infinite: x = intercept
    double intercept;
    std::array<double, 4> ends;
};

/// The strongest line of a picture that is white behind the case's line.
GPUImageHoughTransformLineDetector::Line strongestLine(const LineCase& one, bool packed, int width, int height)
{
    const CGImage picture = drawn(width, height, [&](int column, int row) {
        const double x = (2.0 * column + 1) / width - 1;
        const double y = (2.0 * row + 1) / height - 1;
        return std::isinf(one.slope) ? x > one.intercept : y > one.slope * x + one.intercept;
    });
    GPUImageHoughTransformLineDetector filter(packed);
    GPUImageHoughTransformLineDetector::Line line;
    filter.setLinesBlock([&](const auto& lines, CMTime) {
        ASSERT_FALSE(lines.empty());
        line = lines.front();
    });
    filter.newCGImageByFilteringCGImage(picture);
    return line;
}

TEST_F(AnalysisTest, LinesOfAllDirectionsAreFoundFromEndToEnd)
{
    const double upright = HUGE_VAL;
    for (const LineCase& one : {LineCase{"level", 0, 0.3, {0, 0.65, 1, 0.65}},
                                {"upright", upright, -0.4, {0.3, 0, 0.3, 1}},
                                {"upright, on the right", upright, 0.7, {0.85, 0, 0.85, 1}},
                                {"falling", 0.5, 0.1, {0, 0.3, 1, 0.8}},
                                {"rising", -0.8, -0.1, {0, 0.85, 1, 0.05}},
                                {"steep", 3, 0.2, {0.3, 0, 0.633, 1}}}) {
        for (const auto& [width, height] : {std::pair{120, 90}, {900, 1300}}) {
            for (const bool packed : {false, true}) {
                if (packed && !GPUImageContext::deviceSupportsFramebufferReads())
                    continue;
                const auto line = strongestLine(one, packed, width, height);
                const std::array found{line.start.x, line.start.y, line.end.x, line.end.y};
                for (std::size_t i = 0; i < found.size(); ++i)
                    EXPECT_NEAR(found[i], one.ends[i], 2.5 / height + 0.01)
                        << one.name << ", " << width << (packed ? " packed" : "");
                EXPECT_LE(line.votes, 510U) << "a pixel or two in each place, in a large picture as in a small one";
            }
        }
    }
}

TEST_F(AnalysisTest, MotionIsWhereSomethingIsNew)
{
    const auto filter = std::make_shared<GPUImageMotionDetector>();
    m_source->addTarget(filter);
    CGPoint middle;
    double intensity = -1;
    filter->setMotionDetectionBlock([&](CGPoint centroid, double share, CMTime) {
        middle = centroid;
        intensity = share;
    });
    const CGImage ground = solidPicture(80, 40, {0, 0, 0, 255});
    for (int frame = 0; frame < 4; ++frame) {
        m_source->push(ground, second(frame));
        EXPECT_EQ(intensity, 0) << frame;
    }
    const CGImage moved = drawn(80, 40, [](int x, int y) { return x >= 60 && y >= 20; });
    m_source->push(solidPicture(80, 40, {20, 20, 20, 255}), second(4));
    EXPECT_EQ(intensity, 0) << "too small a change";
    m_source->push(moved, second(5));
    EXPECT_NEAR(intensity, 0.125, 0.01);
    EXPECT_NEAR(middle.x, 0.875, 0.01);
    EXPECT_NEAR(middle.y, 0.75, 0.01);
}

} // namespace
} // namespace lamina::test
