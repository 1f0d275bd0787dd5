#pragma once

#include "gpu/core/GPUImageFramebuffer.h"
#include "gpu/core/GPUImageInput.h"
#include "gpu/core/GPUImageRotationMode.h"
#include "gpu/core/GPUImageStage.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/CMTime.h"
#include "platform/image/pixels/CGImage.h"

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

namespace lamina {

/// A graph of filters that looks like one filter. What arrives goes to all `initialFilters`; what is asked of the
/// output goes to the `terminalFilter`. The group has no framebuffer of its own and takes no counts. It holds its
/// filters.
///
/// A subclass's constructor makes the filters, connects them, adds each with `addFilter`, and sets both ends. Until
/// there is a terminal filter, operations on the output do nothing.
class GPUImageFilterGroup : public GPUImageStage {
public:
    GPUImageFilterGroup() = default;

    /// One more member, last. Nothing is connected.
    void addFilter(std::shared_ptr<GPUImageStage> filter) { m_filters.push_back(std::move(filter)); }
    /// For groups that are a line: adds these, at least one, connects each with the next and sets both ends.
    void addFiltersInLine(const std::vector<std::shared_ptr<GPUImageStage>>& filters);
    /// Null beyond the end.
    std::shared_ptr<GPUImageStage> filterAtIndex(std::size_t index) const;
    std::size_t filterCount() const { return m_filters.size(); }

    const std::shared_ptr<GPUImageStage>& terminalFilter() const { return m_terminalFilter; }
    void setTerminalFilter(std::shared_ptr<GPUImageStage> filter) { m_terminalFilter = std::move(filter); }
    const std::vector<std::shared_ptr<GPUImageStage>>& initialFilters() const { return m_initialFilters; }
    void setInitialFilters(std::vector<std::shared_ptr<GPUImageStage>> filters)
    {
        m_initialFilters = std::move(filters);
    }
    /// One of the initial filters that gets no frames of the group's input; not held.
    void setInputFilterToIgnoreForUpdates(const std::shared_ptr<GPUImageStage>& filter)
    {
        m_inputFilterToIgnoreForUpdates = filter;
    }

    using GPUImageOutput::addTarget;
    void addTarget(const std::shared_ptr<GPUImageInput>& target, int textureLocation) override;
    void removeTarget(const std::shared_ptr<GPUImageInput>& target) override;
    void removeAllTargets() override;
    std::vector<std::shared_ptr<GPUImageInput>> targets() const override;
    void setTargetToIgnoreForUpdates(const std::shared_ptr<GPUImageInput>& target) override;
    FrameProcessingCompletionBlock frameProcessingCompletionBlock() const override;
    void setFrameProcessingCompletionBlock(FrameProcessingCompletionBlock block) override;
    void useNextFrameForImageCapture() override;
    CGImage newCGImageFromCurrentlyProcessedOutput() override;

    void newFrameReadyAtTime(const CMTime& frameTime, int textureIndex) override;
    void setInputFramebuffer(std::shared_ptr<GPUImageFramebuffer> framebuffer, int textureIndex) override;
    int nextAvailableTextureIndex() const override { return 0; }
    void setInputSize(CGSize size, int textureIndex) override;
    void setInputRotation(GPUImageRotationMode rotation, int textureIndex) override;
    CGSize maximumOutputSize() const override { return {}; }
    void endProcessing() override;
    bool wantsMonochromeInput() const override;
    void setCurrentlyReceivingMonochromeInput(bool monochrome) override;

    /// On every filter of the group.
    void forceProcessingAtSize(CGSize size) override;
    void forceProcessingAtSizeRespectingAspectRatio(CGSize size) override;

    bool canRender() const override;
    /// The terminal filter's.
    AlphaForm alphaForm() const override;

private:
    std::vector<std::shared_ptr<GPUImageStage>> m_filters;
    std::vector<std::shared_ptr<GPUImageStage>> m_initialFilters;
    std::shared_ptr<GPUImageStage> m_terminalFilter;
    std::weak_ptr<GPUImageStage> m_inputFilterToIgnoreForUpdates;
    bool m_isEndProcessing = false;
};

} // namespace lamina
