#include "gpu/filters/blur/GPUImageHighPassFilter.h"

#include "gpu/filters/blend/BlendFilters.h"
#include "platform/base/CMTime.h"

namespace lamina {

GPUImageHighPassFilter::GPUImageHighPassFilter()
    : m_lowPass(std::make_shared<GPUImageLowPassFilter>())
{
    const auto difference = std::make_shared<GPUImageDifferenceBlendFilter>();
    difference->disableSecondFrameCheck();
    m_difference = difference;
    m_lowPass->addTarget(m_difference, 1);
    addFilter(m_lowPass);
    addFilter(m_difference);
    setInitialFilters({m_lowPass, m_difference});
    setTerminalFilter(m_difference);
}

void GPUImageHighPassFilter::newFrameReadyAtTime(const CMTime& frameTime, int textureIndex)
{
    // An empty slot is black: the first frame differs from nothing.
    m_lowPass->setTargetToIgnoreForUpdates(m_lowPass->hasPast() ? nullptr : m_difference);
    GPUImageFilterGroup::newFrameReadyAtTime(frameTime, textureIndex);
}

FilterDescription GPUImageHighPassFilter::describe()
{
    using Self = GPUImageHighPassFilter;
    return filterDescription<Self>("GPUImageHighPassFilter", "blur", 1,
                                   "Shows what changes in a stream; a single picture passes",
                                   {filterProperty("filterStrength", &Self::setFilterStrength, 0.5F, {0, 1}, "",
                                                   "Share of the past in what is taken away")});
}

} // namespace lamina
