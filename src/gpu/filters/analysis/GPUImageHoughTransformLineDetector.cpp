#include "gpu/filters/analysis/GPUImageHoughTransformLineDetector.h"

#include "gpu/core/GPUImageContext.h"
#include "gpu/core/GPUImageFilter.h"
#include "gpu/core/VideoProcessingQueue.h"
#include "gpu/filters/analysis/GPUImageParallelCoordinateLineTransformFilter.h"
#include "gpu/filters/analysis/PeakFinder.h"
#include "gpu/filters/analysis/PeakPairs.h"
#include "gpu/filters/edge/GPUImageCannyEdgeDetectionFilter.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>

namespace lamina {

namespace {

constexpr double kMostEdgeSide = 1024;
constexpr float kEdgeThreshold = 0.4F;
constexpr float kLineThreshold = 0.12F;

using Line = GPUImageHoughTransformLineDetector::Line;

/// The line that a place of the transform stands for; without its ends.
Line lineAt(const Peak& peak, IntSize size)
{
    // Columns have -1 and 1 in their middles, rows between them.
    const double u = (2.0 * peak.x - (size.width - 1)) / (size.width - 1);
    const double v = (2.0 * peak.y + 1) / size.height - 1;
    Line line;
    line.votes = peak.value;
    const double share = 1 - std::abs(u);
    if (share > 0) {
        line.slope = u / share;
        line.intercept = v / share;
    } else {
        line.slope = std::numeric_limits<double>::infinity();
        line.intercept = u < 0 ? v : -v;
    }
    return line;
}

/// Cuts to the rows from -1 to 1 what goes from one edge of the picture to the other; nothing where it passes by.
std::optional<Line> within(Line line)
{
    double first = -1;
    double last = 1;
    const bool isUpright = std::isinf(line.slope);
    if (!isUpright && line.slope != 0) {
        const double top = (-1 - line.intercept) / line.slope;
        const double bottom = (1 - line.intercept) / line.slope;
        first = std::max(first, std::min(top, bottom));
        last = std::min(last, std::max(top, bottom));
    }
    if (first > last || ((isUpright || line.slope == 0) && std::abs(line.intercept) > 1))
        return std::nullopt;
    const auto at = [&](double x) {
        const CGPoint place =
            isUpright ? CGPoint{line.intercept, x} : CGPoint{x, std::clamp(line.slope * x + line.intercept, -1.0, 1.0)};
        return CGPoint{(place.x + 1) / 2, (place.y + 1) / 2};
    };
    line.start = at(first);
    line.end = at(last);
    return line;
}

} // namespace

struct GPUImageHoughTransformLineDetector::Telling {
    PeakPairs pairs;
    LinesDetectedBlock linesDetectedBlock;
    LinesBlock linesBlock;

    void tellArray(std::span<const Peak> peaks, IntSize size, const CMTime& time)
    {
        const unsigned count = pairs.fill(peaks, [&](const Peak& peak) {
            const Line line = lineAt(peak, size);
            return CGPoint{line.slope, line.intercept};
        });
        linesDetectedBlock(pairs.numbers(), count, time);
    }

    void tellLines(std::span<const Peak> peaks, IntSize size, const CMTime& time) const
    {
        std::vector<Line> lines;
        for (const Peak& peak : peaks) {
            if (const std::optional<Line> line = within(lineAt(peak, size)))
                lines.push_back(*line);
        }
        std::ranges::stable_sort(lines, std::greater(), &Line::votes);
        linesBlock(lines, time);
    }
};

GPUImageHoughTransformLineDetector::GPUImageHoughTransformLineDetector()
    : GPUImageHoughTransformLineDetector(GPUImageContext::deviceSupportsFramebufferReads())
{
}

GPUImageHoughTransformLineDetector::GPUImageHoughTransformLineDetector(bool packedColorspace)
    : m_edges(std::make_shared<GPUImageCannyEdgeDetectionFilter>())
    , m_peaks(std::make_shared<PeakFinder>(packedColorspace))
    , m_telling(std::make_shared<Telling>())
{
    const auto transform = std::make_shared<GPUImageParallelCoordinateLineTransformFilter>(packedColorspace);
    m_edges->addTarget(transform);
    transform->addTarget(m_peaks);
    addFilter(m_edges);
    addFilter(transform);
    addFilter(m_peaks);
    setInitialFilters({m_edges});
    setTerminalFilter(m_peaks);
    setEdgeThreshold(kEdgeThreshold);
    setLineDetectionThreshold(kLineThreshold);
    m_peaks->setPeaksBlock([telling = m_telling](std::span<const Peak> peaks, IntSize size, const CMTime& time) {
        if (telling->linesDetectedBlock)
            telling->tellArray(peaks, size, time);
        if (telling->linesBlock)
            telling->tellLines(peaks, size, time);
    });
}

float GPUImageHoughTransformLineDetector::edgeThreshold() const
{
    return m_edges->upperThreshold();
}

void GPUImageHoughTransformLineDetector::setEdgeThreshold(float threshold)
{
    m_edges->setUpperThreshold(threshold);
}

float GPUImageHoughTransformLineDetector::lineDetectionThreshold() const
{
    return m_peaks->threshold();
}

void GPUImageHoughTransformLineDetector::setLineDetectionThreshold(float threshold)
{
    m_peaks->setThreshold(threshold);
}

void GPUImageHoughTransformLineDetector::setLinesDetectedBlock(LinesDetectedBlock block)
{
    runSynchronouslyOnVideoProcessingQueue([&] { m_telling->linesDetectedBlock.swap(block); });
}

void GPUImageHoughTransformLineDetector::setLinesBlock(LinesBlock block)
{
    runSynchronouslyOnVideoProcessingQueue([&] { m_telling->linesBlock.swap(block); });
}

void GPUImageHoughTransformLineDetector::setInputSize(CGSize size, int textureIndex)
{
    const bool isLarge = std::max(size.width, size.height) > kMostEdgeSide;
    // A size that was forced from elsewhere stays for small pictures.
    if (isLarge || m_isReducing)
        m_edges->forceProcessingAtSizeRespectingAspectRatio(isLarge ? CGSize{kMostEdgeSide, kMostEdgeSide} : CGSize{});
    m_isReducing = isLarge;
    GPUImageFilterGroup::setInputSize(size, textureIndex);
}

FilterReporting GPUImageHoughTransformLineDetector::reporting()
{
    using Self = GPUImageHoughTransformLineDetector;
    return filterReporting<Self>(
        {{"lines",
          {"slope", "intercept", "x1", "y1", "x2", "y2", "votes"},
          true,
          "slope and intercept in places from -1 to 1; x and y in shares of the width and the height",
          "The lines, those of most votes first, from end to end of the picture; an upright one has no slope, and its "
          "place as intercept"}},
        [](Self& filter, const FilterReportBlock& block) {
            filter.setLinesBlock([block](const std::vector<Line>& lines, CMTime) {
                FilterResultValues values;
                for (const auto& [slope, intercept, start, end, votes] : lines) {
                    const double told = std::isinf(slope) ? std::numeric_limits<double>::quiet_NaN() : slope;
                    values.insert(values.end(),
                                  {told, intercept, start.x, start.y, end.x, end.y, static_cast<double>(votes)});
                }
                block({std::move(values)});
            });
        });
}

FilterDescription GPUImageHoughTransformLineDetector::describe()
{
    using Self = GPUImageHoughTransformLineDetector;
    FilterDescription description = filterDescription<Self>(
        "GPUImageHoughTransformLineDetector", "detection", 1, "Finds straight lines",
        {filterProperty("edgeThreshold", &Self::setEdgeThreshold, kEdgeThreshold, {0, 1}, "",
                        "Steepness from which an edge is sure"),
         filterProperty("lineDetectionThreshold", &Self::setLineDetectionThreshold, kLineThreshold, {0, 1}, "",
                        "Least votes of a line: about its length as a share of the picture's longer side")});
    description.reporting = reporting();
    return description;
}

} // namespace lamina
