#include "gpu/filters/analysis/GPUImageLuminosity.h"

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/FilterResults.h"
#include "gpu/core/GPUVectors.h"
#include "gpu/core/VideoProcessingQueue.h"
#include "platform/base/CMTime.h"

namespace lamina {

void GPUImageLuminosity::setLuminosityProcessingFinishedBlock(LuminosityBlock block)
{
    runSynchronouslyOnVideoProcessingQueue([&] { m_luminosityBlock.swap(block); });
}

void GPUImageLuminosity::tell(const Average& average, const CMTime& frameTime) const
{
    GPUImageAverageColor::tell(average, frameTime);
    if (m_luminosityBlock)
        m_luminosityBlock(luminanceOf(average), frameTime);
}

GPUVector4 GPUImageLuminosity::outputColor(const Average& average) const
{
    const auto grey = static_cast<float>(luminanceOf(average));
    return {grey, grey, grey, 1};
}

double GPUImageLuminosity::luminanceOf(const Average& color)
{
    return 0.2125 * color.red + 0.7154 * color.green + 0.0721 * color.blue;
}

FilterDescription GPUImageLuminosity::describe()
{
    FilterDescription description = filterDescription<GPUImageLuminosity>(
        "GPUImageLuminosity", "detection", 1, "The average luminance, as a number and as a grey picture of one pixel");
    description.reporting = filterReporting<GPUImageLuminosity>(
        {{"luminosity", {}, false, "", "The average luminance, from 0 to 1"}},
        [](GPUImageLuminosity& filter, const FilterReportBlock& block) {
            filter.setLuminosityProcessingFinishedBlock([block](double luminosity, CMTime) { block({{luminosity}}); });
        });
    return description;
}

} // namespace lamina
