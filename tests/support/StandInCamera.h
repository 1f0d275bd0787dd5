#pragma once

#include "platform/base/CMTime.h"
#include "platform/base/Result.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/media/AVCaptureDevice.h"
#include "platform/media/CMSampleBuffer.h"
#include "platform/media/CVPixelBuffer.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace lamina::test {

/// A camera that isn't one, or a microphone: it gives what a test tells it to, when the test does, on the test's
/// thread.
class StandInCamera : public AVCaptureDevice {
public:
    std::string name = "stand-in";
    AVTrackMediaType type = AVTrackMediaType::Video;
    AVCaptureDevicePosition place = AVCaptureDevicePosition::Unspecified;
    int turned = 0;
    std::vector<AVCaptureDeviceFormat> modes;
    bool opens = true;

    std::string uniqueID() const override { return name; }
    std::string localizedName() const override { return name; }
    AVTrackMediaType mediaType() const override { return type; }
    AVCaptureDevicePosition position() const override { return place; }
    int rotation() const override { return turned; }
    std::vector<AVCaptureDeviceFormat> formats() const override { return modes; }
    Result<std::shared_ptr<AVCaptureDeviceInput>> makeInput() override
    {
        if (!opens)
            return Error{name, "in use"};
        return std::shared_ptr<AVCaptureDeviceInput>(std::make_shared<Input>(shared()));
    }

    /// How many of its inputs run.
    int running() const
    {
        const std::scoped_lock lock(m_mutex);
        return m_running;
    }
    /// With what it was started, each time.
    std::vector<AVCaptureRequest> requests() const
    {
        const std::scoped_lock lock(m_mutex);
        return m_requests;
    }

    /// A frame as whoever has started it wants it: false while nobody has. Pictures are opaque RGBA.
    bool give(const CGImage& picture, const CMTime& time = CMTime::make(0, 1))
    {
        CMSampleBuffer sample;
        sample.presentationTime = time;
        sample.imageBuffer = pixelBuffer(picture, present().first.pixelFormat);
        return give(sample);
    }
    bool give(const CMSampleBuffer& sample)
    {
        const std::scoped_lock handling(m_handling);
        const auto handler = present().second.sample;
        if (handler)
            handler(sample);
        return handler != nullptr;
    }
    /// It gives nothing any more.
    void end(const Error& error)
    {
        const std::scoped_lock handling(m_handling);
        if (const auto ended = present().second.ended)
            ended(error);
    }

    /// The picture as a frame, tight: BGRA, or Y, Cb and Cr by BT.601 and the format's levels (chroma of the top left
    /// of each four).
    static std::shared_ptr<CVPixelBuffer> pixelBuffer(const CGImage& picture, CVPixelFormat format)
    {
        const auto buffer = CVPixelBuffer::make(picture.size(), format);
        const bool full = format == CVPixelFormat::BiPlanar420FullRange;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                const std::uint8_t* const in = picture.row(y) + std::size_t{4} * static_cast<std::size_t>(x);
                if (format == CVPixelFormat::BGRA) {
                    std::uint8_t* const out = at(*buffer, 0, x, y, 4);
                    out[0] = in[2], out[1] = in[1], out[2] = in[0], out[3] = 255;
                    continue;
                }
                const double luma = 0.299 * in[0] + 0.587 * in[1] + 0.114 * in[2];
                const auto level = [](double value) { return static_cast<std::uint8_t>(value + 0.5); };
                *at(*buffer, 0, x, y, 1) = full ? level(luma) : level(16 + luma * 219 / 255);
                if (x % 2 == 0 && y % 2 == 0) {
                    const double scale = full ? 1 : 224.0 / 255;
                    std::uint8_t* const chroma = at(*buffer, 1, x / 2, y / 2, 2);
                    chroma[0] = level(128 + scale * (in[2] - luma) / 1.772);
                    chroma[1] = level(128 + scale * (in[0] - luma) / 1.402);
                }
            }
        }
        return buffer;
    }

private:
    class Input : public AVCaptureDeviceInput {
    public:
        explicit Input(std::shared_ptr<StandInCamera> camera)
            : AVCaptureDeviceInput(camera)
            , m_camera(std::move(camera))
        {
        }
        void start(const AVCaptureRequest& request, AVCaptureHandlers handlers) override
        {
            const std::scoped_lock lock(m_camera->m_mutex);
            ++m_camera->m_running;
            m_camera->m_requests.push_back(request);
            m_camera->m_handlers = std::move(handlers);
        }
        void stop() override
        {
            const std::scoped_lock handling(m_camera->m_handling);
            const std::scoped_lock lock(m_camera->m_mutex);
            --m_camera->m_running;
            m_camera->m_handlers = {};
        }

    private:
        std::shared_ptr<StandInCamera> m_camera;
    };

    static std::uint8_t* at(const CVPixelBuffer& buffer, std::size_t plane, int x, int y, int bytes)
    {
        const CVPixelBuffer::Plane& in = buffer.planes()[plane];
        return in.bytes + static_cast<std::size_t>(y) * in.bytesPerRow + static_cast<std::size_t>(x * bytes);
    }
    std::shared_ptr<StandInCamera> shared() { return std::static_pointer_cast<StandInCamera>(shared_from_this()); }
    std::pair<AVCaptureRequest, AVCaptureHandlers> present() const
    {
        const std::scoped_lock lock(m_mutex);
        return {m_requests.empty() ? AVCaptureRequest() : m_requests.back(), m_handlers};
    }

    std::mutex m_handling; ///< while a handler is called, so that stopping waits for it
    mutable std::mutex m_mutex;
    int m_running = 0;
    std::vector<AVCaptureRequest> m_requests;
    AVCaptureHandlers m_handlers;
};

/// Serves these cameras and no others until it is destroyed.
class ServedCameras {
public:
    explicit ServedCameras(std::vector<std::shared_ptr<AVCaptureDevice>> cameras)
    {
        AVCaptureDevice::setSource({[] { return AVAuthorizationStatus::Authorized; },
                                    {},
                                    [cameras = std::move(cameras)](AVTrackMediaType type) {
                                        auto those = cameras;
                                        std::erase_if(those,
                                                      [&](const auto& each) { return each->mediaType() != type; });
                                        return those;
                                    }});
    }
    ~ServedCameras() { AVCaptureDevice::setSource({}); }
    ServedCameras(const ServedCameras&) = delete;
    ServedCameras& operator=(const ServedCameras&) = delete;
};

} // namespace lamina::test
