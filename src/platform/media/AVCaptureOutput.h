#pragma once

#include "platform/base/DispatchQueue.h"
#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/media/AVAssetReader.h"
#include "platform/media/AVCaptureTypes.h"
#include "platform/media/CMSampleBuffer.h"
#include "platform/media/CVPixelBuffer.h"

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace lamina {

class AVCaptureDevice;
class AVCaptureOutput;
class AVCaptureSession;
class ExposureSettling;

/// Hears of what an output brings, on the output's queue.
class AVCaptureSampleBufferDelegate {
public:
    virtual ~AVCaptureSampleBufferDelegate() = default;
    /// A frame or a stretch of sound; `sample` may be kept.
    virtual void captureOutput(AVCaptureOutput& output, const CMSampleBuffer& sample) = 0;
};

/// Where a session's frames or sound go. Made by `std::make_shared`; belongs to one session at most. From any thread.
class AVCaptureOutput : public std::enable_shared_from_this<AVCaptureOutput> {
public:
    AVCaptureOutput() = default;
    virtual ~AVCaptureOutput() = default;
    AVCaptureOutput(const AVCaptureOutput&) = delete;
    AVCaptureOutput& operator=(const AVCaptureOutput&) = delete;

    /// What it takes.
    virtual AVTrackMediaType mediaType() const { return AVTrackMediaType::Video; }
    /// What frames must be; none: any will do.
    virtual std::optional<CVPixelFormat> pixelFormat() const { return std::nullopt; }
    /// Null while it belongs to none.
    std::shared_ptr<AVCaptureSession> session() const;

protected:
    friend class AVCaptureSession;
    /// The next piece, on the device's thread.
    virtual void take(const CMSampleBuffer& sample, const AVCaptureDevice& device) = 0;
    /// Nothing comes any more: the device has ended, or the output was removed.
    virtual void ended(const Error&) {}

private:
    mutable std::mutex m_sessionMutex;
    std::weak_ptr<AVCaptureSession> m_session;
};

/// Hands pieces to a delegate, on a queue or, without one, on the device's thread.
class AVCaptureDataOutput : public AVCaptureOutput {
public:
    /// The delegate is not held. A queue is kept; pieces that wait on it come even after the delegate was taken away,
    /// unless it is gone.
    void setSampleBufferDelegate(std::weak_ptr<AVCaptureSampleBufferDelegate> delegate,
                                 std::shared_ptr<DispatchQueue> queue);
    /// Whether a piece that comes while another waits on the queue is dropped. Default true.
    bool alwaysDiscardsLateVideoFrames() const { return m_discardsLate; }
    void setAlwaysDiscardsLateVideoFrames(bool discards) { m_discardsLate = discards; }

protected:
    void take(const CMSampleBuffer& sample, const AVCaptureDevice& device) override;

private:
    std::mutex m_mutex; ///< for what follows
    std::weak_ptr<AVCaptureSampleBufferDelegate> m_delegate;
    std::shared_ptr<DispatchQueue> m_queue;
    std::atomic<bool> m_discardsLate{true};
    std::shared_ptr<std::atomic<int>> m_waiting = std::make_shared<std::atomic<int>>(0);
};

/// The camera's frames.
class AVCaptureVideoDataOutput : public AVCaptureDataOutput {
public:
    /// Those that can be asked for: all that have planes, since frames are converted.
    static const std::vector<CVPixelFormat>& availableVideoPixelFormats();
    std::optional<CVPixelFormat> pixelFormat() const override { return m_pixelFormat; }
    /// Default BGRA. To be set before it is added to a session, or within a configuration.
    void setPixelFormat(CVPixelFormat format) { m_pixelFormat = format; }

private:
    std::atomic<CVPixelFormat> m_pixelFormat{CVPixelFormat::BGRA};
};

/// The microphone's sound.
class AVCaptureAudioDataOutput : public AVCaptureDataOutput {
public:
    AVTrackMediaType mediaType() const override { return AVTrackMediaType::Audio; }
};

/// Takes stills: the camera goes to its largest size, gives a frame as soon as its exposure has settled there, and
/// goes back; the session's other outputs get nothing meanwhile.
class AVCaptureStillImageOutput : public AVCaptureOutput {
public:
    AVCaptureStillImageOutput();
    ~AVCaptureStillImageOutput() override;

    std::optional<CVPixelFormat> pixelFormat() const override { return m_pixelFormat; }
    void setPixelFormat(CVPixelFormat format) { m_pixelFormat = format; }

    bool isCapturingStillImage() const;
    /// The still, once; or why there is none: the session doesn't run, a still is under way, the camera has ended, or
    /// it gives nothing within ten seconds. On a thread of its own, or this one.
    using Completion = std::function<void(Result<CMSampleBuffer>)>;
    void captureStillImageAsynchronously(Completion completion);

protected:
    void take(const CMSampleBuffer& sample, const AVCaptureDevice& device) override;
    void ended(const Error& error) override;

private:
    void finish(int number, Result<CMSampleBuffer> still);

    std::atomic<CVPixelFormat> m_pixelFormat{CVPixelFormat::BGRA};
    mutable std::mutex m_mutex; ///< for what follows
    Completion m_completion;    ///< empty: no still is under way
    int m_still = 0;            ///< tells them apart
    std::unique_ptr<ExposureSettling> m_settling;
    DispatchQueue m_queue{"still image"}; ///< last, so that it ends first
};

/// What the camera sees, as upright pictures for a small view.
class AVCaptureVideoPreviewOutput : public AVCaptureOutput {
public:
    /// Hears of each picture on the device's thread, as it is seen while the device is held upright; a front camera's
    /// is mirrored.
    using PictureHandler = std::function<void(const UIImage&)>;
    explicit AVCaptureVideoPreviewOutput(PictureHandler handler);

protected:
    void take(const CMSampleBuffer& sample, const AVCaptureDevice& device) override;

private:
    PictureHandler m_handler;
};

} // namespace lamina
