#include "gpu/filters/analysis/GPUImageHarrisCornerDetectionFilter.h"

#include "gpu/core/VideoProcessingQueue.h"
#include "gpu/filters/edge/GPUImageXYDerivativeFilter.h"

#include <algorithm>
#include <array>
#include <initializer_list>

namespace lamina {

namespace {

constexpr float kStartSensitivity = 5;

std::string cornernessShader(const std::string& cornerness)
{
    return R"(
precision highp float;

varying vec2 textureCoordinate;

uniform highp sampler2D inputImageTexture;
uniform float sensitivity;

void main()
{
    vec3 d = texture2D(inputImageTexture, textureCoordinate).xyz;
    float z = d.z * 2.0 - 1.0;
    gl_FragColor = vec4(vec3()" +
           cornerness + R"() * sensitivity, 1.0);
}
)";
}

CGPoint placeOf(const Peak& peak, IntSize size)
{
    return {static_cast<double>(peak.x) / size.width, static_cast<double>(peak.y) / size.height};
}

} // namespace

struct GPUImageHarrisCornerDetectionFilter::Telling {
    PeakPairs pairs;
    CornersDetectedBlock cornersDetectedBlock;
    CornersBlock cornersBlock;

    void tellArray(std::span<const Peak> peaks, IntSize size, const CMTime& time)
    {
        const unsigned count = pairs.fill(peaks, [&](const Peak& peak) { return placeOf(peak, size); });
        cornersDetectedBlock(pairs.numbers(), count, time);
    }

    void tellCorners(std::span<const Peak> peaks, IntSize size, const CMTime& time) const
    {
        std::vector<Corner> corners;
        for (const Peak& peak : peaks)
            corners.push_back({placeOf(peak, size), peak.value / 255.0});
        std::ranges::stable_sort(corners, std::greater(), &Corner::strength);
        cornersBlock(corners, time);
    }
};

GPUImageHarrisCornerDetectionFilter::GPUImageHarrisCornerDetectionFilter()
    : GPUImageHarrisCornerDetectionFilter("d.x * d.y - z * z - 0.04 * (d.x + d.y) * (d.x + d.y)", kStartSensitivity)
{
}

GPUImageHarrisCornerDetectionFilter::GPUImageHarrisCornerDetectionFilter(const std::string& cornerness,
                                                                         float sensitivity)
    : m_blur(std::make_shared<GPUImageGaussianBlurFilter>())
    , m_cornerness(std::make_shared<GPUImageFilter>(cornernessShader(cornerness)))
    , m_peaks(std::make_shared<PeakFinder>())
    , m_telling(std::make_shared<Telling>())
{
    const auto derivative = std::make_shared<GPUImageXYDerivativeFilter>();
    derivative->addTarget(m_blur);
    m_blur->addTarget(m_cornerness);
    m_cornerness->addTarget(m_peaks);
    for (const std::shared_ptr<GPUImageFilter>& filter :
         std::initializer_list<std::shared_ptr<GPUImageFilter>>{derivative, m_blur, m_cornerness, m_peaks})
        addFilter(filter);
    setInitialFilters({derivative});
    setTerminalFilter(m_peaks);
    setBlurRadiusInPixels(2);
    setSensitivity(sensitivity);
    setThreshold(0.2F);
    m_peaks->setPeaksBlock([telling = m_telling](std::span<const Peak> peaks, IntSize size, const CMTime& time) {
        if (telling->cornersDetectedBlock)
            telling->tellArray(peaks, size, time);
        if (telling->cornersBlock)
            telling->tellCorners(peaks, size, time);
    });
}

void GPUImageHarrisCornerDetectionFilter::setSensitivity(float sensitivity)
{
    m_sensitivity = sensitivity;
    m_cornerness->setFloat(sensitivity, "sensitivity");
}

void GPUImageHarrisCornerDetectionFilter::setCornersDetectedBlock(CornersDetectedBlock block)
{
    runSynchronouslyOnVideoProcessingQueue([&] { m_telling->cornersDetectedBlock.swap(block); });
}

void GPUImageHarrisCornerDetectionFilter::setCornersBlock(CornersBlock block)
{
    runSynchronouslyOnVideoProcessingQueue([&] { m_telling->cornersBlock.swap(block); });
}

FilterReporting GPUImageHarrisCornerDetectionFilter::cornerReporting()
{
    using Self = GPUImageHarrisCornerDetectionFilter;
    return filterReporting<Self>({{"corners",
                                   {"x", "y", "strength"},
                                   true,
                                   "shares of the width and the height",
                                   "The corners, the strongest first; strength is the cornerness, up to 1"}},
                                 [](Self& filter, const FilterReportBlock& block) {
                                     filter.setCornersBlock([block](const std::vector<Corner>& corners, CMTime) {
                                         FilterResultValues values;
                                         for (const auto& [place, strength] : corners)
                                             values.insert(values.end(), {place.x, place.y, strength});
                                         block({std::move(values)});
                                     });
                                 });
}

FilterDescription GPUImageHarrisCornerDetectionFilter::describe()
{
    return cornerDescription<GPUImageHarrisCornerDetectionFilter>("GPUImageHarrisCornerDetectionFilter",
                                                                  "Finds corners, by Harris", kStartSensitivity);
}

} // namespace lamina
