#pragma once

#include "platform/base/CMTime.h"
#include "platform/base/DispatchTimer.h"
#include "platform/base/Result.h"
#include "platform/media/AVPlayerItem.h"
#include "platform/media/CMSampleBuffer.h"

#include <functional>
#include <memory>
#include <optional>

namespace lamina {

/// Looks at each turn of the display whether a player item has a new frame. It rests while the item has nothing to
/// show, and starts when it is told that data are coming. Runs on the video processing queue; its end may be anywhere.
class MoviePlayerLink : public AVPlayerItemOutputPullDelegate, public std::enable_shared_from_this<MoviePlayerLink> {
public:
    /// Called on the queue.
    struct Handlers {
        std::function<void(const CMSampleBuffer& frame)> frame;
        std::function<void(const std::optional<Error>& error)> end; ///< all is shown, or reading has failed
    };
    MoviePlayerLink(std::shared_ptr<AVPlayerItem> item, CVPixelFormat format, Handlers handlers);
    ~MoviePlayerLink() override;

    /// Begins to read the item.
    void start();
    void outputMediaDataWillChange(AVPlayerItemVideoOutput& output) override;

private:
    void displayLinkCallback();
    void processPixelBufferAtTime(const CMTime& itemTime);

    std::shared_ptr<AVPlayerItem> m_item;
    std::shared_ptr<AVPlayerItemVideoOutput> m_output;
    Handlers m_handlers;
    DispatchTimer m_timer; ///< touched on the queue
};

} // namespace lamina
