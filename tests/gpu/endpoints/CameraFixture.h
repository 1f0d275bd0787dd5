#pragma once

#include "GraphFixture.h"
#include "StandInCamera.h"
#include "TestClips.h"
#include "platform/base/CMTime.h"
#include "platform/base/DispatchSemaphore.h"

#include <chrono>
#include <functional>
#include <memory>
#include <thread>
#include <utility>

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

/// One camera is there, in its smaller mode to be seen and in its larger one for stills.
class CameraFixture : public GraphFixture {
protected:
    static constexpr const char* kPreset = "Preset64x48";
    static constexpr double kPatience = 10; // seconds, which no test needs

    CameraFixture() { m_device->modes = {{{128, 96}, 1, 60}, {{64, 48}, 1, 60}}; }
    ~CameraFixture() override { GPUImageContext::setUsesKernels(true); }

    /// A filter, and behind it who sees what it draws.
    void show(GPUImageOutput& camera)
    {
        camera.addTarget(m_filter);
        m_filter->addTarget(m_arrivals);
    }
    static bool comesTrue(const std::function<bool()>& condition)
    {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        while (!condition()) {
            if (std::chrono::steady_clock::now() > end)
                return false;
            std::this_thread::yield();
        }
        return true;
    }
    /// A live frame goes all the way.
    testing::AssertionResult givesFrames(int time = 0)
    {
        if (!m_device->give(quarters(64, 48), second(time)) || !m_arrivals->wait())
            return testing::AssertionFailure() << "no frame";
        onQueue([] {}); // it is not under way any more
        return testing::AssertionSuccess();
    }

    std::shared_ptr<StandInCamera> m_device = std::make_shared<StandInCamera>();
    ServedCameras m_served{{m_device}};
    std::shared_ptr<GPUImageFilter> m_filter = multiplying(1);
    std::shared_ptr<Arrivals> m_arrivals = std::make_shared<Arrivals>();
};

} // namespace lamina::test
