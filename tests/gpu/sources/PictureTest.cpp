#include "GraphFixture.h"
#include "gpu/sources/GPUImagePicture.h"
#include "platform/base/DispatchSemaphore.h"
#include "platform/image/codecs/PictureEncoding.h"

#include <thread>

namespace lamina::test {
namespace {

class PictureTest : public GraphFixture {
protected:
    std::shared_ptr<GPUImagePicture> m_picture = std::make_shared<GPUImagePicture>(distinctPicture(5, 4));
    /// All that was handed to the queue so far has run.
    static void settle()
    {
        onQueue([] {});
    }
};

TEST_F(PictureTest, PushesAsOftenAsItIsAskedAndKeepsItsTexture)
{
    const auto first = consumerOf(*m_picture);
    const auto second = consumerOf(*m_picture);
    int completions = 0;
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(m_picture->processImageWithCompletionHandler([&] {
            EXPECT_TRUE(isOnVideoProcessingQueue());
            EXPECT_EQ(second->frames().size(), static_cast<std::size_t>(i) + 1) << "after the targets";
            ++completions;
        }));
        settle();
    }
    EXPECT_EQ(completions, 3);
    ASSERT_EQ(first->frames().size(), 3U);
    EXPECT_TRUE(first->last().time.isIndefinite());
    EXPECT_EQ(first->last().size, (CGSize{5, 4}));
    EXPECT_EQ(first->frames()[0].framebuffer.lock(), first->last().framebuffer.lock());
    EXPECT_EQ(first->last().counts, 1U);
    EXPECT_TRUE(first->last().framebuffer.lock()->missingFramebuffer());
}

TEST_F(PictureTest, OnePushAtATimeIsOnItsWay)
{
    const auto consumer = consumerOf(*m_picture);
    DispatchSemaphore held;
    runAsynchronouslyOnVideoProcessingQueue([&] { held.wait(); });
    int completions = 0;
    EXPECT_TRUE(m_picture->processImageWithCompletionHandler([&] { ++completions; }));
    EXPECT_FALSE(m_picture->processImageWithCompletionHandler([&] { completions += 100; }));
    m_picture->processImage();
    held.signal();
    settle();
    EXPECT_EQ(completions, 1);
    EXPECT_EQ(consumer->frames().size(), 1U);
    EXPECT_TRUE(m_picture->processImageWithCompletionHandler({}));
    settle();
    EXPECT_EQ(consumer->frames().size(), 2U);
    onQueue([&] {
        m_picture->processImage();
        EXPECT_EQ(consumer->frames().size(), 3U) << "at once when asked on the queue";
    });
}

TEST_F(PictureTest, ATargetThatComesLateGetsTheFrameAtOnce)
{
    const auto early = consumerOf(*m_picture);
    EXPECT_TRUE(early->frames().empty());
    m_picture->processImage();
    settle();
    const auto late = consumerOf(*m_picture);
    ASSERT_EQ(late->frames().size(), 1U);
    EXPECT_EQ(late->last().size, (CGSize{5, 4}));
    EXPECT_TRUE(late->last().framebuffer.lock());
    EXPECT_EQ(early->frames().size(), 1U);
    m_picture->addTarget(late);
    EXPECT_EQ(late->frames().size(), 1U) << "it was there already";

    m_picture->removeAllTargets();
    const auto after = consumerOf(*m_picture);
    EXPECT_TRUE(after->frames().empty()) << "the push has been forgotten";
    m_picture->processImage();
    settle();
    EXPECT_EQ(after->frames().size(), 1U);
    EXPECT_EQ(late->frames().size(), 1U);
}

TEST_F(PictureTest, ItsEndReturnsTheTexture)
{
    const auto consumer = consumerOf(*m_picture);
    m_picture->processImage();
    settle();
    const auto texture = consumer->last().framebuffer.lock();
    const std::size_t idle = idleFramebuffers();
    m_picture.reset();
    settle();
    EXPECT_EQ(texture->framebufferReferenceCount(), 0U);
    EXPECT_EQ(idleFramebuffers(), idle + 1);
    const auto next = std::make_shared<GPUImagePicture>(plainPicture(5, 4, {1, 2, 3, 4}));
    EXPECT_EQ(idleFramebuffers(), idle) << "the next picture of the size takes it";
    const auto filter = std::make_shared<GPUImageFilter>();
    filter->useNextFrameForImageCapture();
    next->addTarget(filter);
    next->processImage();
    EXPECT_TRUE(samePixels(filter->newCGImageFromCurrentlyProcessedOutput(), plainPicture(5, 4, {1, 2, 3, 4})));
}

TEST_F(PictureTest, ATextureThatWasSmoothIsPlainForTheNextPicture)
{
    const CGImage checkers = makePicture(64, 64, [](int x, int) {
        return x % 2 == 0 ? Rgba{0, 0, 0, 255} : Rgba{255, 255, 255, 255};
    });
    std::make_shared<GPUImagePicture>(checkers, PictureUpload{.smoothlyScaleOutput = true}).reset();
    settle();
    // 64 to 8 pixels: each takes the middle of its eight, where linear sampling meets two pixels alone.
    const auto filter = std::make_shared<GPUImageFilter>();
    filter->forceProcessingAtSize({8, 8});
    const CGImage fine = makePicture(64, 64, [](int x, int) {
        const bool middle = x % 8 == 3 || x % 8 == 4;
        return middle ? Rgba{255, 255, 255, 255} : Rgba{0, 0, 0, 255};
    });
    EXPECT_TRUE(samePixels(filter->newCGImageByFilteringCGImage(fine), plainPicture(8, 8, {255, 255, 255, 255})));
}

TEST_F(PictureTest, ATextureThatWasWrappedIsClampedForTheNextPicture)
{
    const CGImage edge = makePicture(2, 1, [](int x, int) {
        return x == 0 ? Rgba{0, 0, 0, 255} : Rgba{255, 255, 255, 255};
    });
    auto wrapped = std::make_shared<GPUImagePicture>(edge);
    GPUTextureOptions options;
    options.wrapS = GL_REPEAT;
    wrapped->setOutputTextureOptions(options);
    wrapped.reset();
    const auto filter = std::make_shared<GPUImageFilter>();
    filter->forceProcessingAtSize({8, 1});
    EXPECT_EQ(pixelAt(filter->newCGImageByFilteringCGImage(edge), 0, 0), (Rgba{0, 0, 0, 255}));
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
    EXPECT_TRUE(samePixels(processed.cgImage(), distinctPicture(5, 4)));
}

TEST_F(PictureTest, ComesFromFilesAndTheirBytes)
{
    const TemporaryFolder folder;
    CGImage image = rampPicture(12, 9, 40);
    writePng(folder.path("ramp.png"), image);
    const std::string file = readFile(folder.path("ramp.png"));
    const auto fromData = [](const std::string& bytes) {
        return GPUImagePicture::makeWithData({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
    };
    for (const auto& picture : {GPUImagePicture::makeWithURL(folder.path("ramp.png")), fromData(file)}) {
        const auto filter = std::make_shared<GPUImageFilter>();
        filter->useNextFrameForImageCapture();
        picture->addTarget(filter);
        picture->processImage();
        EXPECT_TRUE(samePixels(filter->newCGImageFromCurrentlyProcessedOutput(), image));
    }

    writeFile(folder.path("notes.txt"), "no picture at all");
    LogCapture log;
    for (const auto& picture :
         {GPUImagePicture::makeWithURL(folder.path("notes.txt")),
          GPUImagePicture::makeWithURL(folder.path("missing.png")), fromData(""), fromData(file.substr(0, 20))}) {
        ASSERT_TRUE(picture);
        EXPECT_EQ(picture->outputImageSize(), CGSize{});
    }
    EXPECT_EQ(log.lines().size(), 4U);
    EXPECT_THAT(log.text(), testing::HasSubstr("missing.png"));
}

TEST_F(PictureTest, AnEmptyPictureGoesOnWithTheZeroSize)
{
    for (const bool smoothly : {false, true}) {
        const auto picture =
            std::make_shared<GPUImagePicture>(CGImage{}, PictureUpload{.smoothlyScaleOutput = smoothly});
        const auto filter = std::make_shared<GPUImageFilter>();
        const auto consumer = consumerOf(*picture);
        picture->addTarget(filter);
        const auto end = consumerOf(*filter);
        EXPECT_TRUE(picture->processImageWithCompletionHandler({}));
        settle();
        ASSERT_EQ(consumer->frames().size(), 1U);
        EXPECT_EQ(consumer->last().size, CGSize{});
    }
}

} // namespace
} // namespace lamina::test
