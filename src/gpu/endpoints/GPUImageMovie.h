#pragma once

#include "gpu/core/GPUImageOutput.h"
#include "gpu/core/GPUImageRotationMode.h"
#include "gpu/core/GPUVectors.h"
#include "gpu/endpoints/FrameUpload.h"
#include "gpu/endpoints/GPUImageSynchronizedWriter.h"
#include "gpu/endpoints/MoviePacing.h"
#include "platform/base/CMTime.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/Result.h"
#include "platform/media/AVAsset.h"
#include "platform/media/AVAssetReader.h"
#include "platform/media/CMSampleBuffer.h"
#include "platform/media/CVPixelBuffer.h"

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace lamina {

class AVPlayerItem;
class MoviePlayerLink;

/// Hears of a movie's end, on the thread where it ends; not held.
class GPUImageMovieDelegate {
public:
    virtual ~GPUImageMovieDelegate() = default;
    /// The movie has ended: all is read, it failed in its middle, or it was told to end. Called once.
    virtual void didCompletePlayingMovie() {}
    /// Why the movie breaks off, before the call above; or why it could not start, and then nothing follows.
    virtual void didFailPlayingMovie(const Error&) {}
};

/// A movie as a source: reads a file frame by frame and pushes each through the graph, its sound to the
/// `audioEncodingTarget`. Frames are told their time in the movie; they come as they are stored, and targets are told
/// the rotation in which they are upright.
///
/// Held by a std::shared_ptr. Reading happens on a queue of its own, which keeps the movie alive until the end; each
/// frame goes through the graph on the video processing queue before the next is asked for. A repeating movie runs
/// until it is told to end. In lockstep with a writer it is the writer's queues that read, and whoever made the movie
/// holds it.
///
/// Operations may be called from any thread; settings before the start.
class GPUImageMovie : public GPUImageOutput {
public:
    /// From a file, which is opened when processing starts.
    explicit GPUImageMovie(std::string url);
    explicit GPUImageMovie(std::shared_ptr<const AVURLAsset> asset);
    /// What somebody else plays: the frame of the moment, as often as there is a new one. Without sound.
    explicit GPUImageMovie(std::shared_ptr<AVPlayerItem> playerItem);
    ~GPUImageMovie() override;

    const std::string& url() const { return m_url; }
    /// Of a file: once its tracks have been found.
    std::shared_ptr<const AVURLAsset> asset() const;
    const std::shared_ptr<AVPlayerItem>& playerItem() const { return m_playerItem; }

    /// Logs how long each frame takes.
    bool runBenchmark() const { return m_runBenchmark; }
    void setRunBenchmark(bool run) { m_runBenchmark = run; }
    /// Paces frames by their times; otherwise they come as fast as the graph takes them.
    bool playAtActualSpeed() const { return m_playAtActualSpeed; }
    void setPlayAtActualSpeed(bool actual) { m_playAtActualSpeed = actual; }
    /// Starts over at the end, by way of the main queue, without an end in between. Not in lockstep with a writer.
    bool shouldRepeat() const { return m_shouldRepeat; }
    void setShouldRepeat(bool repeat) { m_shouldRepeat = repeat; }
    /// The stretch that is read; pieces keep their times in the movie. Not of a player item.
    void setTimeRange(const CMTimeRange& range) { m_timeRange = range; }
    /// Forgotten after the end.
    void setDelegate(const std::shared_ptr<GPUImageMovieDelegate>& delegate);

    /// Whether frames come as planes of Y and Cb Cr and are made red, green and blue on the device; otherwise the
    /// reader converts them. Off at first: it pays where the device draws for itself.
    bool convertsOnDevice() const { return m_convertsOnDevice; }
    void setConvertsOnDevice(bool convertsOnDevice);
    /// Makes the program that converts; with `setConvertsOnDevice`, or with the first frame that needs it.
    void yuvConversionSetup();

    /// From now on the writer pulls: it is told to ask for frames, and for sound, whenever it has room. It must also be
    /// a target behind this movie and, to have sound, the `audioEncodingTarget`.
    void enableSynchronizedEncodingUsingMovieWriter(std::shared_ptr<GPUImageSynchronizedWriter> writer);

    /// Starts and returns; nothing while it runs. What stands in the way is logged and told to the delegate, and the
    /// movie stays idle.
    void startProcessing();
    /// Reads the asset to its end and waits for that; with a writer in lockstep it only sets it going. On the video
    /// processing queue, for which each frame waits, it doesn't wait.
    void processAsset();
    /// Pushes the next frame of the output; false when there is none any more, or the movie has ended.
    bool readNextVideoFrameFromOutput(const std::shared_ptr<AVAssetReaderOutput>& output);
    /// The same for sound.
    bool readNextAudioSampleFromOutput(const std::shared_ptr<AVAssetReaderOutput>& output);
    /// Pushes a frame and waits until the graph has taken it. One that can't be shown is logged and left out.
    void processMovieFrame(const CMSampleBuffer& sample);
    void processMovieFrame(const std::shared_ptr<CVPixelBuffer>& movieFrame, const CMTime& sampleTime);

    /// How much has been read, from 0 to 1; 0 before the start, and after an early end.
    double progress() const;
    /// What the movie failed with; nothing otherwise, nor when it was told to end. The subject is its path.
    std::optional<Error> error() const;
    /// Ends it: no frame is pushed any more, targets and the delegate are told. A second end is silent.
    void endProcessing();
    /// Ends reading, which may be waiting for a piece, and then the same.
    void cancelProcessing();

    // For those who watch.

    bool audioEncodingIsFinished() const { return m_audioEncodingIsFinished; }
    bool videoEncodingIsFinished() const { return m_videoEncodingIsFinished; }
    /// The time of the last frame that was pushed.
    CMTime processingFrameTime() const;
    /// Of the frames that were converted on the device: set anew only when both sides change.
    int imageBufferWidth() const { return m_upload.imageBufferWidth(); }
    int imageBufferHeight() const { return m_upload.imageBufferHeight(); }
    /// Of the last frame, by its tag and levels.
    GPUMatrix3x3 preferredConversion() const { return m_upload.preferredConversion(); }
    bool isFullYUVRange() const { return m_upload.isFullYUVRange(); }

protected:
    GPUImageMovie();
    /// The reader with its outputs, not yet started; null when there is nothing to read.
    virtual std::unique_ptr<AVAssetReader> createAssetReader();
    /// Whether there is something to read, and its tracks are known; on the reading queue.
    virtual Outcome prepareToRead(const std::atomic<bool>& stopped);
    /// What a frame must be drawn with to be upright; none: as targets were told.
    virtual std::optional<GPUImageRotationMode> rotation() const;
    /// Of what is read; zero where it isn't known.
    virtual CMTime duration() const;

    /// Whether there is somebody for the sound who passes it on as it is stored.
    bool wantsStoredAudio() const;
    /// Whether the device can take frames of this size.
    static Outcome checkDevice(IntSize frame, const std::string& subject);
    const CMTimeRange& timeRange() const { return m_timeRange; }

private:
    using StopFlag = std::shared_ptr<std::atomic<bool>>;

    StopFlag beginPass(const StopFlag& before = nullptr);
    void submitPass(const StopFlag& stop);
    void readPass(const StopFlag& stop);
    void pullInto(GPUImageSynchronizedWriter& writer, const StopFlag& stop);
    void readUntilEnd();
    bool isSoundBehind() const;
    void finishPass(AVAssetReader& reader);
    void finishStream(std::atomic<bool>& isFinished);
    void endAfterReading();
    void failToStart(const Error& error);
    void fail(const Error& error);
    void stopReading();
    void processPlayerItem();
    void finishPlayerItem(const std::optional<Error>& error);

    CVPixelFormat wantedFormat(const AVURLAsset& asset) const;
    bool isStopped() const;
    std::string path() const;
    std::shared_ptr<AVAssetReader> reader() const;
    std::shared_ptr<AVAssetReaderOutput> output(AVTrackMediaType type) const;
    std::shared_ptr<GPUImageMovieDelegate> delegate() const;
    void rememberError(const Error& error);

    bool pushFrame(const CMSampleBuffer& sample);

    std::string m_url;
    std::shared_ptr<AVPlayerItem> m_playerItem;
    std::atomic<bool> m_runBenchmark{false};
    std::atomic<bool> m_playAtActualSpeed{false};
    std::atomic<bool> m_shouldRepeat{false};
    std::atomic<bool> m_convertsOnDevice{false};
    CMTimeRange m_timeRange;
    std::shared_ptr<GPUImageSynchronizedWriter> m_synchronizedMovieWriter;

    std::atomic<bool> m_audioEncodingIsFinished{false};
    std::atomic<bool> m_videoEncodingIsFinished{false};
    std::atomic<bool> m_keepLooping{false};
    std::atomic<bool> m_isProcessing{false};
    std::atomic<bool> m_hasEnded{false};
    std::atomic<bool> m_endIsUnderWay{false}; ///< of the pass: its streams may end on two queues
    MoviePacing m_pacing;

    mutable std::mutex m_mutex; ///< for what follows
    std::shared_ptr<const AVURLAsset> m_asset;
    std::shared_ptr<AVAssetReader> m_reader;
    std::weak_ptr<GPUImageMovieDelegate> m_delegate;
    std::optional<Error> m_error;
    CMTime m_processingFrameTime = kCMTimeZero;
    CMTime m_processedAudioTime = kCMTimeZero;
    StopFlag m_stop;     ///< of the pass that was started last
    StopFlag m_passStop; ///< of the pass that is being read, which may be an earlier one that winds up
    std::shared_ptr<MoviePlayerLink> m_playerLink;

    FrameUpload m_upload;

    DispatchQueue m_readingQueue{"com.vx.GPUImage.movieReading"}; ///< last, so that it ends first
};

} // namespace lamina
