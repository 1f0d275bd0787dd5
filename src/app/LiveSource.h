#pragma once

#include "app/LiveFrames.h"
#include "gpu/core/GPUImageOutput.h"
#include "platform/base/Result.h"

#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace lamina {

/// Where the live screen's frames come from. Stopped at first. Held by std::shared_ptr; main thread.
class LiveSource : public std::enable_shared_from_this<LiveSource> {
public:
    explicit LiveSource(std::shared_ptr<LiveFrames> frames)
        : m_frames(std::move(frames))
    {
    }
    virtual ~LiveSource() = default;
    LiveSource(const LiveSource&) = delete;
    LiveSource& operator=(const LiveSource&) = delete;

    /// Frames come from now on; what stands in the way is told here, or later by the end handler.
    virtual Outcome start() = 0;
    /// Afterwards none come.
    virtual void stop() = 0;
    /// Between the two.
    virtual bool isRunning() const = 0;

    /// Hears that it has ended by itself and why, on the main thread, after it has stopped.
    using EndHandler = std::function<void(const Error&)>;
    void setEndHandler(EndHandler handler) { m_endHandler = std::move(handler); }

    /// Whether what isn't taken in time is lost. Otherwise it waits.
    virtual bool isLive() const = 0;
    /// Whether it has sound to be recorded.
    virtual bool hasSound() const = 0;
    /// While there is one its sound goes there, and the times of its frames count up; null: nobody.
    virtual void setRecorder(std::shared_ptr<GPUImageAudioEncodingTarget> recorder) = 0;

protected:
    LiveFrames& frames() const { return *m_frames; }
    const std::shared_ptr<LiveFrames>& sharedFrames() const { return m_frames; }
    void tellEnd(const Error& error)
    {
        if (m_endHandler)
            m_endHandler(error);
    }

private:
    std::shared_ptr<LiveFrames> m_frames;
    EndHandler m_endHandler;
};

} // namespace lamina
