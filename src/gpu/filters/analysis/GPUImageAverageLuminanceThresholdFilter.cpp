#include "gpu/filters/analysis/GPUImageAverageLuminanceThresholdFilter.h"

#include "gpu/filters/analysis/GPUImageLuminosity.h"
#include "gpu/filters/color/GPUImageLuminanceThresholdFilter.h"
#include "platform/base/CMTime.h"

namespace lamina {

namespace {

constexpr float kStart = 1;
// What is as bright as the threshold is white, however a driver rounds.
constexpr float kSlack = 1e-6F;

} // namespace

GPUImageAverageLuminanceThresholdFilter::GPUImageAverageLuminanceThresholdFilter()
    : m_thresholdMultiplier(std::make_shared<std::atomic<float>>(kStart))
{
    const auto luminosity = std::make_shared<GPUImageLuminosity>();
    const auto threshold = std::make_shared<GPUImageLuminanceThresholdFilter>();
    luminosity->setLuminosityProcessingFinishedBlock(
        [multiplier = m_thresholdMultiplier, threshold](double average, CMTime) {
            threshold->setThreshold(static_cast<float>(average) * *multiplier - kSlack);
        });
    addFilter(luminosity);
    addFilter(threshold);
    setInitialFilters({luminosity, threshold}); // in this order: the average is known when the threshold draws
    setTerminalFilter(threshold);
}

FilterDescription GPUImageAverageLuminanceThresholdFilter::describe()
{
    using Self = GPUImageAverageLuminanceThresholdFilter;
    return filterDescription<Self>("GPUImageAverageLuminanceThresholdFilter", "colour", 1,
                                   "Black and white, parted at the picture's average brightness",
                                   {filterProperty("thresholdMultiplier", &Self::setThresholdMultiplier, kStart, {0, 2},
                                                   "", "How many times the average luminance is the threshold")});
}

} // namespace lamina
