#include "CameraFixture.h"
#include "CommandRunner.h"
#include "TestPictures.h"
#include "gpu/endpoints/GPUImageStillCamera.h"
#include "platform/base/UIDevice.h"

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <future>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace lamina::test {
namespace {

using testing::ElementsAre;

/// What a handler was called with.
template <class Value>
class Answer {
public:
    auto handler()
    {
        return [this](Result<Value> result) { m_promise.set_value(std::move(result)); };
    }
    Result<Value> wait() { return m_promise.get_future().get(); }

private:
    std::promise<Result<Value>> m_promise;
};

class StillCameraTest : public CameraFixture {
protected:
    void SetUp() override
    {
        CameraFixture::SetUp();
        m_camera = shownCamera<GPUImageStillCamera>();
        ASSERT_TRUE(m_camera);
        m_camera->startCameraCapture();
    }
    void TearDown() override
    {
        m_camera.reset();
        CameraFixture::TearDown();
        GPUImageContext::limitTextureSize(0);
    }

    /// The camera has gone to its largest size.
    bool takesStill()
    {
        return comesTrue([this] { return m_device->requests().back().size == IntSize(); });
    }
    /// Frames of that size, until their brightness has settled.
    void giveStill()
    {
        ASSERT_TRUE(takesStill());
        for (int i = 0; i < 4; ++i)
            m_device->give(m_still, second(i));
    }

    const CGImage m_still = quarters(128, 96);
    std::shared_ptr<GPUImageStillCamera> m_camera;
};

TEST_F(StillCameraTest, StillsHaveTheLargestSizeAndTheCameraGoesBack)
{
    Answer<UIImage> image;
    Answer<UIImage> another;
    m_camera->capturePhotoAsImageProcessedUpToFilter(m_filter, image.handler());
    ASSERT_TRUE(takesStill());
    m_camera->capturePhotoAsImageProcessedUpToFilter(m_filter, another.handler());
    const Result<UIImage> refused = another.wait();
    ASSERT_FALSE(refused.ok());
    EXPECT_TRUE(GPUImageStillCamera::isAnotherStillBeingTaken(refused.error()));
    EXPECT_TRUE(refused.error().cause.ends_with("-11830)")) << refused.error().cause;
    giveStill();
    const Result<UIImage> taken = image.wait();
    ASSERT_TRUE(taken.ok()) << taken.error().message();
    EXPECT_TRUE(imagesMatch(taken->cgImage(), m_still));
    ASSERT_TRUE(m_arrivals->wait()) << "the still came by";
    EXPECT_TRUE(givesFrames());
    std::vector<int> widths;
    for (const AVCaptureRequest& request : m_device->requests())
        widths.push_back(request.size.width);
    EXPECT_THAT(widths, ElementsAre(64, 0, 64));
}

TEST_F(StillCameraTest, FilesAreUprightAndOfTheirKind)
{
    using Bytes = std::vector<std::uint8_t>;
    UIDevice::setOrientation(UIDeviceOrientation::PortraitUpsideDown);
    const std::vector<Rgba> upright = quarterColors(m_still);
    const TemporaryFolder folder;
    const auto taken = [&](const auto& capture, const std::string& signature) {
        Answer<Bytes> answer;
        capture(answer.handler());
        giveStill();
        const Result<Bytes> bytes = answer.wait();
        const std::string file = bytes ? std::string(bytes->begin(), bytes->end()) : bytes.error().message();
        EXPECT_TRUE(file.starts_with(signature)) << file;
        std::ofstream(folder.path("still"), std::ios::binary) << file;
        return readPictureFile(folder.path("still"));
    };
    const CGImage png = taken(
        [&](const auto& handler) { m_camera->capturePhotoAsPNGProcessedUpToFilter(m_filter, handler); }, "\x89PNG");
    EXPECT_THAT(quarterColors(png), ElementsAre(upright[3], upright[2], upright[1], upright[0]));
    m_camera->setJpegCompressionQuality(1);
    m_camera->followDeviceOrientation();
    m_camera->pauseCameraCapture();
    const CGImage jpeg = taken(
        [&](const auto& handler) { m_camera->capturePhotoAsJPEGProcessedUpToFilter(m_filter, handler); }, "\xFF\xD8");
    ASSERT_EQ(jpeg.size(), m_still.size());
    EXPECT_LE(difference(quarterColors(jpeg)[0], upright[3]), 3) << "turned once, not twice";
}

TEST_F(StillCameraTest, OneLargerThanATextureIsReduced)
{
    GPUImageContext::limitTextureSize(50);
    for (const bool asYUV : {false, true}) {
        m_camera->setCaptureAsYUV(asYUV);
        CGImage got;
        std::optional<StillCaptureMetadata> metadata;
        Answer<std::monostate> answer;
        m_camera->capturePhotoProcessedUpToFilter(m_filter, [&](const Outcome& outcome) {
            metadata = m_camera->currentCaptureMetadata();
            got = m_filter->newCGImageFromCurrentlyProcessedOutput();
            answer.handler()(outcome);
        });
        giveStill();
        ASSERT_TRUE(answer.wait().ok());
        EXPECT_EQ(got.size(), (IntSize{50, 37}));
        for (std::size_t i = 0; i < 4; ++i)
            EXPECT_LE(difference(quarterColors(got)[i], quarterColors(m_still)[i]), asYUV ? 4 : 1);
        ASSERT_TRUE(metadata);
        EXPECT_EQ(metadata->size, m_still.size());
        EXPECT_TRUE(comesTrue([&] { return !m_camera->currentCaptureMetadata(); }));
    }
}

TEST_F(StillCameraTest, UnpluggedInTheMiddleItSaysSoAndFramesComeAgainLater)
{
    std::promise<std::string> told;
    m_camera->setEndHandler([&](const Error& error) { told.set_value(error.cause); });
    Answer<UIImage> image;
    m_camera->capturePhotoAsImageProcessedUpToFilter(m_filter, image.handler());
    ASSERT_TRUE(takesStill());
    m_device->end({{}, "unplugged"});
    const Result<UIImage> failed = image.wait();
    EXPECT_EQ(failed ? "" : failed.error().cause, "unplugged");
    EXPECT_EQ(told.get_future().get(), "unplugged");
    Answer<UIImage> stopped;
    m_camera->capturePhotoAsImageProcessedUpToFilter(m_filter, stopped.handler());
    EXPECT_FALSE(stopped.wait().ok());
    m_camera->startCameraCapture();
    EXPECT_TRUE(givesFrames());
}

TEST_F(StillCameraTest, MayBeDroppedInTheMiddleAndByItsHandler)
{
    for (const bool byHandler : {false, true}) {
        const std::weak_ptr<GPUImageStillCamera> weak = m_camera;
        Answer<UIImage> image;
        m_camera->capturePhotoAsImageProcessedUpToFilter(m_filter, [&](const Result<UIImage>& result) {
            m_camera.reset();
            onQueue([] {}); // whoever drops the camera must not wait for this
            image.handler()(result);
        });
        if (byHandler) {
            giveStill();
        } else {
            ASSERT_TRUE(takesStill());
            onQueue([&] { std::exchange(m_camera, nullptr).reset(); });
        }
        EXPECT_EQ(image.wait().ok(), byHandler);
        ASSERT_TRUE(comesTrue([&] { return weak.expired() && m_device->running() == 0; }));
        SetUp();
    }
}

} // namespace
} // namespace lamina::test
