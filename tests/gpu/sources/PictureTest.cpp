#include "GraphFixture.h"
#include "LogCapture.h"
#include "TestPictures.h"
#include "gpu/core/DrawingFailures.h"
#include "gpu/core/GPUImageFramebuffer.h"
#include "gpu/core/GPUTextureOptions.h"
#include "gpu/core/VideoProcessingQueue.h"
#include "gpu/sources/GPUImagePicture.h"
#include "platform/base/DispatchSemaphore.h"
#include "platform/image/codecs/PictureEncoding.h"
#include "platform/image/pixels/PixelBuffer.h"

#include <chrono>
#include <cstddef>
#include <thread>

namespace lamina::test {
namespace {

class PictureTest : public GraphFixture {
protected:
    std::shared_ptr<GPUImagePicture> m_picture = std::make_shared<GPUImagePicture>(chartPicture(5, 4));
    /// All that was handed to the queue so far has run.
    static void settle()
    {
        onQueue([] {});
    }
};

TEST_F(PictureTest, PushesAsOftenAsItIsAskedAndKeepsItsTexture)
{
    const auto consumer = consumerOf(*m_picture);
    for (std::size_t times = 1; times <= 2; ++times) {
        EXPECT_TRUE(m_picture->processImageWithCompletionHandler([&] {
            EXPECT_TRUE(isOnVideoProcessingQueue());
            EXPECT_EQ(consumer->frames().size(), times) << "after the targets";
        }));
        settle();
    }
    EXPECT_TRUE(consumer->last().time.isIndefinite());
    EXPECT_EQ(consumer->last().size, (CGSize{5, 4}));
    EXPECT_EQ(consumer->frames()[0].framebuffer.lock(), consumer->last().framebuffer.lock());
    EXPECT_EQ(consumer->last().counts, 1U);
}

TEST_F(PictureTest, OnePushAtATimeIsOnItsWay)
{
    const auto consumer = consumerOf(*m_picture);
    DispatchSemaphore held;
    runAsynchronouslyOnVideoProcessingQueue([&] { held.wait(); });
    EXPECT_TRUE(m_picture->processImageWithCompletionHandler([] {}));
    EXPECT_FALSE(m_picture->processImageWithCompletionHandler([] { ADD_FAILURE(); }));
    held.signal();
    settle();
    EXPECT_EQ(consumer->frames().size(), 1U);
    onQueue([&] {
        m_picture->processImage();
        EXPECT_EQ(consumer->frames().size(), 2U) << "at once when asked on the queue";
    });
}

TEST_F(PictureTest, ATargetThatComesLateGetsTheFrameAtOnce)
{
    const auto early = consumerOf(*m_picture);
    m_picture->processImage();
    const auto late = consumerOf(*m_picture);
    m_picture->addTarget(late);
    EXPECT_EQ(late->frames().size(), 1U) << "once";
    EXPECT_EQ(late->last().size, (CGSize{5, 4}));
    EXPECT_EQ(early->frames().size(), 1U);
    m_picture->removeAllTargets();
    EXPECT_TRUE(consumerOf(*m_picture)->frames().empty()) << "the push has been forgotten";
}

TEST_F(PictureTest, ItsLastPushKeepsItsTextureOnlyForTheTargetsThatNeedIt)
{
    const auto filter = std::make_shared<GPUImageFilter>();
    m_picture->addTarget(filter);
    const auto consumer = consumerOf(*filter);
    const std::size_t idle = idleFramebuffers();
    // However long the queue is at other work, what it returns from has been drawn.
    runAsynchronouslyOnVideoProcessingQueue([] { std::this_thread::sleep_for(std::chrono::milliseconds(100)); });
    m_picture->processImageAndLetGo();
    EXPECT_EQ(consumer->frames().size(), 1U) << "when it returns";
    EXPECT_TRUE(imagesMatch(consumer->last().pixels, chartPicture(5, 4)));
    EXPECT_EQ(m_picture->outputImageSize(), CGSize{});
    EXPECT_EQ(idleFramebuffers(), idle + 2) << "the picture's texture and what the filter drew";
    EXPECT_EQ(consumerOf(*m_picture)->frames().size(), 0U);
}

TEST_F(PictureTest, APictureThatIsGivenAwayGoesOnceItIsUp)
{
    const CGImageLayout layout = CGImageLayout::rgba(5, 4, CGImageAlphaInfo::Last);
    std::shared_ptr<const std::uint8_t> bytes = PixelBuffer::zeroed(layout.byteCount()).share();
    const std::weak_ptr<const std::uint8_t> watched = bytes;
    GPUImageContext::setUsesKernels(false); // which would work on the very bytes
    const GPUImagePicture picture(UIImage(CGImage::make(layout, std::move(bytes), layout.byteCount())));
    GPUImageContext::setUsesKernels(true);
    EXPECT_TRUE(watched.expired());
}

TEST_F(PictureTest, WhatCanNotBeMadeIsToldToWhoListens)
{
    const DrawingFailures outer;
    {
        const DrawingFailures inner;
        GPUImageFramebuffer beyond({200'000, 3});
        beyond.texture();
        EXPECT_EQ(inner.first(), "the device has no framebuffer for 200000 x 3 pixels");
    }
    EXPECT_EQ(outer.first(), std::nullopt);
}

TEST_F(PictureTest, ItsEndReturnsTheTexture)
{
    const std::size_t idle = idleFramebuffers();
    m_picture.reset();
    EXPECT_EQ(idleFramebuffers(), idle + 1);
    m_picture = std::make_shared<GPUImagePicture>(solidPicture(5, 4, {1, 2, 3, 4}));
    EXPECT_EQ(idleFramebuffers(), idle) << "the next picture of the size takes it";
}

TEST_F(PictureTest, ATextureThatWasSmoothOrWrappedIsPlainForTheNextPicture)
{
    auto former = std::make_shared<GPUImagePicture>(solidPicture(64, 1, {9, 9, 9, 255}),
                                                    PictureUpload{.smoothlyScaleOutput = true});
    GPUTextureOptions options;
    options.wrapS = GL_REPEAT;
    former->setOutputTextureOptions(options);
    former.reset();
    // 64 to 8 pixels: each takes the middle of its eight, where linear sampling meets two pixels alone.
    const auto shrinking = std::make_shared<GPUImageFilter>();
    shrinking->forceProcessingAtSize({8, 1});
    const auto middles = [](int x, int) {
        return x % 8 == 3 || x % 8 == 4 ? Rgba{255, 255, 255, 255} : Rgba{0, 0, 0, 255};
    };
    EXPECT_TRUE(imagesMatch(shrinking->newCGImageByFilteringCGImage(makePicture(64, 1, middles)),
                            solidPicture(8, 1, {255, 255, 255, 255})));
    const auto growing = std::make_shared<GPUImageFilter>();
    growing->forceProcessingAtSize({256, 1});
    const auto lastWhite = [](int x, int) { return x == 63 ? Rgba{255, 255, 255, 255} : Rgba{0, 0, 0, 255}; };
    EXPECT_EQ(pixelAt(growing->newCGImageByFilteringCGImage(makePicture(64, 1, lastWhite)), 0, 0),
              (Rgba{0, 0, 0, 255}));
}

TEST_F(PictureTest, ADroppedPictureFinishesThePushThatIsOnItsWay)
{
    const auto consumer = consumerOf(*m_picture);
    DispatchSemaphore held;
    runAsynchronouslyOnVideoProcessingQueue([&] { held.wait(); });
    m_picture->processImage();
    std::thread dropping([&] { m_picture.reset(); });
    held.signal();
    dropping.join();
    settle();
    EXPECT_LE(consumer->frames().size(), 1U);
}

TEST_F(PictureTest, HandsOverWhatComesOutOfAFilter)
{
    const auto filter = std::make_shared<GPUImageFilter>();
    m_picture->addTarget(filter);
    UIImage processed;
    m_picture->processImageUpToFilter(filter, [&](const UIImage& image) { processed = image; });
    settle();
    EXPECT_TRUE(imagesMatch(processed.cgImage(), chartPicture(5, 4)));
}

TEST_F(PictureTest, ComesFromFilesAndTheirBytes)
{
    const TemporaryFolder folder;
    const CGImage image = rampPicture(12, 9, 40);
    writePng(folder.path("ramp.png"), image);
    const std::string file = readFile(folder.path("ramp.png"));
    const auto fromData = [](const std::string& bytes) {
        return GPUImagePicture::makeWithData({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
    };
    for (const auto& picture : {GPUImagePicture::makeWithURL(folder.path("ramp.png")), fromData(file)}) {
        const auto filter = std::make_shared<GPUImageFilter>();
        const auto consumer = consumerOf(*filter);
        picture->addTarget(filter);
        onQueue([&] { picture->processImage(); });
        EXPECT_TRUE(imagesMatch(consumer->last().pixels, image));
    }
    LogCapture log;
    for (const auto& picture : {GPUImagePicture::makeWithURL(folder.path("missing.png")), fromData("")}) {
        const auto consumer = consumerOf(*picture);
        onQueue([&] { picture->processImage(); });
        EXPECT_EQ(consumer->last().size, CGSize{}) << "an empty picture goes on with the zero size";
    }
    EXPECT_EQ(log.messages.size(), 2U);
    EXPECT_THAT(log.text(), testing::HasSubstr("missing.png"));
}

TEST_F(PictureTest, FilteringCarriesScaleOrientationAndEveryByte)
{
    const auto filter = std::make_shared<GPUImageFilter>();
    for (const auto alpha :
         {CGImageAlphaInfo::Last, CGImageAlphaInfo::NoneSkipLast, CGImageAlphaInfo::PremultipliedLast}) {
        for (const IntSize size : {IntSize{1, 1}, {17, 3}, {64, 64}, {1, 255}}) {
            const CGImage pixels = noisePicture(size.width, size.height, alpha);
            const UIImage out = filter->imageByFilteringImage(UIImage(pixels, 2.5, UIImageOrientation::Right));
            EXPECT_TRUE(imagesMatch(out.cgImage(), pixels));
            EXPECT_EQ(out.cgImage().alphaInfo(), CGImageAlphaInfo::Last) << "whatever went up";
            EXPECT_EQ(out.scale(), 2.5);
            EXPECT_EQ(out.imageOrientation(), UIImageOrientation::Right);
        }
    }
    EXPECT_FALSE(filter->imageByFilteringImage(UIImage()));
    onQueue([&] {
        EXPECT_TRUE(imagesMatch(filter->newCGImageByFilteringCGImage(chartPicture(4, 4)), chartPicture(4, 4)));
    });
}

} // namespace
} // namespace lamina::test
