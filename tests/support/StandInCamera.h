#pragma once

#include "platform/base/Result.h"
#include "platform/media/AVCaptureDevice.h"

#include <memory>
#include <string>
#include <utility>

namespace lamina::test {

/// A camera that isn't one, as a device and as what is opened of it.
class StandInCamera : public AVCaptureDevice,
                      public AVCaptureDeviceInput,
                      public std::enable_shared_from_this<StandInCamera> {
public:
    bool opens = true;
    int running = 0;
    FrameHandler frames;

    std::string localizedName() const override { return "stand-in"; }
    Result<std::shared_ptr<AVCaptureDeviceInput>> makeInput() override
    {
        if (!opens)
            return Error{localizedName(), "in use"};
        return std::shared_ptr<AVCaptureDeviceInput>(shared_from_this());
    }
    void start(FrameHandler handler) override
    {
        ++running;
        frames = std::move(handler);
    }
    void stop() override { --running; }
};

} // namespace lamina::test
