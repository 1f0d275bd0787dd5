#pragma once

#include "platform/base/CMTime.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/Result.h"
#include "platform/media/AVAsset.h"
#include "platform/media/CVPixelBuffer.h"

#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace lamina {

class AVPlayerItemVideoOutput;
class PlayerFrames;

/// Hears that a player item's output is about to have frames: the item plays, or is read from another place. Called on
/// the queue that was given with it; not held.
class AVPlayerItemOutputPullDelegate {
public:
    virtual ~AVPlayerItemOutputPullDelegate() = default;
    /// Frames are there, or the item goes on.
    virtual void outputMediaDataWillChange(AVPlayerItemVideoOutput& output) = 0;
};

/// A movie being played: a clock, and outputs that give the frame of the moment. It stands still at first. Hosts' times
/// are seconds of the shared clock. Sound isn't played. From any thread.
class AVPlayerItem {
public:
    explicit AVPlayerItem(std::shared_ptr<const AVURLAsset> asset);
    AVPlayerItem(const AVPlayerItem&) = delete;
    AVPlayerItem& operator=(const AVPlayerItem&) = delete;

    const std::shared_ptr<const AVURLAsset>& asset() const { return m_asset; }
    CMTime duration() const { return m_asset->duration(); }

    /// At the movie's own pace.
    void play() { setRate(1); }
    /// Stands still.
    void pause() { setRate(0); }
    /// Movie seconds a second; 0 stands still. Negative rates and what is no number count as 0.
    void setRate(double rate);
    double rate() const;
    /// Outputs give the frame of that moment next, whatever the rate.
    void seekToTime(const CMTime& time);
    /// Between zero and the duration.
    CMTime currentTime() const;
    /// Whether the clock has come to the duration.
    bool hasPlayedToEnd() const;

    /// Begins to read for the output, from the current time on.
    void addOutput(const std::shared_ptr<AVPlayerItemVideoOutput>& output);
    /// Ends reading for it.
    void removeOutput(const std::shared_ptr<AVPlayerItemVideoOutput>& output);

private:
    friend class AVPlayerItemVideoOutput;
    /// Shared with the outputs, which may outlive the item.
    class ItemClock {
    public:
        void setRate(double rate);
        double rate() const;
        void setTime(double itemTime);
        /// The item's time at a host's; runs on beyond the end.
        double itemTime(double hostTime) const;

    private:
        void anchorAt(double itemTime);
        double timeAt(double hostTime) const;
        mutable std::mutex m_mutex;
        double m_rate = 0;
        double m_itemTime = 0; ///< when the host's was `m_hostTime`
        double m_hostTime = 0;
    };
    std::vector<std::shared_ptr<AVPlayerItemVideoOutput>> outputs() const;

    std::shared_ptr<const AVURLAsset> m_asset;
    std::shared_ptr<ItemClock> m_clock = std::make_shared<ItemClock>();
    mutable std::mutex m_mutex;
    std::vector<std::shared_ptr<AVPlayerItemVideoOutput>> m_outputs;
};

/// Gives the frames of one player item, in one pixel format, to who asks at his own times. Reads ahead by itself; no
/// question waits. Held by a std::shared_ptr. From any thread.
class AVPlayerItemVideoOutput : public std::enable_shared_from_this<AVPlayerItemVideoOutput> {
public:
    explicit AVPlayerItemVideoOutput(CVPixelFormat format);
    ~AVPlayerItemVideoOutput();
    AVPlayerItemVideoOutput(const AVPlayerItemVideoOutput&) = delete;
    AVPlayerItemVideoOutput& operator=(const AVPlayerItemVideoOutput&) = delete;

    /// The queue must outlive the output.
    void setDelegate(const std::weak_ptr<AVPlayerItemOutputPullDelegate>& delegate, DispatchQueue& queue);
    /// From now on the delegate hears of changes, as soon as there is a frame: reading ahead makes any interval good.
    void requestNotificationOfMediaDataChangeWithAdvanceInterval(double seconds);

    /// The item's time at a moment of the shared clock; invalid without an item.
    CMTime itemTimeForHostTime(double hostTime) const;
    /// Whether a frame that was not copied yet is to be seen at that time.
    bool hasNewPixelBufferForItemTime(const CMTime& itemTime) const;
    /// That frame; those before it are passed over. Null where there is none. `displayTime`: the frame's own time.
    std::shared_ptr<CVPixelBuffer> copyPixelBufferForItemTime(const CMTime& itemTime, CMTime* displayTime = nullptr);
    /// Whether all frames were copied or passed over, and no more come.
    bool isDrained() const;
    /// What reading failed with.
    std::optional<Error> error() const;

private:
    friend class AVPlayerItem;
    void attach(const AVPlayerItem& item);
    void readFrom(const CMTime& itemTime);
    void detach();
    void notify();
    std::shared_ptr<PlayerFrames> frames() const;

    const CVPixelFormat m_format;
    mutable std::mutex m_mutex;
    std::shared_ptr<AVPlayerItem::ItemClock> m_clock;
    std::weak_ptr<AVPlayerItemOutputPullDelegate> m_delegate;
    DispatchQueue* m_delegateQueue = nullptr;
    bool m_wantsNotification = false;
    std::shared_ptr<PlayerFrames> m_frames;
};

} // namespace lamina
