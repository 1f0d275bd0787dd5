#pragma once

#include "platform/base/Clock.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/media/AVCaptureDevice.h"
#include "platform/media/CMSampleBuffer.h"
#include "platform/media/CVPixelBuffer.h"
#include "support/Measuring.h"

#include <atomic>
#include <chrono>
#include <cstring>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace lamina::bench {

/// A frame of noise.
inline std::shared_ptr<CVPixelBuffer> noiseFrame(IntSize size, CVPixelFormat format)
{
    const CGImage noise = noisePicture(size.width, size.height, CGImageAlphaInfo::NoneSkipLast);
    auto frame = CVPixelBuffer::make(size, format);
    for (const CVPixelBuffer::Plane& plane : frame->planes())
        std::memcpy(plane.bytes, noise.bytes().data(), plane.bytesPerRow * static_cast<std::size_t>(plane.size.height));
    return frame;
}

/// A camera in the process: gives frames that were made before, at their times, on a thread of its own.
class BenchCamera : public AVCaptureDevice {
public:
    BenchCamera(IntSize size, double framesPerSecond)
        : m_size(size)
        , m_framesPerSecond(framesPerSecond)
    {
    }

    std::string uniqueID() const override { return "bench"; }
    std::string localizedName() const override { return "bench"; }
    std::vector<AVCaptureDeviceFormat> formats() const override { return {{m_size, 1, m_framesPerSecond, {}}}; }
    Result<std::shared_ptr<AVCaptureDeviceInput>> makeInput() override
    {
        return std::shared_ptr<AVCaptureDeviceInput>(
            std::make_shared<Input>(std::static_pointer_cast<BenchCamera>(shared_from_this())));
    }

    /// How many it has given.
    int given() const { return m_given; }

private:
    class Input : public AVCaptureDeviceInput {
    public:
        explicit Input(std::shared_ptr<BenchCamera> camera)
            : AVCaptureDeviceInput(camera)
            , m_camera(*camera)
        {
        }
        void start(const AVCaptureRequest& request, AVCaptureHandlers handlers) override
        {
            m_stops = false;
            m_thread = std::thread([this, frame = noiseFrame(m_camera.m_size, request.pixelFormat),
                                    handlers = std::move(handlers)] { serve(frame, handlers); });
        }
        void stop() override
        {
            m_stops = true;
            m_thread.join();
        }

    private:
        void serve(const std::shared_ptr<CVPixelBuffer>& frame, const AVCaptureHandlers& handlers)
        {
            auto next = std::chrono::steady_clock::now();
            while (!m_stops) {
                CMSampleBuffer sample;
                sample.presentationTime = CMTime::makeWithSeconds(SteadyClock::instance()->now(), 1'000'000);
                sample.imageBuffer = frame;
                ++m_camera.m_given;
                handlers.sample(sample);
                next += std::chrono::nanoseconds(static_cast<long>(1e9 / m_camera.m_framesPerSecond));
                std::this_thread::sleep_until(next);
            }
        }

        BenchCamera& m_camera;
        std::atomic<bool> m_stops{false};
        std::thread m_thread;
    };

    IntSize m_size;
    double m_framesPerSecond;
    std::atomic<int> m_given{0};
};

} // namespace lamina::bench
