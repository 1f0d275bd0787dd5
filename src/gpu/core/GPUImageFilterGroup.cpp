#include "gpu/core/GPUImageFilterGroup.h"

#include "platform/image/pixels/AlphaForm.h"

#include <algorithm>
#include <utility>

namespace lamina {

void GPUImageFilterGroup::addFiltersInLine(const std::vector<std::shared_ptr<GPUImageStage>>& filters)
{
    for (std::size_t i = 0; i < filters.size(); ++i) {
        if (i > 0)
            filters[i - 1]->addTarget(filters[i]);
        addFilter(filters[i]);
    }
    setInitialFilters({filters.front()});
    setTerminalFilter(filters.back());
}

std::shared_ptr<GPUImageStage> GPUImageFilterGroup::filterAtIndex(std::size_t index) const
{
    return index < m_filters.size() ? m_filters[index] : nullptr;
}

void GPUImageFilterGroup::addTarget(const std::shared_ptr<GPUImageInput>& target, int textureLocation)
{
    if (m_terminalFilter)
        m_terminalFilter->addTarget(target, textureLocation);
}

void GPUImageFilterGroup::removeTarget(const std::shared_ptr<GPUImageInput>& target)
{
    if (m_terminalFilter)
        m_terminalFilter->removeTarget(target);
}

void GPUImageFilterGroup::removeAllTargets()
{
    if (m_terminalFilter)
        m_terminalFilter->removeAllTargets();
}

std::vector<std::shared_ptr<GPUImageInput>> GPUImageFilterGroup::targets() const
{
    return m_terminalFilter ? m_terminalFilter->targets() : std::vector<std::shared_ptr<GPUImageInput>>();
}

void GPUImageFilterGroup::setTargetToIgnoreForUpdates(const std::shared_ptr<GPUImageInput>& target)
{
    if (m_terminalFilter)
        m_terminalFilter->setTargetToIgnoreForUpdates(target);
}

GPUImageOutput::FrameProcessingCompletionBlock GPUImageFilterGroup::frameProcessingCompletionBlock() const
{
    return m_terminalFilter ? m_terminalFilter->frameProcessingCompletionBlock() : nullptr;
}

void GPUImageFilterGroup::setFrameProcessingCompletionBlock(FrameProcessingCompletionBlock block)
{
    if (m_terminalFilter)
        m_terminalFilter->setFrameProcessingCompletionBlock(std::move(block));
}

void GPUImageFilterGroup::useNextFrameForImageCapture()
{
    if (m_terminalFilter)
        m_terminalFilter->useNextFrameForImageCapture();
}

CGImage GPUImageFilterGroup::newCGImageFromCurrentlyProcessedOutput()
{
    return m_terminalFilter ? m_terminalFilter->newCGImageFromCurrentlyProcessedOutput() : CGImage();
}

void GPUImageFilterGroup::newFrameReadyAtTime(const CMTime& frameTime, int textureIndex)
{
    m_isEndProcessing = false;
    const std::shared_ptr<GPUImageStage> ignored = m_inputFilterToIgnoreForUpdates.lock();
    for (const auto& filter : m_initialFilters) {
        if (filter != ignored)
            filter->newFrameReadyAtTime(frameTime, textureIndex);
    }
}

void GPUImageFilterGroup::setInputFramebuffer(std::shared_ptr<GPUImageFramebuffer> framebuffer, int textureIndex)
{
    for (const auto& filter : m_initialFilters)
        filter->setInputFramebuffer(framebuffer, textureIndex);
}

void GPUImageFilterGroup::setInputSize(CGSize size, int textureIndex)
{
    for (const auto& filter : m_initialFilters)
        filter->setInputSize(size, textureIndex);
}

void GPUImageFilterGroup::setInputRotation(GPUImageRotationMode rotation, int textureIndex)
{
    for (const auto& filter : m_initialFilters)
        filter->setInputRotation(rotation, textureIndex);
}

void GPUImageFilterGroup::endProcessing()
{
    if (m_isEndProcessing)
        return;
    m_isEndProcessing = true;
    for (const auto& filter : m_initialFilters)
        filter->endProcessing();
}

bool GPUImageFilterGroup::wantsMonochromeInput() const
{
    return std::ranges::all_of(m_initialFilters, [](const auto& filter) { return filter->wantsMonochromeInput(); });
}

void GPUImageFilterGroup::setCurrentlyReceivingMonochromeInput(bool monochrome)
{
    for (const auto& filter : m_initialFilters)
        filter->setCurrentlyReceivingMonochromeInput(monochrome);
}

void GPUImageFilterGroup::forceProcessingAtSize(CGSize size)
{
    for (const auto& filter : m_filters)
        filter->forceProcessingAtSize(size);
}

void GPUImageFilterGroup::forceProcessingAtSizeRespectingAspectRatio(CGSize size)
{
    for (const auto& filter : m_filters)
        filter->forceProcessingAtSizeRespectingAspectRatio(size);
}

bool GPUImageFilterGroup::canRender() const
{
    return m_terminalFilter && std::ranges::all_of(m_filters, [](const auto& filter) { return filter->canRender(); });
}

AlphaForm GPUImageFilterGroup::alphaForm() const
{
    return m_terminalFilter ? m_terminalFilter->alphaForm() : AlphaForm::Straight;
}

} // namespace lamina
