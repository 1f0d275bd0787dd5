#pragma once

#include "GraphFixture.h"
#include "StandInCamera.h"
#include "TestClips.h"
#include "platform/base/CMTime.h"
#include "platform/base/DispatchSemaphore.h"
#include "platform/base/UIDevice.h"
#include "platform/image/pixels/CGImage.h"

#include <chrono>
#include <functional>
#include <memory>
#include <thread>

namespace lamina::test {

/// The end of a graph that tells of each frame, on the video processing queue.
class Arrivals : public CountingConsumer {
public:
    std::function<void()> atFrame;

    void newFrameReadyAtTime(const CMTime& frameTime, int textureIndex) override
    {
        CountingConsumer::newFrameReadyAtTime(frameTime, textureIndex);
        if (atFrame)
            atFrame();
        m_arrived.signal();
    }
    /// For one more.
    bool wait() { return m_arrived.wait(10); }

private:
    DispatchSemaphore m_arrived;
};

inline bool comesTrue(const std::function<bool()>& condition)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!condition() && std::chrono::steady_clock::now() < end)
        std::this_thread::yield();
    return condition();
}

/// One camera is there, in its smaller mode to be seen and in its larger one for stills.
class CameraFixture : public GraphFixture {
protected:
    static constexpr const char* kPreset = "Preset64x48";

    CameraFixture() { m_device->modes = {{{128, 96}, 1, 60}, {{64, 48}, 1, 60}}; }
    ~CameraFixture() override
    {
        GPUImageContext::setUsesKernels(true);
        UIDevice::setOrientation(UIDeviceOrientation::Unknown);
    }

    /// A camera with a filter, and behind it who sees what that draws.
    template <class Camera>
    std::shared_ptr<Camera> shownCamera()
    {
        const auto made = Camera::make(kPreset);
        if (!made) {
            ADD_FAILURE() << made.error().message();
            return nullptr;
        }
        (*made)->addTarget(m_filter);
        m_filter->addTarget(m_arrivals);
        return *made;
    }
    /// A live frame goes all the way.
    bool givesFrames(int time = 0)
    {
        const bool arrived = m_device->give(m_live, second(time)) && m_arrivals->wait();
        onQueue([] {}); // it is not under way any more
        return arrived;
    }

    const CGImage m_live = quarters(64, 48);
    std::shared_ptr<StandInCamera> m_device = std::make_shared<StandInCamera>();
    ServedCameras m_served{{m_device}};
    std::shared_ptr<GPUImageFilter> m_filter = multiplying(1);
    std::shared_ptr<Arrivals> m_arrivals = std::make_shared<Arrivals>();
};

} // namespace lamina::test
