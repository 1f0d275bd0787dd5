#include "platform/media/capture/CaptureService.h"

#include "CommandRunner.h"
#include "PipeWireSession.h"
#include "TestCameraNode.h"
#include "TestPictures.h"
#include "platform/base/CMTime.h"
#include "platform/base/NotificationCenter.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/media/AVCaptureDevice.h"
#include "platform/media/PixelBufferImage.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace lamina::test {

namespace {

/// Until it is so, or far too long has passed.
bool eventually(const std::function<bool()>& isSo)
{
    for (int i = 0; i < 4000; ++i) {
        if (isSo())
            return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return false;
}

std::shared_ptr<AVCaptureDevice> deviceNow(const std::string& uniqueID)
{
    for (const AVTrackMediaType type : {AVTrackMediaType::Video, AVTrackMediaType::Audio}) {
        for (const auto& each : CaptureService::shared().devices(type)) {
            if (each->uniqueID() == uniqueID)
                return each;
        }
    }
    return nullptr;
}

std::shared_ptr<AVCaptureDevice> device(const std::string& uniqueID)
{
    eventually([&] { return deviceNow(uniqueID) != nullptr; });
    return deviceNow(uniqueID);
}

/// An open device, and what it brings.
class Capture {
public:
    explicit Capture(const std::shared_ptr<AVCaptureDevice>& device, const AVCaptureRequest& request = {})
        : m_input(device->makeInput().value())
    {
        m_input->start(request, {[this](const CMSampleBuffer& sample) {
                                     const std::scoped_lock lock(m_mutex);
                                     m_samples.push_back(sample);
                                     if (m_samples.size() > 8)
                                         m_samples.erase(m_samples.begin());
                                     ++m_count;
                                 },
                                 [this](const Error& error) {
                                     const std::scoped_lock lock(m_mutex);
                                     m_ends.push_back(error.message());
                                 }});
    }
    ~Capture() { m_input->stop(); }
    Capture(const Capture&) = delete;
    Capture& operator=(const Capture&) = delete;

    /// Waits for so many; false when it ended before, or nothing comes.
    bool gives(int count)
    {
        return eventually([&] { return this->count() >= count || !ends().empty(); }) && ends().empty();
    }
    /// Waits for the end.
    std::vector<std::string> end()
    {
        eventually([&] { return !ends().empty(); });
        return ends();
    }
    std::vector<CMSampleBuffer> samples() const
    {
        const std::scoped_lock lock(m_mutex);
        return m_samples;
    }
    int count() const
    {
        const std::scoped_lock lock(m_mutex);
        return m_count;
    }

private:
    std::vector<std::string> ends() const
    {
        const std::scoped_lock lock(m_mutex);
        return m_ends;
    }

    mutable std::mutex m_mutex;
    std::vector<CMSampleBuffer> m_samples;
    std::vector<std::string> m_ends;
    int m_count = 0;
    std::shared_ptr<AVCaptureDeviceInput> m_input;
};

/// The service, started on a session of the test's own.
class CaptureServiceTest : public ::testing::Test {
protected:
    void SetUp() override { m_service.start(); }
    void TearDown() override { m_service.stop(); }

    CaptureService& m_service = CaptureService::shared();
    PipeWireSession m_session;
};

TEST_F(CaptureServiceTest, TheBuiltInCameraAndMicrophone)
{
    ASSERT_TRUE(m_service.waitUntilListed(20));
    const auto camera = deviceNow("test-camera");
    ASSERT_TRUE(camera);
    EXPECT_EQ(camera->localizedName(), "Test camera");
    const auto mode = camera->nearestFormat({640, 480}, 30);
    ASSERT_TRUE(mode);
    EXPECT_EQ(mode->size, (IntSize{640, 480}));
    EXPECT_EQ(mode->encoding, "UYVY");
    Capture frames(camera, {{640, 480}, 0, CVPixelFormat::BiPlanar420FullRange});
    const auto microphone = deviceNow("test-microphone");
    ASSERT_TRUE(microphone);
    Capture sound(microphone);
    ASSERT_TRUE(frames.gives(3));
    ASSERT_TRUE(sound.gives(5));

    const CMSampleBuffer frame = frames.samples().back();
    EXPECT_EQ(frame.imageBuffer->size(), (IntSize{640, 480}));
    EXPECT_EQ(frame.imageBuffer->pixelFormat(), CVPixelFormat::BiPlanar420FullRange);
    const double now = std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
    EXPECT_NEAR(frame.presentationTime.seconds(), now, 5);
    const auto pieces = sound.samples();
    for (std::size_t i = 1; i < pieces.size(); ++i) {
        EXPECT_EQ(pieces[i].audio->channels, 2);
        const CMTime expected = pieces[i - 1].presentationTime + pieces[i - 1].duration;
        EXPECT_NEAR(pieces[i].presentationTime.seconds(), expected.seconds(), 0.06);
    }
    const auto& samples = pieces.back().audio->samples;
    EXPECT_GT(*std::ranges::max_element(samples), 0.01F);
    EXPECT_LE(*std::ranges::max_element(samples), 1.0F);
}

TEST_F(CaptureServiceTest, FramesAreWhatTheCameraSees)
{
    const CGImage scene = rampPicture(160, 120, 90);
    for (const RawEncoding encoding : {RawEncoding::NV12, RawEncoding::I420, RawEncoding::YUY2, RawEncoding::BGRx,
                                       RawEncoding::RGB, RawEncoding::MJPG}) {
        const std::string name(kRawEncodingNames[static_cast<std::size_t>(encoding)]);
        TestCameraNode node({.name = name, .encoding = encoding, .sizes = {{320, 240}, {160, 120}}, .picture = scene});
        const auto camera = device(name);
        ASSERT_TRUE(camera) << name;
        const std::vector<AVCaptureDeviceFormat> modes{{{320, 240}, 30, 30, name}, {{160, 120}, 30, 30, name}};
        EXPECT_EQ(camera->formats(), modes) << name;
        Capture capture(camera, {{160, 120}, 30, CVPixelFormat::BGRA});
        ASSERT_TRUE(capture.gives(2)) << name;
        const CGImage seen = imageOfPixelBuffer(*capture.samples().back().imageBuffer);
        ASSERT_EQ(seen.size(), scene.size()) << name;
        for (const auto& [x, y] : {std::pair(20, 20), std::pair(140, 30), std::pair(30, 100)}) {
            for (int c = 0; c < 3; ++c)
                EXPECT_NEAR(seen.row(y)[4 * x + c], scene.row(y)[4 * x + c], 8) << name;
        }
    }
}

TEST_F(CaptureServiceTest, PlacesRotationAndOrder)
{
    std::atomic<int> changes{0};
    const auto observer = NotificationCenter::defaultCenter().addObserver(kAVCaptureDevicesDidChangeNotification,
                                                                          [&](const Notification&) { ++changes; });
    TestCameraNode front({.name = "front", .location = "front", .mountRotation = 90, .priority = 2000});
    TestCameraNode back({.name = "back", .location = "back", .transform = 1, .priority = 1500});
    ASSERT_TRUE(device("front") && device("back"));
    EXPECT_GT(changes, 0);
    const auto order = [&] {
        std::vector<std::string> all;
        for (const auto& camera : m_service.devices(AVTrackMediaType::Video))
            all.push_back(camera->uniqueID());
        return all;
    };
    EXPECT_EQ(order(), (std::vector<std::string>{"front", "back", "test-camera"}));
    // What the session has chosen comes before what claims more.
    const CommandResult chosen =
        runCommand(PW_METADATA, {"0", "default.video.source", "{\"name\":\"back\"}", "Spa:String:JSON"});
    EXPECT_EQ(chosen.exitCode, 0) << chosen.errors;
    const std::vector<std::string> backFirst{"back", "front", "test-camera"};
    EXPECT_TRUE(eventually([&] { return order() == backFirst; }));
    EXPECT_EQ(device("front")->position(), AVCaptureDevicePosition::Front);
    EXPECT_EQ(device("back")->position(), AVCaptureDevicePosition::Back);
    EXPECT_EQ(device("test-camera")->position(), AVCaptureDevicePosition::Unspecified);
    EXPECT_EQ(device("front")->rotation(), 270);
    EXPECT_EQ(device("back")->rotation(), 0);
    // What was done to frames is told with them.
    Capture capture(device("back"));
    ASSERT_TRUE(capture.gives(1));
    EXPECT_TRUE(eventually([&] { return device("back")->rotation() == 90; }));
}

TEST_F(CaptureServiceTest, ACameraIsUnplugged)
{
    auto node = std::make_unique<TestCameraNode>(TestCameraSettings{.name = "stick", .description = "Stick"});
    const auto camera = device("stick");
    ASSERT_TRUE(camera);
    Capture capture(camera);
    ASSERT_TRUE(capture.gives(1));
    node.reset();
    EXPECT_EQ(capture.end(), std::vector<std::string>{"Stick: the camera was unplugged"});
    EXPECT_TRUE(eventually([] { return !deviceNow("stick"); }));
    const auto again = camera->makeInput();
    ASSERT_FALSE(again);
    EXPECT_EQ(again.error().message(), "Stick: the camera was unplugged");
    node = std::make_unique<TestCameraNode>(TestCameraSettings{.name = "stick"});
    EXPECT_EQ(device("stick"), camera) << "whoever has kept it can open it again";
    EXPECT_TRUE(Capture(camera).gives(1));
}

TEST_F(CaptureServiceTest, AStreamIsTakenAway)
{
    // PipeWire's own test camera may still draw into buffers that have gone with a stream, and take the service with
    // it.
    const TestCameraNode node({.name = "stick", .description = "Stick"});
    ASSERT_TRUE(device("stick"));
    Capture capture(device("stick"));
    ASSERT_TRUE(capture.gives(1));
    const std::string nodes = runCommand(PW_CLI, {"ls", "Node"}).output;
    const std::size_t own = nodes.find("node.name = \"Lamina\"");
    const std::size_t begin = nodes.rfind("\tid ", own) + 4;
    ASSERT_NE(own, std::string::npos) << nodes;
    runCommand(PW_CLI, {"destroy", nodes.substr(begin, nodes.find(',', begin) - begin)});
    EXPECT_EQ(capture.end(), std::vector<std::string>{"Stick: the camera was unplugged"});
}

TEST_F(CaptureServiceTest, TheServiceStopsAndComesBack)
{
    ASSERT_TRUE(device("test-camera"));
    {
        Capture capture(device("test-camera"));
        ASSERT_TRUE(capture.gives(1));
        m_session.stop();
        EXPECT_EQ(capture.end(), std::vector<std::string>{"Test camera: the camera service stopped"});
        EXPECT_TRUE(eventually([&] { return m_service.devices(AVTrackMediaType::Video).empty(); }));
        EXPECT_TRUE(m_service.error());
    }
    m_session.start();
    ASSERT_TRUE(device("test-camera"));
    EXPECT_FALSE(m_service.error());
    EXPECT_TRUE(Capture(device("test-camera")).gives(1));
}

TEST_F(CaptureServiceTest, ByAConnectedSocket)
{
    m_service.start(m_session.connectedSocket());
    ASSERT_TRUE(m_service.waitUntilListed(20));
    EXPECT_TRUE(Capture(device("test-camera")).gives(1));
    m_session.stop();
    EXPECT_TRUE(eventually([&] { return m_service.error().has_value(); }));
    EXPECT_EQ(m_service.error()->message(), "the camera service stopped");
}

TEST_F(CaptureServiceTest, CamerasThatLie)
{
    using Draw = std::function<void(TestCameraFrame&)>;
    const std::pair<const char*, Draw> kinds[] = {
        {"offset", [](TestCameraFrame& frame) { frame.chunkOffset = 0xFFFFFFF0; }},
        {"long", [](TestCameraFrame& frame) { frame.chunkSize = 0xFFFFFFFF, frame.chunkStride = 0x7FFFFFFF; }},
        {"short", [](TestCameraFrame& frame) { frame.chunkSize = 17; }},
        {"negative", [](TestCameraFrame& frame) { frame.chunkStride = -640; }},
        {"narrow", [](TestCameraFrame& frame) { frame.chunkStride = 3; }},
    };
    for (const RawEncoding encoding : {RawEncoding::I420, RawEncoding::MJPG}) {
        for (const auto& [what, lie] : kinds) {
            // Every other frame is a lie; what is none still comes.
            TestCameraNode node(
                {.name = what, .encoding = encoding, .sizes = {{64, 48}}, .draw = [&](TestCameraFrame& frame) {
                     const auto bytes = rawBytesOf(rampPicture(64, 48, 9), encoding);
                     std::copy(bytes.begin(), bytes.end(), frame.bytes);
                     frame.chunkSize = static_cast<std::uint32_t>(bytes.size());
                     if (frame.number % 2 == 0)
                         lie(frame);
                 }});
            ASSERT_TRUE(device(what));
            EXPECT_TRUE(Capture(device(what)).gives(2)) << what;
        }
    }
    TestCameraNode huge({.name = "huge", .encoding = RawEncoding::YUY2, .sizes = {{100'000, 100'000}}});
    ASSERT_TRUE(device("huge"));
    EXPECT_TRUE(device("huge")->formats().empty());
    EXPECT_EQ(Capture(device("huge")).end(),
              std::vector<std::string>{"Node camera: the camera’s pictures can’t be read"});
}

TEST(CaptureServiceAlone, WithoutPipeWireItSaysSo)
{
    const TemporaryFolder empty;
    ::setenv("PIPEWIRE_RUNTIME_DIR", empty.path().c_str(), 1);
    CaptureService& service = CaptureService::shared();
    AVCaptureDevice::setSource(CaptureService::openSource());
    EXPECT_EQ(AVCaptureDevice::defaultVideoDevice(), nullptr);
    EXPECT_FALSE(service.waitUntilListed(20));
    ASSERT_TRUE(service.error());
    EXPECT_EQ(service.error()->message(), "PipeWire isn’t running");
    service.stop();
    AVCaptureDevice::setSource({});
    ::unsetenv("PIPEWIRE_RUNTIME_DIR");
}

} // namespace

} // namespace lamina::test
