#pragma once

#include "StandInCamera.h"
#include "platform/image/pixels/CGImage.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <thread>
#include <utility>

namespace lamina::test {

/// Gives a stand-in camera a picture over and over, on a thread of its own, for as long as this lives.
class FedCamera {
public:
    FedCamera(std::shared_ptr<StandInCamera> camera, CGImage picture)
        : m_feeding([this, camera = std::move(camera), picture = std::move(picture)] {
            for (int frame = 0; !m_ends; ++frame) {
                camera->give(picture, CMTime::make(frame, 30));
                std::this_thread::sleep_for(std::chrono::milliseconds(20));
            }
        })
    {
    }
    ~FedCamera()
    {
        m_ends = true;
        m_feeding.join();
    }
    FedCamera(const FedCamera&) = delete;
    FedCamera& operator=(const FedCamera&) = delete;

private:
    std::atomic<bool> m_ends{false};
    std::thread m_feeding;
};

} // namespace lamina::test
