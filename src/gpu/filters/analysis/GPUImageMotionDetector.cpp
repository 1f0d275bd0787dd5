#include "gpu/filters/analysis/GPUImageMotionDetector.h"

#include "gpu/core/FilterResults.h"
#include "gpu/core/GPUImageTwoInputFilter.h"
#include "gpu/filters/analysis/GPUImageAverageColor.h"
#include "gpu/filters/blur/GPUImageLowPassFilter.h"

#include <utility>

namespace lamina {

namespace {

constexpr float kStart = 0.5F;

constexpr const char* kComparisonFragmentShader = R"(
precision highp float;

varying vec2 textureCoordinate;
varying vec2 textureCoordinate2;

uniform highp sampler2D inputImageTexture;
uniform highp sampler2D inputImageTexture2;

void main()
{
    vec3 now = texture2D(inputImageTexture, textureCoordinate).rgb;
    vec3 before = texture2D(inputImageTexture2, textureCoordinate2).rgb;
    gl_FragColor = step(0.2, distance(now, before)) * vec4(textureCoordinate, 1.0, 1.0);
}
)";

} // namespace

GPUImageMotionDetector::GPUImageMotionDetector()
    : m_lowPass(std::make_shared<GPUImageLowPassFilter>())
    , m_average(std::make_shared<GPUImageAverageColor>())
{
    const auto comparison = std::make_shared<GPUImageTwoInputFilter>(kComparisonFragmentShader);
    m_lowPass->addTarget(comparison, 1);
    comparison->addTarget(m_average);
    addFilter(m_lowPass);
    addFilter(comparison);
    addFilter(m_average);
    setInitialFilters({m_lowPass, comparison});
    setTerminalFilter(m_average);
    setLowPassFilterStrength(kStart);
}

float GPUImageMotionDetector::lowPassFilterStrength() const
{
    return m_lowPass->filterStrength();
}

void GPUImageMotionDetector::setLowPassFilterStrength(float strength)
{
    m_lowPass->setFilterStrength(strength);
}

void GPUImageMotionDetector::setMotionDetectionBlock(MotionDetectionBlock block)
{
    if (!block) {
        m_average->setColorAverageProcessingFinishedBlock(nullptr);
        return;
    }
    m_average->setColorAverageProcessingFinishedBlock(
        [block = std::move(block)](double red, double green, double, double alpha, const CMTime& time) {
            block(alpha > 0 ? CGPoint{red / alpha, green / alpha} : CGPoint{0.5, 0.5}, alpha, time);
        });
}

FilterDescription GPUImageMotionDetector::describe()
{
    using Self = GPUImageMotionDetector;
    FilterDescription description = filterDescription<Self>(
        "GPUImageMotionDetector", "detection", 1, "Finds what has moved since the frames before",
        {filterProperty("lowPassFilterStrength", &Self::setLowPassFilterStrength, kStart, {0, 1}, "",
                        "Share of the past in what is compared with")});
    description.reporting =
        filterReporting<Self>({{"motion",
                                {"x", "y", "intensity"},
                                false,
                                "shares of the width, the height and the picture",
                                "The middle of what has moved, and how much has; 0.5, 0.5 and 0 in a single picture"}},
                              [](Self& filter, const FilterReportBlock& block) {
                                  filter.setMotionDetectionBlock([block](CGPoint centroid, double intensity, CMTime) {
                                      block({{centroid.x, centroid.y, intensity}});
                                  });
                              });
    return description;
}

} // namespace lamina
