#pragma once

#include "gpu/core/GPUImageFramebuffer.h"
#include "gpu/core/GPUImageInput.h"
#include "gpu/core/GPUImageRotationMode.h"
#include "gpu/core/GPUTextureOptions.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/CMTime.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/UIImage.h"

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace lamina {

struct CMSampleBuffer; // the media module's: only who gives sound and who encodes it look into one

/// Whoever encodes the sound of a source: the movie writer.
class GPUImageAudioEncodingTarget {
public:
    virtual ~GPUImageAudioEncodingTarget() = default;
    /// Whether it writes sound.
    virtual bool hasAudioTrack() const = 0;
    /// Before it starts to write.
    virtual void setHasAudioTrack(bool hasAudioTrack) = 0;

    /// Whether it takes sound as it is stored, packet by packet, instead of numbers.
    virtual bool shouldPassthroughAudio() const = 0;
    /// Whether pieces are let go of as soon as they are encoded, whoever else may hold the value.
    virtual void setShouldInvalidateAudioSampleWhenDone(bool shouldInvalidate) = 0;
    /// The next piece of sound; may wait until there is room for it. From the thread of whoever reads, one piece at a
    /// time.
    virtual void processAudioBuffer(const CMSampleBuffer& audioBuffer) = 0;
};

/// A frame as its producer hands it to targets.
struct PushedFrame {
    std::shared_ptr<GPUImageFramebuffer> framebuffer = {};
    CGSize size = {}; ///< that targets are told, in pixels
    CMTime time = kCMTimeIndefinite;
    std::optional<GPUImageRotationMode> rotation = {}; ///< none: what targets were told stays
    bool isMonochrome = false;                         ///< one channel is all there is in it
    bool leavesOutDisabled = false;                    ///< targets that are not `enabled` don't get it
    bool givesUpCount = false;    ///< the producer's own count is given back once every target has its own
    bool isHandedAlready = false; ///< targets have it since they were added or it was made; they are only told to draw
};

/// Whatever gives frames: still pictures, cameras, movies, filters. It holds its targets, in the order of adding, and
/// so a graph lives as long as somebody holds its sources. Graphs must have no cycles of targets; nobody checks.
///
/// List operations and settings may be called from any thread: they do their work on the video processing queue and
/// wait for it.
class GPUImageOutput : public std::enable_shared_from_this<GPUImageOutput> {
public:
    GPUImageOutput() = default;
    virtual ~GPUImageOutput();
    GPUImageOutput(const GPUImageOutput&) = delete;
    GPUImageOutput& operator=(const GPUImageOutput&) = delete;

    /// Hands the present output to the target's slot, which may take a count on it.
    void setInputFramebufferForTarget(GPUImageInput& target, int textureIndex);
    /// The frame being or last produced; null when it has been handed on.
    virtual std::shared_ptr<GPUImageFramebuffer> framebufferForOutput() const { return m_outputFramebuffer; }
    /// Forgets it; no count changes.
    virtual void removeOutputFramebuffer() { m_outputFramebuffer.reset(); }
    /// Hands the present output to every target's slot.
    void notifyTargetsAboutNewOutputTexture();

    /// A copy of the list.
    virtual std::vector<std::shared_ptr<GPUImageInput>> targets() const;
    /// In the target's next free slot. A target that stands in the list already is not added again. One that wants no
    /// updates becomes the `targetToIgnoreForUpdates`.
    void addTarget(const std::shared_ptr<GPUImageInput>& target);
    virtual void addTarget(const std::shared_ptr<GPUImageInput>& target, int textureLocation);
    /// Frees the target's slot and tells it that its source has ended. Nothing for one that is not in the list.
    virtual void removeTarget(const std::shared_ptr<GPUImageInput>& target);
    /// Frees the slots, but tells nobody that it has ended.
    virtual void removeAllTargets();

    /// Nothing here; filters and sources say what it does to them.
    virtual void forceProcessingAtSize(CGSize) {}
    virtual void forceProcessingAtSizeRespectingAspectRatio(CGSize) {}

    /// Asks that the next frame be kept for `newCGImageFromCurrentlyProcessedOutput`. Nothing here.
    virtual void useNextFrameForImageCapture() {}
    /// The kept frame's pixels. None here.
    virtual CGImage newCGImageFromCurrentlyProcessedOutput() { return {}; }
    virtual bool providesMonochromeOutput() const { return false; }

    /// The kept frame as a picture of scale 1, tagged by how the device is held. Empty when no frame comes in time.
    UIImage imageFromCurrentFramebuffer();
    /// The same with a tag of one's own.
    UIImage imageFromCurrentFramebufferWithOrientation(UIImageOrientation orientation);

    /// This filter as a function of pictures: pushes a still picture through it and waits for what comes out, at most
    /// three seconds. Stored pixels go through as they are, premultiplied where the filter works on such colours, and
    /// are not turned upright. Opaque and straight-alpha pictures of 8 bits RGBA go up without being drawn; see
    /// `PictureTexture` for the others. What comes out has straight alpha. Empty when there is no context, no program,
    /// or a slot stays empty.
    ///
    /// From any thread, but for one filter one call at a time.
    CGImage newCGImageByFilteringCGImage(const CGImage& image);
    CGImage newCGImageByFilteringImage(const UIImage& image) { return newCGImageByFilteringCGImage(image.cgImage()); }
    /// The same with the picture's scale and orientation.
    UIImage imageByFilteringImage(const UIImage& image);

    /// Switches the writer's sound track on.
    virtual void setAudioEncodingTarget(std::shared_ptr<GPUImageAudioEncodingTarget> target);
    const std::shared_ptr<GPUImageAudioEncodingTarget>& audioEncodingTarget() const { return m_audioEncodingTarget; }

    /// In force from the next fetch of a framebuffer; of the present output only the wrapping changes.
    void setOutputTextureOptions(const GPUTextureOptions& options);
    const GPUTextureOptions& outputTextureOptions() const { return m_outputTextureOptions; }

    /// Sources: make mipmaps.
    bool shouldSmoothlyScaleOutput() const { return m_shouldSmoothlyScaleOutput; }
    void setShouldSmoothlyScaleOutput(bool smoothly) { m_shouldSmoothlyScaleOutput = smoothly; }
    /// As a target: sources don't push to it.
    virtual bool shouldIgnoreUpdatesToThisTarget() const { return m_shouldIgnoreUpdatesToThisTarget; }
    void setShouldIgnoreUpdatesToThisTarget(bool ignore) { m_shouldIgnoreUpdatesToThisTarget = ignore; }
    /// True at first. Producers that say so skip targets that are not enabled.
    virtual bool enabled() const { return m_enabled; }
    void setEnabled(bool enabled) { m_enabled = enabled; }

    /// Not held. It stays in the list but gets no frames.
    std::shared_ptr<GPUImageInput> targetToIgnoreForUpdates() const;
    virtual void setTargetToIgnoreForUpdates(const std::shared_ptr<GPUImageInput>& target);

    /// Called on the queue when a frame has been drawn, before the targets have it.
    using FrameProcessingCompletionBlock = std::function<void(GPUImageOutput& output, const CMTime& frameTime)>;
    /// The present one; empty where there is none.
    virtual FrameProcessingCompletionBlock frameProcessingCompletionBlock() const;
    virtual void setFrameProcessingCompletionBlock(FrameProcessingCompletionBlock block);

    /// Whether all targets would do with one channel.
    bool allTargetsWantMonochromeData() const { return m_allTargetsWantMonochromeData; }

protected:
    struct Target {
        std::shared_ptr<GPUImageInput> input;
        int textureIndex;
    };
    /// In the order of adding. On the queue.
    const std::vector<Target>& targetList() const { return m_targets; }
    /// Tells the target that the slot has no source any more. On the queue.
    static void freeSlot(GPUImageInput& target, int textureIndex);
    bool isIgnored(const Target& target) const { return target.input == m_targetToIgnoreForUpdates.lock(); }

    /// Hands the frame to all targets but the ignored one, and then lets them draw in the order of adding: each has its
    /// count before the first of them works. They are told that one channel is coming where that is so and all of them
    /// would do with it. Nobody holds the frame here while they work but they themselves. On the queue.
    void pushToTargets(PushedFrame frame);
    /// Hands the frame to one slot of anybody, who draws with the `newFrameReadyAtTime` that is to follow. On the
    /// queue.
    static void handFrame(const PushedFrame& frame, bool asMonochrome, GPUImageInput& target, int textureIndex);

    std::shared_ptr<GPUImageFramebuffer> m_outputFramebuffer;
    CGSize m_inputTextureSize;        ///< of the input or, if forced, of the output
    CGSize m_cachedMaximumOutputSize; ///< cleared whenever the list changes
    CGSize m_forcedMaximumSize;
    bool m_overrideInputSize = false;
    std::atomic<bool> m_usingNextFrameForImageCapture{false};

private:
    std::vector<Target> m_targets;
    bool m_allTargetsWantMonochromeData = true;
    bool m_shouldSmoothlyScaleOutput = false;
    std::atomic<bool> m_shouldIgnoreUpdatesToThisTarget{false};
    std::atomic<bool> m_enabled{true};
    std::shared_ptr<GPUImageAudioEncodingTarget> m_audioEncodingTarget;
    std::weak_ptr<GPUImageInput> m_targetToIgnoreForUpdates;
    FrameProcessingCompletionBlock m_frameProcessingCompletionBlock;
    GPUTextureOptions m_outputTextureOptions;
};

} // namespace lamina
