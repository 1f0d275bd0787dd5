#include "platform/media/AVCaptureSession.h"

#include "LogCapture.h"
#include "StandInCamera.h"
#include "TestPictures.h"
#include "platform/base/CMTime.h"
#include "platform/base/DispatchQueue.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/media/AVCaptureDevice.h"
#include "platform/media/AVCaptureOutput.h"
#include "platform/media/CMSampleBuffer.h"
#include "platform/media/PixelBufferImage.h"

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <future>
#include <gtest/gtest.h>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace lamina::test {

namespace {

/// A sound that is a frame: what reaches whom doesn't depend on it.
class StandInMicrophone : public StandInCamera {
public:
    AVTrackMediaType mediaType() const override { return AVTrackMediaType::Audio; }
};

class Listener : public AVCaptureSampleBufferDelegate {
public:
    void captureOutput(AVCaptureOutput&, const CMSampleBuffer& sample) override
    {
        const std::scoped_lock lock(m_mutex);
        m_samples.push_back(sample);
    }
    std::size_t count() const
    {
        const std::scoped_lock lock(m_mutex);
        return m_samples.size();
    }
    double lastTime() const
    {
        const std::scoped_lock lock(m_mutex);
        return m_samples.empty() ? -1 : m_samples.back().presentationTime.seconds();
    }

private:
    mutable std::mutex m_mutex;
    std::vector<CMSampleBuffer> m_samples;
};

CGImage gray(std::uint8_t level)
{
    return solidPicture(16, 12, {level, level, level, 255}, CGImageAlphaInfo::NoneSkipLast);
}

/// A session of a camera with three modes, that runs.
class CaptureSessionTest : public ::testing::Test {
protected:
    CaptureSessionTest()
    {
        m_camera->modes = {{{1920, 1080}, 5, 30}, {{1280, 720}, 5, 30}, {{640, 480}, 5, 60}};
        m_output->setSampleBufferDelegate(m_listener, nullptr);
        m_session->beginConfiguration();
        m_session->addInput(*m_camera->makeInput());
        m_session->addOutput(m_output);
        m_session->addOutput(m_still);
        m_session->setSessionPreset(kAVCaptureSessionPreset640x480);
        m_session->commitConfiguration();
        m_session->startRunning();
    }
    ~CaptureSessionTest() override { m_session->stopRunning(); }

    std::vector<IntSize> sizes() const
    {
        std::vector<IntSize> all;
        for (const AVCaptureRequest& request : m_camera->requests())
            all.push_back(request.size);
        return all;
    }
    /// The next still, or why there is none.
    std::future<Result<CMSampleBuffer>> takeStill() const
    {
        const auto answer = std::make_shared<std::promise<Result<CMSampleBuffer>>>();
        m_still->captureStillImageAsynchronously(
            [answer](Result<CMSampleBuffer> still) { answer->set_value(std::move(still)); });
        return answer->get_future();
    }
    /// Until the camera has been started so often.
    void waitForStart(std::size_t count) const
    {
        for (int i = 0; i < 5000 && m_camera->requests().size() < count; ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        ASSERT_EQ(m_camera->requests().size(), count);
    }

    std::shared_ptr<StandInCamera> m_camera = std::make_shared<StandInCamera>();
    std::shared_ptr<Listener> m_listener = std::make_shared<Listener>();
    std::shared_ptr<AVCaptureVideoDataOutput> m_output = std::make_shared<AVCaptureVideoDataOutput>();
    std::shared_ptr<AVCaptureStillImageOutput> m_still = std::make_shared<AVCaptureStillImageOutput>();
    std::shared_ptr<AVCaptureSession> m_session = std::make_shared<AVCaptureSession>();
};

TEST_F(CaptureSessionTest, TheCameraStartsAgainOnlyForWhatItWouldGiveOtherwise)
{
    m_session->setSessionPreset("AVCaptureSessionPreset660x480"); // the same mode
    m_session->startRunning();
    EXPECT_EQ(m_camera->requests().size(), 1u);
    m_session->beginConfiguration();
    m_session->setSessionPreset(kAVCaptureSessionPreset3840x2160);
    m_session->setFrameRate(15);
    EXPECT_EQ(m_camera->requests().size(), 1u);
    m_session->commitConfiguration();
    ASSERT_EQ(m_camera->requests().size(), 2u);
    EXPECT_EQ(m_camera->requests().back().frameRate, 15);
    EXPECT_EQ(m_camera->nearestFormat(m_camera->requests().back().size, 15)->size, (IntSize{1920, 1080}));
    EXPECT_EQ(m_camera->running(), 1);
    m_session->stopRunning();
    EXPECT_EQ(m_camera->running(), 0);
}

TEST_F(CaptureSessionTest, AStillIsTakenAtFullSizeOnceTheExposureHasSettled)
{
    m_still->setPixelFormat(CVPixelFormat::BiPlanar420FullRange);
    EXPECT_TRUE(m_camera->give(gray(50)));
    EXPECT_EQ(m_listener->count(), 1u);
    auto still = takeStill();
    waitForStart(2);
    EXPECT_EQ(sizes().back(), IntSize());
    EXPECT_EQ(m_camera->requests().back().pixelFormat, CVPixelFormat::BiPlanar420FullRange);
    EXPECT_EQ(takeStill().get().error().message(), "another still is being taken");
    // A slow rise looks alike from frame to frame.
    for (const int level : {20, 60, 90, 91, 92, 93, 94, 95, 96, 97, 98, 99, 101, 101, 101})
        m_camera->give(gray(static_cast<std::uint8_t>(level)), CMTime::make(level, 1000));
    EXPECT_EQ(still.wait_for(std::chrono::milliseconds(20)), std::future_status::timeout);
    m_camera->give(gray(101), CMTime::make(102, 1000));
    const auto taken = still.get();
    ASSERT_TRUE(taken);
    EXPECT_EQ(taken->presentationTime.value, 102);
    // It is back, and only now hears of frames again.
    EXPECT_EQ(sizes().back(), (IntSize{640, 480}));
    EXPECT_EQ(m_listener->count(), 1u);
    m_camera->give(gray(50));
    EXPECT_EQ(m_listener->count(), 2u);
    EXPECT_FALSE(m_still->isCapturingStillImage());

    // A camera that never settles isn't waited for.
    still = takeStill();
    waitForStart(4);
    for (int i = 0; i <= 20; ++i)
        m_camera->give(gray(i % 2 == 0 ? 0 : 255), CMTime::make(i, 10));
    EXPECT_TRUE(still.get());

    // The others hear of frames again where nobody wants the still any more.
    still = takeStill();
    waitForStart(6);
    m_session->removeOutput(m_still);
    EXPECT_FALSE(still.get());
    const std::size_t before = m_listener->count();
    m_camera->give(gray(50));
    EXPECT_EQ(m_listener->count(), before + 1);
}

TEST_F(CaptureSessionTest, ADeviceThatEndsIsToldOnceAndTriedAgain)
{
    std::vector<std::string> ends;
    m_session->setEndHandler([&](const Error& error) { ends.push_back(error.message()); });
    auto still = takeStill();
    waitForStart(2);
    m_camera->end({"stand-in", "the camera was unplugged"});
    EXPECT_EQ(still.get().error().message(), "stand-in: the camera was unplugged");
    EXPECT_EQ(ends, std::vector<std::string>{"stand-in: the camera was unplugged"});
    EXPECT_FALSE(m_session->isRunning());
    EXPECT_EQ(takeStill().get().error().message(), "the camera isn’t running");
    m_session->startRunning();
    EXPECT_TRUE(m_camera->give(gray(1)));
    EXPECT_EQ(m_listener->count(), 1u);
}

TEST_F(CaptureSessionTest, SoundGoesItsOwnWay)
{
    const auto microphone = std::make_shared<StandInMicrophone>();
    const auto sounds = std::make_shared<AVCaptureAudioDataOutput>();
    const auto heard = std::make_shared<Listener>();
    sounds->setSampleBufferDelegate(heard, nullptr);
    const auto input = *microphone->makeInput();
    ASSERT_TRUE(m_session->canAddInput(input));
    EXPECT_FALSE(m_session->canAddInput(*m_camera->makeInput()));
    m_session->addInput(input);
    m_session->addOutput(sounds);
    EXPECT_EQ(m_camera->requests().size(), 1u);
    auto still = takeStill();
    waitForStart(2);
    microphone->give(gray(1)); // goes on while a still is taken
    EXPECT_EQ(heard->count(), 1u);
    EXPECT_EQ(m_listener->count(), 0u);
    m_session->removeInput(input);
    EXPECT_EQ(microphone->running(), 0);
    EXPECT_TRUE(m_session->isRunning());
    m_session->stopRunning();
    EXPECT_FALSE(still.get());

    // Frames go on without it; it is tried again with the session, and closed with the camera.
    int ends = 0;
    m_session->setEndHandler([&](const Error&) { ++ends; });
    m_session->addInput(input);
    m_session->startRunning();
    {
        const LogCapture log;
        microphone->end({"stand-in", "the microphone was unplugged"});
        EXPECT_EQ(log.text(), "stand-in: the microphone was unplugged\n");
    }
    m_session->setFrameRate(15);
    EXPECT_TRUE(m_camera->give(gray(1)));
    EXPECT_EQ(m_listener->count(), 1u);
    EXPECT_EQ(microphone->requests().size(), 2u);
    m_session->stopRunning();
    m_session->startRunning();
    EXPECT_EQ(microphone->requests().size(), 3u);
    EXPECT_EQ(ends, 0);
    m_camera->end({"stand-in", "the camera was unplugged"});
    EXPECT_EQ(ends, 1);
    for (int i = 0; i < 5000 && microphone->running() > 0; ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    EXPECT_EQ(microphone->running(), 0);
}

TEST_F(CaptureSessionTest, WhatIsLateIsDroppedOrWaits)
{
    for (const bool discards : {true, false}) {
        const auto queue = std::make_shared<DispatchQueue>("frames");
        const auto listener = std::make_shared<Listener>();
        m_output->setSampleBufferDelegate(listener, queue);
        m_output->setAlwaysDiscardsLateVideoFrames(discards);
        std::promise<void> open;
        queue->async([opened = open.get_future().share()] { opened.wait(); });
        for (int i = 0; i < 5; ++i)
            m_camera->give(gray(9), CMTime::make(i, 1));
        open.set_value();
        queue->sync([] {});
        EXPECT_EQ(listener->count(), discards ? 1u : 5u);
        m_camera->give(gray(9), CMTime::make(9, 1));
        queue->sync([] {});
        EXPECT_EQ(listener->lastTime(), 9);
    }
}

TEST_F(CaptureSessionTest, PreviewsAreUpright)
{
    const CGImage frame = makePicture(4, 2, [](int x, int y) -> Rgba {
        return {static_cast<std::uint8_t>(40 * x), static_cast<std::uint8_t>(100 * y), 0, 255};
    });
    for (const int rotation : {0, 90, 180, 270}) {
        for (const bool isFront : {false, true}) {
            m_camera->turned = rotation;
            m_camera->place = isFront ? AVCaptureDevicePosition::Front : AVCaptureDevicePosition::Back;
            CGImage seen;
            const auto preview = std::make_shared<AVCaptureVideoPreviewOutput>(
                [&](const UIImage& picture) { seen = picture.cgImage(); });
            m_session->addOutput(preview);
            m_camera->give(frame);
            m_session->removeOutput(preview);
            const bool isTurned = rotation % 180 != 0;
            ASSERT_EQ(seen.size(), isTurned ? (IntSize{2, 4}) : (IntSize{4, 2}));
            // Where a pixel of the frame ends: turned clockwise, quarter by quarter, then mirrored.
            for (int y = 0; y < 2; ++y) {
                for (int x = 0; x < 4; ++x) {
                    IntSize size{4, 2};
                    int atX = x;
                    int atY = y;
                    for (int turn = 0; turn < rotation; turn += 90) {
                        const int before = atX;
                        atX = size.height - 1 - atY;
                        atY = before;
                        size = {size.height, size.width};
                    }
                    if (isFront)
                        atX = size.width - 1 - atX;
                    EXPECT_EQ(seen.row(atY)[4 * atX], frame.row(y)[4 * x]) << rotation << (isFront ? " front" : "");
                    EXPECT_EQ(seen.row(atY)[4 * atX + 1], frame.row(y)[4 * x + 1]) << rotation;
                }
            }
        }
    }
}

TEST(CaptureTypes, NearestModesAndPlaces)
{
    EXPECT_EQ(sizeOfCaptureSessionPreset("AVCaptureSessionPresetiFrame960x540"), (IntSize{960, 540}));
    EXPECT_EQ(sizeOfCaptureSessionPreset("AVCaptureSessionPreset0x540"), IntSize());
    EXPECT_EQ(sizeOfCaptureSessionPreset("Preset640x480 "), IntSize());
    const auto plain = std::make_shared<StandInCamera>();
    plain->modes = {{{2592, 1944}, 1, 15, "MJPG"},
                    {{1920, 1080}, 1, 5, "YUY2"},
                    {{1920, 1080}, 1, 30, "MJPG"},
                    {{1280, 720}, 1, 30, "YUY2"},
                    {{640, 480}, 1, 30, "YUY2"}};
    const auto nearest = [&](IntSize size, double rate) {
        const auto mode = *plain->nearestFormat(size, rate);
        return mode.encoding + " " + std::to_string(mode.size.width);
    };
    EXPECT_EQ(nearest({}, 0), "MJPG 2592");
    EXPECT_EQ(nearest({1920, 1080}, 0), "MJPG 1920");
    EXPECT_EQ(nearest({1920, 1080}, 5), "YUY2 1920");
    EXPECT_EQ(nearest({1280, 960}, 30), "MJPG 1920"); // lacks nothing
    EXPECT_EQ(nearest({352, 288}, 30), "YUY2 640");
    EXPECT_EQ(nearest({3840, 2160}, 30), "MJPG 2592");
    const auto front = std::make_shared<StandInCamera>();
    front->name = "front";
    front->place = AVCaptureDevicePosition::Front;
    const ServedCameras served({front, plain});
    EXPECT_EQ(AVCaptureDevice::defaultVideoDevice(), front);
    EXPECT_EQ(AVCaptureDevice::defaultVideoDevice(AVCaptureDevicePosition::Front), front);
    EXPECT_EQ(AVCaptureDevice::defaultVideoDevice(AVCaptureDevicePosition::Back), plain);
    EXPECT_EQ(AVCaptureDevice::deviceWithUniqueID("front"), front);
    EXPECT_EQ(AVCaptureDevice::defaultDevice(AVTrackMediaType::Audio), nullptr);
}

} // namespace

} // namespace lamina::test
