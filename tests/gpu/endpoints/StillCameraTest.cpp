#include "CameraFixture.h"
#include "CommandRunner.h"
#include "TestPictures.h"
#include "gpu/endpoints/GPUImageStillCamera.h"
#include "platform/base/UIDevice.h"
#include "platform/image/pixels/CGImage.h"

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <future>
#include <string>
#include <vector>

namespace lamina::test {
namespace {

using testing::ElementsAre;
using Bytes = std::vector<std::uint8_t>;

class StillCameraTest : public CameraFixture {
protected:
    void SetUp() override
    {
        CameraFixture::SetUp();
        const auto made = GPUImageStillCamera::make(kPreset);
        ASSERT_TRUE(made.ok()) << made.error().message();
        m_camera = *made;
        show(*m_camera);
        m_camera->startCameraCapture();
    }
    void TearDown() override
    {
        m_camera.reset();
        CameraFixture::TearDown();
        GPUImageContext::limitTextureSize(0);
        UIDevice::setOrientation(UIDeviceOrientation::Unknown);
    }

    /// A handler whose answer is waited for.
    template <class Value>
    struct Answer {
        std::promise<Result<Value>> promise;
        std::function<void(Result<Value>)> handler()
        {
            return [this](Result<Value> result) { promise.set_value(std::move(result)); };
        }
        Result<Value> wait()
        {
            std::future<Result<Value>> future = promise.get_future();
            if (future.wait_for(std::chrono::seconds(20)) != std::future_status::ready)
                return Error{{}, "no answer"};
            return future.get();
        }
    };

    /// The camera has been started so often.
    bool isStarted(std::size_t times)
    {
        return comesTrue([&] { return m_device->requests().size() == times; });
    }
    /// Frames of the size for stills, until their brightness has settled.
    void giveStill()
    {
        ASSERT_TRUE(isStarted(2 * ++m_stills));
        for (int i = 0; i < 4; ++i)
            m_device->give(m_still, second(i));
    }

    const CGImage m_still = quarters(128, 96);
    std::size_t m_stills = 0;
    std::shared_ptr<GPUImageStillCamera> m_camera;
};

TEST_F(StillCameraTest, StillsHaveTheLargestSizeAndTheCameraGoesBack)
{
    Answer<UIImage> image;
    Answer<UIImage> second;
    m_camera->capturePhotoAsImageProcessedUpToFilter(m_filter, image.handler());
    ASSERT_TRUE(isStarted(2));
    m_camera->capturePhotoAsImageProcessedUpToFilter(m_filter, second.handler());
    const Result<UIImage> refused = second.wait();
    ASSERT_FALSE(refused.ok());
    EXPECT_TRUE(GPUImageStillCamera::isAnotherStillBeingTaken(refused.error())) << refused.error().message();
    EXPECT_TRUE(refused.error().cause.ends_with("-11830)"));
    giveStill();
    const Result<UIImage> taken = image.wait();
    ASSERT_TRUE(taken.ok()) << taken.error().message();
    EXPECT_TRUE(imagesMatch(taken->cgImage(), m_still));
    EXPECT_TRUE(comesTrue([&] { return !m_camera->currentCaptureMetadata(); }));
    ASSERT_TRUE(m_arrivals->wait()) << "the still came by";
    EXPECT_TRUE(givesFrames());
    std::vector<int> widths;
    for (const AVCaptureRequest& request : m_device->requests())
        widths.push_back(request.size.width);
    EXPECT_THAT(widths, ElementsAre(64, 0, 64));
}

TEST_F(StillCameraTest, FilesAreUprightAndOfTheirKind)
{
    UIDevice::setOrientation(UIDeviceOrientation::PortraitUpsideDown);
    const TemporaryFolder folder;
    const auto decoded = [&](const Result<Bytes>& bytes, const std::string& name) {
        std::ofstream(folder.path(name), std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes->data()), static_cast<std::streamsize>(bytes->size()));
        return readPictureFile(folder.path(name));
    };
    Answer<Bytes> png;
    m_camera->capturePhotoAsPNGProcessedUpToFilter(m_filter, png.handler());
    giveStill();
    const Result<Bytes> file = png.wait();
    ASSERT_TRUE(file.ok()) << file.error().message();
    const std::vector<Rgba> upright = quarterColors(m_still);
    EXPECT_EQ(file->at(1), 'P');
    EXPECT_THAT(quarterColors(decoded(file, "a.png")), ElementsAre(upright[3], upright[2], upright[1], upright[0]));
    std::vector<std::size_t> sizes;
    for (const double quality : {0.1, 0.9}) {
        Answer<Bytes> jpeg;
        m_camera->setJpegCompressionQuality(quality);
        m_camera->capturePhotoAsJPEGProcessedUpToFilter(m_filter, UIImageOrientation::Right, jpeg.handler());
        giveStill();
        const Result<Bytes> taken = jpeg.wait();
        ASSERT_TRUE(taken.ok()) << taken.error().message();
        EXPECT_EQ(decoded(taken, "a.jpg").size(), (IntSize{96, 128}));
        sizes.push_back(taken->size());
    }
    EXPECT_LT(sizes[0], sizes[1]);
    m_camera->followDeviceOrientation();
    m_camera->pauseCameraCapture();
    Answer<UIImage> followed;
    m_camera->capturePhotoAsImageProcessedUpToFilter(m_filter, followed.handler());
    giveStill();
    const Result<UIImage> taken = followed.wait();
    ASSERT_TRUE(taken.ok()) << taken.error().message();
    EXPECT_EQ(taken->imageOrientation(), UIImageOrientation::Up);
    EXPECT_EQ(quarterColors(taken->cgImage())[0], upright[3]);
}

TEST_F(StillCameraTest, OneLargerThanATextureIsReduced)
{
    for (const bool asYUV : {false, true}) {
        GPUImageContext::limitTextureSize(50);
        const std::size_t before = m_device->requests().size();
        m_camera->setCaptureAsYUV(asYUV);
        CGImage got;
        std::optional<StillCaptureMetadata> metadata;
        std::promise<Outcome> outcome;
        m_camera->capturePhotoProcessedUpToFilter(m_filter, [&](const Outcome& taken) {
            metadata = m_camera->currentCaptureMetadata();
            got = m_filter->newCGImageFromCurrentlyProcessedOutput();
            outcome.set_value(taken);
        });
        const std::size_t started = before + (asYUV ? 2 : 1);
        ASSERT_TRUE(isStarted(started));
        for (int i = 0; i < 4; ++i)
            m_device->give(m_still, second(i));
        ASSERT_TRUE(outcome.get_future().get().ok());
        ASSERT_TRUE(isStarted(started + 1));
        EXPECT_EQ(got.size(), (IntSize{50, 37}));
        for (std::size_t i = 0; i < 4; ++i)
            EXPECT_LE(difference(quarterColors(got)[i], quarterColors(m_still)[i]), asYUV ? 4 : 1);
        ASSERT_TRUE(metadata);
        EXPECT_EQ(metadata->size, m_still.size());
        EXPECT_EQ(metadata->camera, "stand-in");
    }
}

TEST_F(StillCameraTest, UnpluggedInTheMiddleItSaysSoAndFramesComeAgainLater)
{
    std::promise<Error> told;
    m_camera->setEndHandler([&](const Error& error) { told.set_value(error); });
    Answer<UIImage> image;
    m_camera->capturePhotoAsImageProcessedUpToFilter(m_filter, image.handler());
    ASSERT_TRUE(isStarted(2));
    m_device->end({{}, "unplugged"});
    const Result<UIImage> failed = image.wait();
    EXPECT_EQ(failed ? "" : failed.error().cause, "unplugged");
    EXPECT_EQ(told.get_future().get().cause, "unplugged");
    EXPECT_FALSE(m_camera->isRunning());
    Answer<UIImage> stopped;
    m_camera->capturePhotoAsImageProcessedUpToFilter(m_filter, stopped.handler());
    EXPECT_FALSE(stopped.wait().ok());
    m_camera->startCameraCapture();
    EXPECT_TRUE(givesFrames());
}

TEST_F(StillCameraTest, DroppedInTheMiddleTheHandlerHearsOfIt)
{
    Answer<UIImage> image;
    const auto waitForQueueAndAnswer = [&](const Result<UIImage>& result) {
        onQueue([] {}); // whoever drops the camera must not wait for this
        image.handler()(result);
    };
    m_camera->capturePhotoAsImageProcessedUpToFilter(m_filter, waitForQueueAndAnswer);
    ASSERT_TRUE(isStarted(2));
    onQueue([&] { m_camera.reset(); });
    EXPECT_FALSE(image.wait().ok());
    EXPECT_EQ(m_device->running(), 0);
}

TEST_F(StillCameraTest, MayBeDroppedByItsHandler)
{
    Answer<UIImage> image;
    const std::weak_ptr<GPUImageStillCamera> weak = m_camera;
    m_camera->capturePhotoAsImageProcessedUpToFilter(m_filter, [&](const Result<UIImage>& result) {
        m_camera.reset();
        image.handler()(result);
    });
    giveStill();
    EXPECT_TRUE(image.wait().ok());
    EXPECT_TRUE(comesTrue([&] { return weak.expired() && m_device->running() == 0; }));
}

} // namespace
} // namespace lamina::test
