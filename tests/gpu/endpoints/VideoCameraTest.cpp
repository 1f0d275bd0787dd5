#include "CameraFixture.h"
#include "CommandRunner.h"
#include "CountingConsumer.h"
#include "GLCalls.h"
#include "LogCapture.h"
#include "TestPictures.h"
#include "gpu/endpoints/GPUImageMovieWriter.h"
#include "gpu/endpoints/GPUImageVideoCamera.h"
#include "platform/base/UIDevice.h"

#include <atomic>
#include <cstddef>
#include <string>
#include <vector>

namespace lamina::test {
namespace {

using testing::ElementsAre;

/// The picture turned counter-clockwise so often.
CGImage turned(const CGImage& picture, int quarterTurns)
{
    if (quarterTurns % 4 == 0)
        return picture;
    const int last = picture.width() - 1;
    return turned(
        makePicture(picture.height(), picture.width(), [&](int x, int y) { return pixelAt(picture, last - y, x); }),
        quarterTurns - 1);
}

/// By which way frames come into the graph.
struct Road {
    bool asYUV;
    bool usesKernels;

    bool turns() const { return asYUV || usesKernels; }
    void take(GPUImageVideoCamera& camera) const
    {
        GPUImageContext::setUsesKernels(usesKernels);
        camera.setCaptureAsYUV(asYUV);
    }
    CMSampleBuffer sample(const CGImage& picture, int time = 0) const
    {
        CMSampleBuffer sample;
        sample.presentationTime = second(time);
        sample.imageBuffer =
            StandInCamera::pixelBuffer(picture, asYUV ? CVPixelFormat::BiPlanar420VideoRange : CVPixelFormat::BGRA);
        return sample;
    }
};
constexpr Road kYUV{true, false};
constexpr Road kInMemory{false, true};
constexpr Road kTexture{false, false};
constexpr Road kRoads[] = {kYUV, kInMemory, kTexture};

using VideoCameraTest = CameraFixture;
using Camera = GPUImageVideoCamera;

TEST_F(VideoCameraTest, PicturesAreUprightHoweverSensorAndDeviceAreTurned)
{
    using enum UIDeviceOrientation;
    const UIDeviceOrientation leftwards[] = {Portrait, LandscapeLeft, PortraitUpsideDown, LandscapeRight};
    const std::vector<Rgba> upright = quarterColors(m_live);
    const std::vector<Rgba> mirrored{upright[1], upright[0], upright[3], upright[2]};
    const auto camera = shownCamera<Camera>();
    // Three places, four ways to build a sensor in, four to hold the device.
    for (int i = 0; i < 3 * 48; ++i) {
        const Road& road = kRoads[i / 48];
        const int held = i % 4;
        m_device->place = static_cast<AVCaptureDevicePosition>(i / 16 % 3);
        const bool isInFront = m_device->place == AVCaptureDevicePosition::Front;
        road.take(*camera);
        UIDevice::setOrientation(leftwards[held]);
        m_device->turned = 90 * ((i / 4 + held) % 4);
        camera->followDeviceOrientation();
        m_device->turned = 90 * (i / 4 % 4); // which a camera may tell with a frame only
        // What is turned to one side sees the scene turned to the other; in front, sides are swapped.
        camera->processVideoSampleBuffer(road.sample(turned(m_live, i / 4 % 4 + (isInFront ? held : 4 - held))));
        const CGImage got = m_arrivals->last().pixels;
        ASSERT_EQ(got.size(), m_live.size()) << i;
        for (std::size_t c = 0; c < 4; ++c)
            ASSERT_LE(difference(quarterColors(got)[c], (isInFront ? mirrored : upright)[c]), road.asYUV ? 4 : 0)
                << i << " quarter " << c;
        ASSERT_EQ(camera->outputFrameSize(), (CGSize{64, 48}));
    }
}

TEST_F(VideoCameraTest, OrientationsAreToldOrPaidForByTheTable)
{
    const std::string rows[] = {"021070", "057340", "021700", "056340"}; // back, mirrored, front, mirrored
    const auto camera = shownCamera<Camera>();
    const auto late = std::make_shared<CountingConsumer>();
    for (const Road& road : kRoads) {
        road.take(*camera);
        for (int i = 0; i < 24; ++i) {
            const int row = i / 6;
            m_device->place = row < 2 ? AVCaptureDevicePosition::Back : AVCaptureDevicePosition::Front;
            camera->setHorizontallyMirrorRearFacingCamera(row == 1);
            camera->setHorizontallyMirrorFrontFacingCamera(row == 3);
            camera->setOutputImageOrientation(static_cast<UIInterfaceOrientation>(i % 6));
            const int wanted = rows[row].at(static_cast<std::size_t>(i % 6)) - '0';
            EXPECT_EQ(camera->internalRotation(), road.turns() ? wanted : 0) << i;
            camera->addTarget(late);
            EXPECT_EQ(late->toldRotation(), road.turns() ? 0 : wanted) << i;
            camera->removeTarget(late);
        }
    }
}

TEST_F(VideoCameraTest, FramesThatComeWhileOneIsUnderWayAreDropped)
{
    struct Delegate : GPUImageVideoCameraDelegate {
        std::vector<double> heard;
        void willOutputSampleBuffer(const CMSampleBuffer& sample) override
        {
            heard.push_back(sample.presentationTime.seconds());
        }
    };
    const auto delegate = std::make_shared<Delegate>();
    const auto camera = shownCamera<Camera>();
    camera->setDelegate(delegate);
    const auto monochrome = std::make_shared<CountingConsumer>();
    monochrome->setWantsMonochrome(true);
    camera->removeTarget(m_filter);
    camera->addTarget(monochrome);
    camera->addTarget(m_filter);
    camera->startCameraCapture();
    DispatchSemaphore isUnderWay;
    DispatchSemaphore goOn;
    m_arrivals->atFrame = [&] {
        isUnderWay.signal();
        EXPECT_TRUE(goOn.wait(10));
    };
    const auto push = [&](int time) { // without the queue on which frames arrive
        camera->captureOutput(*camera->captureSession()->outputs().front(), kInMemory.sample(m_live, time));
    };
    m_device->give(m_live, second(1));
    ASSERT_TRUE(isUnderWay.wait(10));
    push(2);
    push(3);
    goOn.signal();
    onQueue([&] { m_arrivals->atFrame = {}; });
    camera->pauseCameraCapture();
    push(4);
    camera->processVideoSampleBuffer(kInMemory.sample(m_live, 5));
    onQueue([] {});
    camera->resumeCameraCapture();
    monochrome->setEnabled(false);
    push(6);
    onQueue([] {});
    camera->stopCameraCapture();
    push(7);
    onQueue([] {});
    EXPECT_THAT(delegate->heard, ElementsAre(1, 4, 6)) << "one that comes while paused goes no further";
    EXPECT_EQ(m_arrivals->frames().size(), 2U);
    EXPECT_EQ(m_arrivals->last().time, second(6));
    EXPECT_EQ(monochrome->frames().size(), 1U);
    EXPECT_FALSE(monochrome->toldMonochrome()) << "all channels are sent";
    EXPECT_EQ(m_device->running(), 0);
}

TEST_F(VideoCameraTest, MakesNoObjectOfTheDeviceOnceWarmAndCountsFromTheSixthFrame)
{
    const auto camera = shownCamera<Camera>();
    camera->setOutputImageOrientation(UIInterfaceOrientation::Portrait);
    const LogCapture log;
    camera->setRunBenchmark(true);
    for (const Road& road : kRoads) {
        road.take(*camera);
        camera->resetBenchmarkAverage();
        const CMSampleBuffer sample = road.sample(m_live);
        const auto push = [&](int count) {
            for (int i = 0; i < count; ++i)
                camera->processVideoSampleBuffer(sample);
        };
        push(5);
        EXPECT_FALSE(camera->averageFrameDurationDuringCapture());
        const GLCalls warm = glCallsSoFar();
        push(100);
        EXPECT_EQ((glCallsSoFar() - warm).objectsMade(), 0);
        EXPECT_GT(camera->averageFrameDurationDuringCapture().value_or(0), 0);
    }
}

TEST_F(VideoCameraTest, GoesToTheOtherCameraOrStays)
{
    m_device->place = AVCaptureDevicePosition::Back;
    const auto front = std::make_shared<StandInCamera>();
    front->name = "front";
    front->place = AVCaptureDevicePosition::Front;
    front->turned = 90;
    front->opens = false;
    const auto camera = shownCamera<Camera>();
    camera->followDeviceOrientation();
    camera->setFrameRate(24);
    camera->startCameraCapture();
    EXPECT_EQ(m_device->requests().back().size, (IntSize{64, 48}));
    EXPECT_EQ(m_device->requests().back().frameRate, 24);
    EXPECT_TRUE(camera->rotateCamera().ok()) << "there is no other";
    const ServedCameras both({m_device, front});
    EXPECT_FALSE(camera->rotateCamera().ok());
    const auto closed = Camera::make(kPreset, AVCaptureDevicePosition::Front);
    EXPECT_EQ(closed ? "" : closed.error().message(), "front: in use");
    EXPECT_TRUE(givesFrames());
    front->opens = true;
    DispatchSemaphore ended;
    camera->setEndHandler([&](const Error&) { ended.signal(); });
    ASSERT_TRUE(camera->rotateCamera().ok());
    front->end({"front", "in use after all"});
    ASSERT_TRUE(ended.wait(10));
    EXPECT_EQ(front->running(), 0);
    EXPECT_TRUE(givesFrames());
    ASSERT_TRUE(camera->rotateCamera().ok());
    EXPECT_EQ(camera->cameraPosition(), AVCaptureDevicePosition::Front);
    EXPECT_EQ(camera->outputImageOrientation(), UIInterfaceOrientation::Portrait) << "followed again";
    EXPECT_EQ(m_device->running(), 0);
    EXPECT_TRUE(front->give(m_live) && m_arrivals->wait());
    ASSERT_TRUE(camera->rotateCamera().ok());
    EXPECT_TRUE(givesFrames());
    camera->removeInputsAndOutputs();
    EXPECT_FALSE(m_device->give(m_live));
    const ServedCameras none({});
    EXPECT_FALSE(Camera::make().ok() || Camera::isFrontFacingCameraPresent());
}

TEST_F(VideoCameraTest, MayBeDroppedWhereverItCalls)
{
    for (const bool unplugged : {false, true}) {
        auto camera = shownCamera<Camera>();
        const std::weak_ptr<Camera> weak = camera;
        DispatchSemaphore dropped;
        const auto drop = [&] {
            camera.reset();
            dropped.signal();
        };
        m_arrivals->atFrame = drop;
        camera->setEndHandler([&](const Error& error) {
            EXPECT_EQ(error.cause, "unplugged");
            drop();
        });
        camera->startCameraCapture();
        if (unplugged)
            m_device->end({{}, "unplugged"});
        else
            m_device->give(m_live);
        ASSERT_TRUE(dropped.wait(10));
        EXPECT_TRUE(comesTrue([&] { return weak.expired() && m_device->running() == 0; }));
    }
}

TEST_F(VideoCameraTest, TheMicrophoneIsHeardInAMovieWhereThereIsOne)
{
    const auto microphone = std::make_shared<StandInCamera>();
    microphone->type = AVTrackMediaType::Audio;
    CMSampleBuffer sound;
    sound.audio = std::make_shared<AudioBuffer>(AudioBuffer{8000, 1, std::vector<float>(8000, 0.5F)});
    for (const bool isThere : {false, true}) {
        const ServedCameras served({m_device, isThere ? microphone : m_device});
        const TemporaryFolder folder;
        const auto camera = shownCamera<Camera>();
        const auto writer = std::make_shared<GPUImageMovieWriter>(
            folder.path("clip.mp4"), CGSize{64, 48}, kAVFileTypeMPEG4,
            GPUImageMovieWriterSettings{.frameRate = 30, .encodingLiveVideo = false});
        m_filter->addTarget(writer);
        camera->setAudioEncodingTarget(writer);
        EXPECT_EQ(camera->audioEncodingTarget() != nullptr, isThere);
        EXPECT_FALSE(camera->addAudioInputsAndOutputs());
        std::atomic<int> heard = 0;
        writer->setAudioProcessingCallback([&](AudioBuffer&, int) { ++heard; });
        writer->startRecording();
        camera->startCameraCapture();
        for (int i = 0; i < 3; ++i) {
            ASSERT_TRUE(givesFrames(i));
            sound.presentationTime = second(i + 1);
            EXPECT_EQ(microphone->give(sound), isThere);
        }
        // With the second piece the first is written.
        EXPECT_TRUE(!isThere || comesTrue([&] { return heard >= 2 && writer->duration().seconds() >= 2; }));
        camera->setAudioEncodingTarget(nullptr);
        EXPECT_EQ(microphone->running(), 0);
        DispatchSemaphore finished;
        writer->finishRecordingWithCompletionHandler([&] { finished.signal(); });
        ASSERT_TRUE(finished.wait(30));
        EXPECT_EQ(probe(folder.path("clip.mp4"))["streams"].size(), isThere ? 2U : 1U);
        m_filter->removeTarget(writer);
    }
}

} // namespace
} // namespace lamina::test
