#pragma once

#include "gpu/core/FramebufferHold.h"
#include "gpu/core/GPUImageInput.h"
#include "gpu/core/GPUImageOutput.h"
#include "gpu/core/GPUImageRotationMode.h"
#include "gpu/endpoints/FrameReadback.h"
#include "gpu/endpoints/GPUImageSynchronizedWriter.h"
#include "gpu/endpoints/RecordingTimes.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/CMTime.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/Result.h"
#include "platform/media/AVAsset.h"
#include "platform/media/AVAssetWriter.h"
#include "platform/media/CMSampleBuffer.h"

#include <atomic>
#include <condition_variable>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace lamina {

class GPUImageContext;

/// Hears of a recording's end, on the video processing queue. By default it does nothing.
class GPUImageMovieWriterDelegate {
public:
    virtual ~GPUImageMovieWriterDelegate() = default;
    /// The source has ended; where the writer has a `completionBlock` that is called instead.
    virtual void movieRecordingCompleted() {}
    /// At most once a recording; where the writer has a `failureBlock` that is called instead.
    virtual void movieRecordingFailedWithError(const Error&) {}
};

/// How a movie is encoded.
struct GPUImageMovieWriterSettings {
    int crf = AVVideoSettings{}.crf; ///< x264's measure of loss, 1 to 51
    double frameRate = 0;            ///< frames a second, on the average; 0: not known
    /// Frames and sound that come faster than they can be encoded are dropped; else their producers wait, as they
    /// always do in lockstep.
    bool encodingLiveVideo = true;
    /// How much of the movie can be lost with the process; zero: all of it, and nothing of it stays, as it is wanted
    /// of a conversion.
    CMTime movieFragmentInterval = CMTime::make(1000, 1000);
};

/// The end of a graph that writes a movie: frames at `size`, stretched, and sound.
///
/// Frames are read in a context of the writer's own, on its queue, while the graph goes on; at most three of them wait
/// for it. What is encoded, and into which files it goes, tells `AVAssetWriter`.
///
/// Held by `std::shared_ptr` alone. Destroyed while it records it cancels; while it finishes it lives until that is
/// done. From any thread but for what `GPUImageInput` brings. The end and failures are told on the video processing
/// queue.
class GPUImageMovieWriter : public GPUImageInput,
                            public GPUImageAudioEncodingTarget,
                            public GPUImageSynchronizedWriter,
                            public std::enable_shared_from_this<GPUImageMovieWriter> {
public:
    /// A QuickTime movie at `path`. `size` in pixels, cut to whole ones. What stands in the way is logged, told by
    /// `error`, and fails the recording when it is started.
    GPUImageMovieWriter(const std::string& path, CGSize size);
    /// `fileType`: one of the `kAVFileType...`.
    GPUImageMovieWriter(const std::string& path, CGSize size, const std::string& fileType,
                        const GPUImageMovieWriterSettings& outputSettings = {});
    ~GPUImageMovieWriter() override;
    GPUImageMovieWriter(const GPUImageMovieWriter&) = delete;
    GPUImageMovieWriter& operator=(const GPUImageMovieWriter&) = delete;

    /// From now on frames and sound are taken; the first piece is the movie's beginning. A movie is recorded once.
    void startRecording();
    /// The same for frames that players are to turn.
    void startRecordingInOrientation(const AVTrackTransform& orientation);
    /// Nothing stays of it, unless it has been finished before.
    void cancelRecording();
    /// Writes what has been taken to its end and returns meanwhile: the handler is called when the movie stands, or
    /// `error` tells why it doesn't, on a thread of its own. Where nothing was started, and after the end, it is called
    /// at once. Every caller's handler is called.
    void finishRecordingWithCompletionHandler(std::function<void()> handler);
    /// The same without one.
    void finishRecording() { finishRecordingWithCompletionHandler({}); }

    /// Takes frames and sound.
    bool isRecording() const { return m_isRecording; }
    /// While paused nothing is taken; what comes after follows without a gap, in picture and sound.
    bool paused() const { return m_times.isPaused(); }
    void setPaused(bool paused) { m_times.setPaused(paused); }
    /// Of what has been taken: the time of the last frame, or else the last sound, less that of the first piece. Zero
    /// before.
    CMTime duration() const { return m_times.duration(); }
    /// Why nothing, or nothing more, can be written.
    std::optional<Error> error() const;
    /// Null where it can't be made. Its status tells how far it has come.
    AVAssetWriter* assetWriter() const { return m_assetWriter.get(); }

    /// See `GPUImageMovieWriterSettings`; without effect while recording.
    bool encodingLiveVideo() const { return m_encodingLiveVideo; }
    void setEncodingLiveVideo(bool live);
    /// Title, comment and such. Before the recording.
    std::map<std::string, std::string> metaData() const;
    void setMetaData(const std::map<std::string, std::string>& metaData);
    /// How players are to turn the frames. Before the recording.
    AVTrackTransform transform() const;
    void setTransform(const AVTrackTransform& transform);

    /// Whether packets of sound are passed on as they are stored. In force from the next `setHasAudioTrack`, which puts
    /// it back, and says so in the log, where the movie can't hold them.
    void setShouldPassthroughAudio(bool passthrough) { m_shouldPassthroughAudio = passthrough; }
    bool shouldPassthroughAudio() const override { return m_shouldPassthroughAudio; }
    /// The movie whose packets are passed on. Before `setHasAudioTrack`.
    void setPassthroughAsset(std::shared_ptr<const AVURLAsset> asset) { m_passthroughAsset = std::move(asset); }
    /// Before the recording; a track that has been added stays. Without settings: one channel, 44,100 a second,
    /// 64 kbit/s. Settings are not for packets that are passed on.
    void setHasAudioTrack(bool hasAudioTrack, const std::optional<AVAudioSettings>& audioSettings);
    void setHasAudioTrack(bool hasAudioTrack) override { setHasAudioTrack(hasAudioTrack, std::nullopt); }
    bool hasAudioTrack() const override { return m_hasAudioTrack; }
    bool shouldInvalidateAudioSampleWhenDone() const { return m_shouldInvalidateAudioSampleWhenDone; }
    void setShouldInvalidateAudioSampleWhenDone(bool invalidate) override
    {
        m_shouldInvalidateAudioSampleWhenDone = invalidate;
    }
    /// The next piece of sound, unless it isn't wanted now. Waits until there is room for it, but for live recordings.
    void processAudioBuffer(const CMSampleBuffer& audioBuffer) override;
    /// The piece at an earlier time.
    static CMSampleBuffer adjustTime(const CMSampleBuffer& sample, const CMTime& offset);

    void setVideoInputReadyCallback(InputReadyCallback callback) override;
    void setAudioInputReadyCallback(InputReadyCallback callback) override;
    void enableSynchronizationCallbacks() override;

    // Waits for the video processing queue: afterwards no call of the former block is under way.

    /// The source has ended; called once a recording, in place of the delegate.
    void setCompletionBlock(std::function<void()> block);
    /// Nothing, or nothing more, can be written: called at most once a recording, in place of the delegate.
    void setFailureBlock(std::function<void(const Error&)> block);
    /// Not held.
    void setDelegate(const std::weak_ptr<GPUImageMovieWriterDelegate>& delegate);
    /// Sees each piece of sound before it is written, and may change its samples; `sampleCount`: a channel's. Packets
    /// that are passed on are not shown.
    using AudioProcessingCallback = std::function<void(AudioBuffer& buffer, int sampleCount)>;
    void setAudioProcessingCallback(AudioProcessingCallback callback);

    void setEnabled(bool enabled) { m_enabled = enabled; }

    void newFrameReadyAtTime(const CMTime& frameTime, int textureIndex) override;
    void setInputFramebuffer(std::shared_ptr<GPUImageFramebuffer> framebuffer, int textureIndex) override;
    int nextAvailableTextureIndex() const override { return 0; }
    void setInputSize(CGSize size, int textureIndex) override;
    void setInputRotation(GPUImageRotationMode rotation, int textureIndex) override;
    CGSize maximumOutputSize() const override;
    void endProcessing() override;
    bool shouldIgnoreUpdatesToThisTarget() const override { return false; }
    bool enabled() const override { return m_enabled; }
    bool wantsMonochromeInput() const override { return false; }
    void setCurrentlyReceivingMonochromeInput(bool) override {}

private:
    struct TakenFrame;
    /// What is logged of a piece that doesn't get into the movie; its time follows.
    struct AppendTexts {
        const char* dropped;
        const char* failed;
    };
    /// An input with what drives it in lockstep.
    struct Track {
        std::shared_ptr<AVAssetWriterInput> input;
        InputReadyCallback readyCallback; ///< under m_callbacksMutex
        std::shared_ptr<DispatchQueue> queue;
        bool encodingIsFinished = false; ///< on the writer's queue
    };

    void initializeMovieWithOutputSettings(const GPUImageMovieWriterSettings& settings);
    void fail(const Error& error);
    void tellFailure(const Error& error);
    bool isPulled(const Track& track) const { return guarded(track.readyCallback) != nullptr; }
    /// What is pulled comes when there is room for it, and nothing of it may get lost.
    bool isLive() const { return m_encodingLiveVideo && !isPulled(m_video) && !isPulled(m_audio); }
    void tellPace();
    void startWriting();
    bool startSession(const CMTime& time, const Track& track);
    void stopTaking();
    void runOnWriterQueue(DispatchQueue::Block block);
    void markAsFinished(Track& track);
    void finished();

    bool isToBeDropped(const Track& track) const;
    bool waitForRoom();
    void leaveRoom();
    std::shared_ptr<TakenFrame> take(FramebufferHold framebuffer, const CMTime& time) const;
    void writeFrame(TakenFrame& frame);
    void append(AVAssetWriterInput& input, const CMSampleBuffer& sample, const AppendTexts& texts);
    bool addPassthroughInput();
    void writeSound(CMSampleBuffer& sample);
    void pullFor(Track& track, const char* queueLabel);
    void pull(Track& track);

    /// A copy of a member that `m_callbacksMutex` guards.
    template <class Member>
    Member guarded(const Member& member) const
    {
        const std::scoped_lock lock(m_callbacksMutex);
        return member;
    }
    /// Exchanges it; the former one goes outside of the lock.
    template <class Member>
    void exchangeGuarded(Member& member, Member& value)
    {
        const std::scoped_lock lock(m_callbacksMutex);
        std::swap(member, value);
    }

    const std::string m_path;
    const std::string m_fileType;
    const IntSize m_videoSize;
    std::unique_ptr<GPUImageContext> m_movieWriterContext;
    std::unique_ptr<FrameReadback> m_readback; ///< on the writer's queue, as what follows it
    std::unique_ptr<AVAssetWriter> m_assetWriter;
    Track m_video;
    Track m_audio;
    std::vector<std::function<void()>> m_finishHandlers;
    bool m_isFinishing = false;

    std::atomic<bool> m_isRecording{false};
    std::atomic<bool> m_enabled{true};
    std::atomic<bool> m_encodingLiveVideo{true};
    std::atomic<bool> m_hasAudioTrack{false};
    std::atomic<bool> m_shouldPassthroughAudio{false};
    std::atomic<bool> m_shouldInvalidateAudioSampleWhenDone{false};
    std::atomic<bool> m_alreadyFinishedRecording{false};
    std::atomic<bool> m_failureTold{false};
    RecordingTimes m_times;
    std::shared_ptr<const AVURLAsset> m_passthroughAsset;

    std::mutex m_roomMutex;
    std::condition_variable m_roomChanged;
    int m_framesUnderWay = 0; ///< taken, but not yet appended

    mutable std::mutex m_callbacksMutex;
    std::optional<Error> m_error;
    std::function<void()> m_completionBlock;
    std::function<void(const Error&)> m_failureBlock;
    std::weak_ptr<GPUImageMovieWriterDelegate> m_delegate;
    AudioProcessingCallback m_audioProcessingCallback;

    // On the video processing queue.
    FramebufferHold m_firstInputFramebuffer;
    GPUImageRotationMode m_inputRotation = kGPUImageNoRotation;
};

} // namespace lamina
