#pragma once

#include "platform/base/CMTime.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/Result.h"
#include "platform/media/AVAsset.h"
#include "platform/media/AVAssetReader.h"
#include "platform/media/CMSampleBuffer.h"
#include "platform/media/CVPixelBuffer.h"

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

namespace lamina {

/// Reads a movie's frames ahead of who shows them, on a thread of its own, and starts anew wherever it is told. From
/// any thread.
class PlayerFrames {
public:
    /// `arrived`: called on the reading thread when the first frame after a start is there, or none comes.
    PlayerFrames(std::shared_ptr<const AVURLAsset> asset, CVPixelFormat format, std::function<void()> arrived);
    ~PlayerFrames();
    PlayerFrames(const PlayerFrames&) = delete;
    PlayerFrames& operator=(const PlayerFrames&) = delete;

    /// Forgets what is there and reads from that time on.
    void readFrom(const CMTime& time);
    bool has(const CMTime& time) const;
    /// The latest frame that is not later than `time`, and nothing before it any more.
    std::optional<CMSampleBuffer> take(const CMTime& time);
    bool isDrained() const;
    std::optional<Error> error() const;

private:
    void read(std::uint64_t start, const CMTime& time);
    bool put(std::uint64_t start, CMSampleBuffer frame);
    void finish(std::uint64_t start, std::optional<Error> error);
    std::uint64_t beginAnew();

    const std::shared_ptr<const AVURLAsset> m_asset;
    const CVPixelFormat m_format;
    const std::function<void()> m_arrived;
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    std::uint64_t m_start = 0; ///< running number; what an earlier start reads is dropped
    std::deque<CMSampleBuffer> m_frames;
    std::shared_ptr<AVAssetReader> m_reader;
    bool m_isFinished = false;
    std::optional<Error> m_error;
    DispatchQueue m_queue{"player frames"}; ///< last, so that it ends first
};

} // namespace lamina
