#include "CameraFixture.h"
#include "CommandRunner.h"
#include "CountingConsumer.h"
#include "GLCalls.h"
#include "LogCapture.h"
#include "TestPictures.h"
#include "gpu/endpoints/GPUImageMovieWriter.h"
#include "gpu/endpoints/GPUImageVideoCamera.h"
#include "platform/base/UIDevice.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/media/AVAssetReader.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace lamina::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

/// The picture turned clockwise so often.
CGImage turned(CGImage picture, int quarterTurns)
{
    for (; quarterTurns % 4 != 0; ++quarterTurns) {
        const CGImage before = picture;
        picture = makePicture(before.height(), before.width(), // counter-clockwise
                              [&](int x, int y) { return pixelAt(before, before.width() - 1 - y, x); });
    }
    return picture;
}

CGImage mirrored(const CGImage& picture)
{
    return makePicture(picture.width(), picture.height(),
                       [&](int x, int y) { return pixelAt(picture, picture.width() - 1 - x, y); });
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
constexpr Road kRoads[] = {{true, false}, {false, true}, {false, false}};

class VideoCameraTest : public CameraFixture, public GPUImageVideoCameraDelegate {
protected:
    ~VideoCameraTest() override { UIDevice::setOrientation(UIDeviceOrientation::Unknown); }
    std::shared_ptr<GPUImageVideoCamera> camera()
    {
        const auto made = GPUImageVideoCamera::make(kPreset);
        if (!made) {
            ADD_FAILURE() << made.error().message();
            return nullptr;
        }
        show(**made);
        return *made;
    }
};

TEST_F(VideoCameraTest, PicturesAreUprightHoweverSensorAndDeviceAreTurned)
{
    const CGImage scene = quarters(64, 48);
    const UIDeviceOrientation leftwards[] = {UIDeviceOrientation::Portrait, UIDeviceOrientation::LandscapeLeft,
                                             UIDeviceOrientation::PortraitUpsideDown,
                                             UIDeviceOrientation::LandscapeRight};
    const auto camera = this->camera();
    for (const Road& road : kRoads) {
        road.take(*camera);
        for (const auto place :
             {AVCaptureDevicePosition::Unspecified, AVCaptureDevicePosition::Back, AVCaptureDevicePosition::Front}) {
            const bool isInFront = place == AVCaptureDevicePosition::Front;
            const std::vector<Rgba> wanted = quarterColors(isInFront ? mirrored(scene) : scene);
            for (int turns = 0; turns < 16; ++turns) {
                m_device->place = place;
                m_device->turned = 90 * (turns / 4);
                UIDevice::setOrientation(leftwards[turns % 4]);
                camera->followDeviceOrientation();
                // A camera that is turned to one side sees the scene turned to the other; in front, sides are swapped.
                const int seen = isInFront ? -(turns % 4) : turns % 4;
                camera->processVideoSampleBuffer(road.sample(turned(scene, seen - turns / 4)));
                const CGImage got = m_arrivals->last().pixels;
                ASSERT_EQ(got.size(), scene.size()) << turns;
                for (std::size_t i = 0; i < 4; ++i)
                    ASSERT_LE(difference(quarterColors(got)[i], wanted[i]), road.asYUV ? 4 : 0)
                        << "quarter " << i << " turns " << turns << " in front " << isInFront << " yuv " << road.asYUV;
                EXPECT_EQ(camera->outputFrameSize(), (CGSize{64, 48}));
                EXPECT_EQ(m_filter->outputFrameSize(), (CGSize{64, 48}));
            }
        }
    }
}

TEST_F(VideoCameraTest, OrientationsAreToldOrPaidForByTheTable)
{
    const std::string rows[] = {"2107", "5734", "2170", "5634"}; // back, mirrored, front, mirrored
    const auto camera = this->camera();
    for (const Road& road : kRoads) {
        road.take(*camera);
        for (int row = 0; row < 4; ++row) {
            m_device->place = row < 2 ? AVCaptureDevicePosition::Back : AVCaptureDevicePosition::Front;
            camera->setHorizontallyMirrorRearFacingCamera(row == 1);
            camera->setHorizontallyMirrorFrontFacingCamera(row == 3);
            for (int orientation = 0; orientation <= 5; ++orientation) {
                const bool isOne = orientation >= 1 && orientation <= 4;
                const int wanted = isOne ? rows[row][static_cast<std::size_t>(orientation - 1)] - '0' : 0;
                camera->setOutputImageOrientation(static_cast<UIInterfaceOrientation>(orientation));
                EXPECT_EQ(camera->internalRotation(), road.turns() ? wanted : 0);
                EXPECT_EQ(camera->outputRotation(), road.turns() ? 0 : wanted);
                const auto late = consumerOf(*camera);
                EXPECT_EQ(late->toldRotation(), road.turns() ? 0 : wanted) << row << " " << orientation;
                camera->removeTarget(late);
            }
        }
    }
}

TEST_F(VideoCameraTest, FramesThatComeWhileOneIsUnderWayAreDropped)
{
    const auto camera = this->camera();
    std::vector<double> heard;
    struct Delegate : GPUImageVideoCameraDelegate {
        std::vector<double>& times;
        explicit Delegate(std::vector<double>& heard)
            : times(heard)
        {
        }
        void willOutputSampleBuffer(const CMSampleBuffer& sample) override
        {
            times.push_back(sample.presentationTime.seconds());
        }
    };
    const auto delegate = std::make_shared<Delegate>(heard);
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
        EXPECT_TRUE(goOn.wait(kPatience));
    };
    const auto push = [&](int time) { // without the queue on which frames arrive
        camera->captureOutput(*camera->captureSession()->outputs().front(), kRoads[1].sample(quarters(64, 48), time));
    };
    m_device->give(quarters(64, 48), second(1));
    ASSERT_TRUE(isUnderWay.wait(kPatience));
    push(2);
    push(3);
    goOn.signal();
    ASSERT_TRUE(m_arrivals->wait());
    m_arrivals->atFrame = {};
    camera->pauseCameraCapture();
    push(4);
    camera->processVideoSampleBuffer(kRoads[1].sample(quarters(64, 48), 5));
    camera->resumeCameraCapture();
    monochrome->setEnabled(false);
    ASSERT_TRUE(comesTrue([&] {
        push(6);
        return m_arrivals->wait();
    }));
    camera->stopCameraCapture();
    push(7);
    onQueue([] {});
    EXPECT_THAT(heard, ElementsAre(1, 6));
    EXPECT_EQ(m_arrivals->frames().size(), 2U);
    EXPECT_EQ(m_arrivals->last().time, second(6));
    EXPECT_EQ(monochrome->frames().size(), 1U);
    EXPECT_FALSE(monochrome->toldMonochrome()) << "all channels are sent";
    EXPECT_EQ(m_device->running(), 0);
}

TEST_F(VideoCameraTest, TheAverageLeavesTheFirstFiveFramesOut)
{
    const auto camera = this->camera();
    const LogCapture log;
    camera->setRunBenchmark(true);
    const auto push = [&] { camera->processVideoSampleBuffer(kRoads[1].sample(quarters(64, 48))); };
    for (int i = 0; i < 5; ++i)
        push();
    EXPECT_FALSE(camera->averageFrameDurationDuringCapture());
    push();
    EXPECT_GT(camera->averageFrameDurationDuringCapture().value_or(0), 0);
    EXPECT_THAT(log.text(), HasSubstr("Current frame time : "));
    camera->resetBenchmarkAverage();
    EXPECT_FALSE(camera->averageFrameDurationDuringCapture());
}

TEST_F(VideoCameraTest, MakesNoObjectOfTheDeviceOnceWarm)
{
    const auto camera = this->camera();
    camera->setOutputImageOrientation(UIInterfaceOrientation::Portrait);
    for (const Road& road : kRoads) {
        road.take(*camera);
        const CMSampleBuffer sample = road.sample(quarters(64, 48));
        const auto push = [&](int count) {
            for (int i = 0; i < count; ++i)
                camera->processVideoSampleBuffer(sample);
        };
        push(3);
        const GLCalls warm = glCallsSoFar();
        push(100);
        EXPECT_EQ((glCallsSoFar() - warm).objectsMade(), 0);
    }
}

TEST_F(VideoCameraTest, GoesToTheOtherCameraOrStays)
{
    m_device->place = AVCaptureDevicePosition::Back;
    const auto front = std::make_shared<StandInCamera>();
    front->name = "front";
    front->place = AVCaptureDevicePosition::Front;
    front->turned = 90;
    const auto camera = this->camera();
    camera->followDeviceOrientation();
    camera->setFrameRate(24);
    camera->startCameraCapture();
    EXPECT_EQ(m_device->requests().back().size, (IntSize{64, 48}));
    EXPECT_EQ(m_device->requests().back().frameRate, 24);
    EXPECT_TRUE(camera->rotateCamera().ok()) << "there is no other";
    EXPECT_EQ(camera->inputCamera(), m_device);
    const ServedCameras both({m_device, front});
    front->opens = false;
    EXPECT_FALSE(camera->rotateCamera().ok());
    EXPECT_TRUE(givesFrames());
    front->opens = true;
    ASSERT_TRUE(camera->rotateCamera().ok());
    EXPECT_EQ(camera->cameraPosition(), AVCaptureDevicePosition::Front);
    EXPECT_EQ(camera->outputImageOrientation(), UIInterfaceOrientation::Portrait) << "followed again";
    EXPECT_EQ(m_device->running(), 0);
    EXPECT_TRUE(front->give(quarters(64, 48)) && m_arrivals->wait());
    ASSERT_TRUE(camera->rotateCamera().ok());
    EXPECT_TRUE(givesFrames());
    camera->removeInputsAndOutputs();
    EXPECT_FALSE(m_device->give(quarters(64, 48)));
    EXPECT_FALSE(camera->inputCamera());
}

TEST_F(VideoCameraTest, SaysWhyThereIsNoCamera)
{
    m_device->opens = false;
    const auto closed = GPUImageVideoCamera::make(kPreset);
    EXPECT_EQ(closed ? "" : closed.error().message(), "stand-in: in use");
    const ServedCameras none({});
    const auto missing = GPUImageVideoCamera::make(kPreset, AVCaptureDevicePosition::Front);
    EXPECT_EQ(missing ? "" : missing.error().message(), "there is no camera");
    EXPECT_FALSE(GPUImageVideoCamera::isFrontFacingCameraPresent());
}

TEST_F(VideoCameraTest, MayBeDroppedWhereverItCalls)
{
    for (const bool unplugged : {false, true}) {
        auto camera = this->camera();
        DispatchSemaphore dropped;
        const std::weak_ptr<GPUImageVideoCamera> weak = camera;
        const auto drop = [&] {
            camera.reset();
            dropped.signal();
        };
        if (unplugged)
            camera->setEndHandler([&](const Error& error) {
                EXPECT_EQ(error.cause, "unplugged");
                drop();
            });
        else
            m_arrivals->atFrame = drop;
        camera->startCameraCapture();
        if (unplugged)
            m_device->end({{}, "unplugged"});
        else
            m_device->give(quarters(64, 48));
        ASSERT_TRUE(dropped.wait(kPatience));
        m_arrivals->atFrame = {};
        EXPECT_TRUE(comesTrue([&] { return weak.expired() && m_device->running() == 0; }));
        EXPECT_FALSE(m_device->give(quarters(64, 48)));
    }
}

/// Gives what a test says.
class StandInMicrophone : public AVCaptureDevice {
public:
    std::string uniqueID() const override { return "microphone"; }
    std::string localizedName() const override { return "microphone"; }
    AVTrackMediaType mediaType() const override { return AVTrackMediaType::Audio; }
    Result<std::shared_ptr<AVCaptureDeviceInput>> makeInput() override
    {
        struct Input : AVCaptureDeviceInput {
            explicit Input(std::shared_ptr<StandInMicrophone> owner)
                : AVCaptureDeviceInput(owner)
                , microphone(*owner)
            {
            }
            void start(const AVCaptureRequest&, AVCaptureHandlers handlers) override
            {
                microphone.handlers = std::move(handlers);
            }
            void stop() override { microphone.handlers = {}; }
            StandInMicrophone& microphone;
        };
        return std::shared_ptr<AVCaptureDeviceInput>(
            std::make_shared<Input>(std::static_pointer_cast<StandInMicrophone>(shared_from_this())));
    }
    AVCaptureHandlers handlers;
};

TEST_F(VideoCameraTest, TheMicrophoneIsHeardInAMovieWhereThereIsOne)
{
    const auto microphone = std::make_shared<StandInMicrophone>();
    for (const bool isThere : {true, false}) {
        AVCaptureDevice::setSource({[] { return AVAuthorizationStatus::Authorized; },
                                    {},
                                    [&](AVTrackMediaType type) {
                                        return type == AVTrackMediaType::Video
                                                   ? std::vector<std::shared_ptr<AVCaptureDevice>>{m_device}
                                               : isThere ? std::vector<std::shared_ptr<AVCaptureDevice>>{microphone}
                                                         : std::vector<std::shared_ptr<AVCaptureDevice>>{};
                                    }});
        const TemporaryFolder folder;
        const auto camera = this->camera();
        const auto writer = std::make_shared<GPUImageMovieWriter>(
            folder.path("clip.mp4"), CGSize{64, 48}, kAVFileTypeMPEG4,
            GPUImageMovieWriterSettings{.frameRate = 30, .encodingLiveVideo = false});
        m_filter->addTarget(writer);
        camera->setAudioEncodingTarget(writer);
        EXPECT_EQ(camera->audioEncodingTarget() != nullptr, isThere);
        EXPECT_FALSE(isThere && camera->addAudioInputsAndOutputs()) << "open already";
        writer->startRecording();
        camera->startCameraCapture();
        for (int i = 0; i < 6; ++i) {
            ASSERT_TRUE(givesFrames(i));
            CMSampleBuffer sound;
            sound.presentationTime = second(i);
            sound.audio = std::make_shared<AudioBuffer>(AudioBuffer{8000, 1, std::vector<float>(8000, 0.5F)});
            if (microphone->handlers.sample)
                microphone->handlers.sample(sound);
        }
        EXPECT_TRUE(!isThere || comesTrue([&] { return writer->duration().seconds() >= 5; }));
        camera->setAudioEncodingTarget(nullptr);
        EXPECT_FALSE(camera->microphone());
        EXPECT_FALSE(microphone->handlers.sample);
        DispatchSemaphore finished;
        writer->finishRecordingWithCompletionHandler([&] { finished.signal(); });
        ASSERT_TRUE(finished.wait(30));
        EXPECT_EQ(probe(folder.path("clip.mp4"))["streams"].size(), isThere ? 2U : 1U);
        m_filter->removeTarget(writer);
    }
}

} // namespace
} // namespace lamina::test
