#include "gpu/core/GPUImageOutput.h"

#include "gpu/core/GPUImageContext.h"
#include "gpu/core/GPUImageRotationMode.h"
#include "gpu/core/VideoProcessingQueue.h"
#include "platform/base/UIDevice.h"
#include "platform/gl/GLHeaders.h"

#include <algorithm>
#include <utility>

namespace lamina {

namespace {

UIImageOrientation orientationOf(UIDeviceOrientation device)
{
    switch (device) {
    case UIDeviceOrientation::PortraitUpsideDown:
        return UIImageOrientation::Down;
    case UIDeviceOrientation::LandscapeLeft:
        return UIImageOrientation::Left;
    case UIDeviceOrientation::LandscapeRight:
        return UIImageOrientation::Right;
    default:
        return UIImageOrientation::Up;
    }
}

} // namespace

GPUImageOutput::~GPUImageOutput()
{
    // What nobody ever connected goes without a hop, and without making the queue.
    if (!m_targets.empty())
        GPUImageOutput::removeAllTargets();
}

void GPUImageOutput::freeSlot(GPUImageInput& target, int textureIndex)
{
    target.setInputSize({}, textureIndex);
    target.setInputRotation(kGPUImageNoRotation, textureIndex);
}

void GPUImageOutput::setInputFramebufferForTarget(GPUImageInput& target, int textureIndex)
{
    target.setInputFramebuffer(framebufferForOutput(), textureIndex);
}

void GPUImageOutput::notifyTargetsAboutNewOutputTexture()
{
    for (const Target& target : m_targets)
        setInputFramebufferForTarget(*target.input, target.textureIndex);
}

void GPUImageOutput::handFrame(const PushedFrame& frame, bool asMonochrome, GPUImageInput& target, int textureIndex)
{
    target.setCurrentlyReceivingMonochromeInput(asMonochrome);
    if (frame.rotation)
        target.setInputRotation(*frame.rotation, textureIndex);
    target.setInputSize(frame.size, textureIndex);
    if (!frame.isHandedAlready)
        target.setInputFramebuffer(frame.framebuffer, textureIndex);
}

void GPUImageOutput::pushToTargets(PushedFrame frame)
{
    std::vector<Target> targets = m_targets; // a target may change the list while it works
    std::erase_if(targets, [&](const Target& target) {
        return isIgnored(target) || (frame.leavesOutDisabled && !target.input->enabled());
    });
    for (const Target& target : targets)
        handFrame(frame, frame.isMonochrome && m_allTargetsWantMonochromeData, *target.input, target.textureIndex);
    if (frame.givesUpCount && frame.framebuffer)
        frame.framebuffer->unlock();
    frame.framebuffer.reset(); // what the pool drops meanwhile would else last until all behind the targets are done
    for (const Target& target : targets)
        target.input->newFrameReadyAtTime(frame.time, target.textureIndex);
}

std::vector<std::shared_ptr<GPUImageInput>> GPUImageOutput::targets() const
{
    std::vector<std::shared_ptr<GPUImageInput>> inputs;
    runSynchronouslyOnVideoProcessingQueue([&] {
        for (const Target& target : m_targets)
            inputs.push_back(target.input);
    });
    return inputs;
}

void GPUImageOutput::addTarget(const std::shared_ptr<GPUImageInput>& target)
{
    if (!target)
        return;
    // In one turn: two sources that are added by two threads must not be told the same slot.
    runSynchronouslyOnVideoProcessingQueue([&] {
        addTarget(target, target->nextAvailableTextureIndex());
        if (target->shouldIgnoreUpdatesToThisTarget())
            setTargetToIgnoreForUpdates(target);
    });
}

void GPUImageOutput::addTarget(const std::shared_ptr<GPUImageInput>& target, int textureLocation)
{
    runSynchronouslyOnVideoProcessingQueue([&] {
        if (!target || std::ranges::find(m_targets, target, &Target::input) != m_targets.end())
            return;
        m_cachedMaximumOutputSize = {};
        setInputFramebufferForTarget(*target, textureLocation);
        m_targets.push_back({target, textureLocation});
        m_allTargetsWantMonochromeData = m_allTargetsWantMonochromeData && target->wantsMonochromeInput();
    });
}

void GPUImageOutput::removeTarget(const std::shared_ptr<GPUImageInput>& target)
{
    runSynchronouslyOnVideoProcessingQueue([&] {
        const auto found = std::ranges::find(m_targets, target, &Target::input);
        if (found == m_targets.end())
            return;
        if (isIgnored(*found))
            m_targetToIgnoreForUpdates.reset();
        m_cachedMaximumOutputSize = {};
        const Target removed = std::move(*found);
        freeSlot(*removed.input, removed.textureIndex);
        m_targets.erase(found);
        removed.input->endProcessing();
    });
}

void GPUImageOutput::removeAllTargets()
{
    std::vector<Target> removed; // dropped after the hop: the last reference to a target may be here
    runSynchronouslyOnVideoProcessingQueue([&] {
        m_cachedMaximumOutputSize = {};
        for (const Target& target : m_targets)
            freeSlot(*target.input, target.textureIndex);
        removed.swap(m_targets);
        m_allTargetsWantMonochromeData = true;
    });
}

UIImage GPUImageOutput::imageFromCurrentFramebuffer()
{
    return imageFromCurrentFramebufferWithOrientation(orientationOf(UIDevice::orientation()));
}

UIImage GPUImageOutput::imageFromCurrentFramebufferWithOrientation(UIImageOrientation orientation)
{
    CGImage image = newCGImageFromCurrentlyProcessedOutput();
    return image ? UIImage(std::move(image), 1, orientation) : UIImage();
}

void GPUImageOutput::setAudioEncodingTarget(std::shared_ptr<GPUImageAudioEncodingTarget> target)
{
    m_audioEncodingTarget = std::move(target);
    if (m_audioEncodingTarget && !m_audioEncodingTarget->hasAudioTrack())
        m_audioEncodingTarget->setHasAudioTrack(true);
}

std::shared_ptr<GPUImageInput> GPUImageOutput::targetToIgnoreForUpdates() const
{
    return valueFromVideoProcessingQueue([this] { return m_targetToIgnoreForUpdates.lock(); });
}

void GPUImageOutput::setTargetToIgnoreForUpdates(const std::shared_ptr<GPUImageInput>& target)
{
    runSynchronouslyOnVideoProcessingQueue([&] { m_targetToIgnoreForUpdates = target; });
}

GPUImageOutput::FrameProcessingCompletionBlock GPUImageOutput::frameProcessingCompletionBlock() const
{
    return valueFromVideoProcessingQueue([this] { return m_frameProcessingCompletionBlock; });
}

void GPUImageOutput::setFrameProcessingCompletionBlock(FrameProcessingCompletionBlock block)
{
    // The former one goes on the caller's thread, after the hop.
    runSynchronouslyOnVideoProcessingQueue([&] { m_frameProcessingCompletionBlock.swap(block); });
}

void GPUImageOutput::setOutputTextureOptions(const GPUTextureOptions& options)
{
    runSynchronouslyOnVideoProcessingQueue([&] {
        m_outputTextureOptions = options;
        if (!m_outputFramebuffer || m_outputFramebuffer->texture() == 0 ||
            !GPUImageContext::useImageProcessingContext())
            return;
        glBindTexture(GL_TEXTURE_2D, m_outputFramebuffer->texture());
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, static_cast<GLint>(options.wrapS));
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, static_cast<GLint>(options.wrapT));
        glBindTexture(GL_TEXTURE_2D, 0);
    });
}

} // namespace lamina
