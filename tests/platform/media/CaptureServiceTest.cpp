#include "platform/media/capture/CaptureService.h"
#include "CommandRunner.h"
#include "PipeWireSession.h"
#include "TestCameraNode.h"
#include "TestPictures.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/media/AVCaptureDevice.h"
#include "platform/media/PixelBufferImage.h"

#include <chrono>
#include <condition_variable>
#include <functional>
#include <gtest/gtest.h>
#include <iostream>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace lamina::test {

namespace {

/// Until it is so, or far too long has passed.
bool eventually(const std::function<bool()>& isSo)
{
    for (int i = 0; i < 3000; ++i) {
        if (isSo())
            return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return false;
}

/// What an input has brought.
class Heard {
public:
    AVCaptureHandlers handlers()
    {
        return {[this](const CMSampleBuffer& sample) {
                    const std::scoped_lock lock(m_mutex);
                    m_last = sample;
                    ++m_count;
                },
                [this](const Error& error) {
                    const std::scoped_lock lock(m_mutex);
                    m_ends.push_back(error.message());
                }};
    }
    int count() const
    {
        const std::scoped_lock lock(m_mutex);
        return m_count;
    }
    CMSampleBuffer last() const
    {
        const std::scoped_lock lock(m_mutex);
        return m_last;
    }
    std::vector<std::string> ends() const
    {
        const std::scoped_lock lock(m_mutex);
        return m_ends;
    }

private:
    mutable std::mutex m_mutex;
    CMSampleBuffer m_last;
    int m_count = 0;
    std::vector<std::string> m_ends;
};

/// The service of a session of its own.
class CaptureServiceTest : public ::testing::Test {
protected:
    void SetUp() override { CaptureService::shared().start(); }
    void TearDown() override { CaptureService::shared().stop(); }

    static std::shared_ptr<AVCaptureDevice> device(const std::string& uniqueID)
    {
        std::shared_ptr<AVCaptureDevice> found;
        eventually([&] {
            for (const AVTrackMediaType type : {AVTrackMediaType::Video, AVTrackMediaType::Audio}) {
                for (const auto& each : CaptureService::shared().devices(type)) {
                    if (each->uniqueID() == uniqueID)
                        found = each;
                }
            }
            return found != nullptr;
        });
        return found;
    }

    PipeWireSession m_session;
};

TEST_F(CaptureServiceTest, FirstFrame)
{
    ASSERT_TRUE(CaptureService::shared().waitUntilListed(10));
    const auto camera = device("test-camera");
    ASSERT_TRUE(camera);
    for (const auto& mode : camera->formats())
        std::cout << mode.size.width << "x" << mode.size.height << " " << mode.encoding << " " << mode.minFrameRate
                  << ".." << mode.maxFrameRate << "\n";
    for (int i = 0; i < 3; ++i) {
        Heard heard;
        const auto begin = std::chrono::steady_clock::now();
        const auto input = *camera->makeInput();
        input->start({{640, 480}, 30, CVPixelFormat::BGRA}, heard.handlers());
        EXPECT_TRUE(eventually([&] { return heard.count() > 0 || !heard.ends().empty(); }));
        std::cout << std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count() << " s\n";
        EXPECT_EQ(heard.ends(), std::vector<std::string>());
        input->stop();
    }
}

TEST_F(CaptureServiceTest, Node)
{
    TestCameraNode node({.picture = rampPicture(64, 48, 100)});
    const auto camera = device("node-camera");
    ASSERT_TRUE(camera);
    for (const auto& mode : camera->formats())
        std::cout << mode.size.width << "x" << mode.size.height << " " << mode.encoding << " " << mode.minFrameRate
                  << ".." << mode.maxFrameRate << "\n";
    Heard heard;
    const auto input = *camera->makeInput();
    input->start({{640, 480}, 30, CVPixelFormat::BGRA}, heard.handlers());
    EXPECT_TRUE(eventually([&] { return heard.count() > 3 || !heard.ends().empty(); }));
    EXPECT_EQ(heard.ends(), std::vector<std::string>());
    input->stop();
}

TEST_F(CaptureServiceTest, Sound)
{
    const auto camera = device("test-microphone");
    ASSERT_TRUE(camera);
    Heard heard;
    const auto input = *camera->makeInput();
    input->start({}, heard.handlers());
    EXPECT_TRUE(eventually([&] { return heard.count() > 3 || !heard.ends().empty(); }));
    EXPECT_EQ(heard.ends(), std::vector<std::string>());
    input->stop();
    if (heard.last().audio)
        std::cout << heard.last().audio->sampleRate << " " << heard.last().audio->channels << " "
                  << heard.last().audio->sampleCount() << "\n";
}

} // namespace

} // namespace lamina::test
