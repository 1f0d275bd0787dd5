#include "GraphFixture.h"
#include "gpu/core/GPUImageFourInputFilter.h"

namespace lamina::test {
namespace {

/// Each slot's red channel in a channel of its own.
constexpr const char* kTwo = R"(
    varying highp vec2 textureCoordinate; varying highp vec2 textureCoordinate2;
    uniform sampler2D inputImageTexture; uniform sampler2D inputImageTexture2;
    void main() {
        gl_FragColor = vec4(texture2D(inputImageTexture, textureCoordinate).r,
                            texture2D(inputImageTexture2, textureCoordinate2).r, 0.0, 1.0);
    })";
constexpr const char* kThree = R"(
    varying highp vec2 textureCoordinate; varying highp vec2 textureCoordinate2; varying highp vec2 textureCoordinate3;
    uniform sampler2D inputImageTexture; uniform sampler2D inputImageTexture2; uniform sampler2D inputImageTexture3;
    void main() {
        gl_FragColor = vec4(texture2D(inputImageTexture, textureCoordinate).r,
                            texture2D(inputImageTexture2, textureCoordinate2).r,
                            texture2D(inputImageTexture3, textureCoordinate3).r, 1.0);
    })";
constexpr const char* kFour = R"(
    varying highp vec2 textureCoordinate; varying highp vec2 textureCoordinate2; varying highp vec2 textureCoordinate3;
    varying highp vec2 textureCoordinate4;
    uniform sampler2D inputImageTexture; uniform sampler2D inputImageTexture2; uniform sampler2D inputImageTexture3;
    uniform sampler2D inputImageTexture4;
    void main() {
        gl_FragColor = vec4(texture2D(inputImageTexture, textureCoordinate).r,
                            texture2D(inputImageTexture2, textureCoordinate2).r,
                            texture2D(inputImageTexture3, textureCoordinate3).r,
                            texture2D(inputImageTexture4, textureCoordinate4).r);
    })";

class MultiInputTest : public GraphFixture {
protected:
    /// A filter with a source for each slot.
    template <class Filter>
    std::shared_ptr<Filter> make(const char* shader, int slots)
    {
        auto filter = std::make_shared<Filter>(shader);
        EXPECT_TRUE(filter->canRender());
        for (int slot = 0; slot < slots; ++slot) {
            m_sources.push_back(std::make_shared<FrameSource>());
            EXPECT_EQ(filter->nextAvailableTextureIndex(), slot);
            m_sources.back()->addTarget(filter);
        }
        m_end = consumerOf(*filter);
        m_end->keepPixels(true);
        return filter;
    }
    void stream(int slot, int number, std::uint8_t red = 100)
    {
        m_sources.at(static_cast<std::size_t>(slot))->push({2, 2}, {red, 0, 0, 255}, second(number));
    }
    void still(int slot, std::uint8_t red = 100)
    {
        m_sources.at(static_cast<std::size_t>(slot))->pushStill(plainPicture(2, 2, {red, 0, 0, 255}));
    }
    std::size_t drawn() const { return m_end->frames().size(); }

    std::vector<std::shared_ptr<FrameSource>> m_sources;
    std::shared_ptr<CountingConsumer> m_end;
};

TEST_F(MultiInputTest, TwoStillsDrawWhenTheSecondArrives)
{
    make<GPUImageTwoInputFilter>(kTwo, 2);
    still(0, 10);
    EXPECT_EQ(drawn(), 0U);
    still(1, 20);
    ASSERT_EQ(drawn(), 1U);
    EXPECT_TRUE(m_end->last().time.isIndefinite());
    EXPECT_TRUE(samePixels(m_end->last().pixels, plainPicture(2, 2, {10, 20, 0, 255})));
    still(1, 40);
    EXPECT_EQ(drawn(), 1U) << "it waits for the other";
    still(0, 30);
    EXPECT_TRUE(samePixels(m_end->last().pixels, plainPicture(2, 2, {30, 40, 0, 255})));
    EXPECT_EQ(drawn(), 2U);
}

TEST_F(MultiInputTest, EachFrameOfAStreamDrawsBesideAStill)
{
    for (const int streaming : {0, 1}) {
        SCOPED_TRACE(streaming);
        m_sources.clear();
        make<GPUImageTwoInputFilter>(kTwo, 2);
        still(1 - streaming, 50);
        EXPECT_EQ(drawn(), 0U);
        for (int number = 1; number <= 3; ++number) {
            stream(streaming, number, static_cast<std::uint8_t>(number));
            ASSERT_EQ(drawn(), static_cast<std::size_t>(number));
            EXPECT_EQ(m_end->last().time, second(number));
            const auto red = static_cast<std::uint8_t>(number);
            EXPECT_TRUE(samePixels(m_end->last().pixels,
                                   plainPicture(2, 2, streaming == 0 ? Rgba{red, 50, 0, 255} : Rgba{50, red, 0, 255})));
        }
    }
}

TEST_F(MultiInputTest, AFrameThatWasGivenBackIsNotReadAgain)
{
    // What a filter makes of a still: it counts, and has gone back to the pool when the next frame of the stream draws.
    make<GPUImageTwoInputFilter>(kTwo, 2);
    m_sources[1]->push({2, 2}, {50, 0, 0, 255}, kCMTimeIndefinite);
    for (int number = 1; number <= 4; ++number) {
        stream(0, number);
        ASSERT_EQ(drawn(), static_cast<std::size_t>(number));
        EXPECT_EQ(pixelAt(m_end->last().pixels, 0, 0),
                  (Rgba{100, static_cast<std::uint8_t>(number == 1 ? 50 : 0), 0, 255}));
        EXPECT_EQ(idleFramebuffers(), GPUImageFramebufferCache::livingCount());
    }
}

TEST_F(MultiInputTest, TwoStreamsDrawInPairsWithTheFirstOnesTime)
{
    make<GPUImageTwoInputFilter>(kTwo, 2);
    stream(1, 8);
    stream(0, 7);
    stream(0, 9);
    EXPECT_EQ(drawn(), 1U);
    stream(1, 10);
    ASSERT_EQ(drawn(), 2U);
    EXPECT_EQ(m_end->frames()[0].time, second(7));
    EXPECT_EQ(m_end->frames()[1].time, second(9));
    EXPECT_EQ(idleFramebuffers(), GPUImageFramebufferCache::livingCount()) << "all counts have been given back";
}

TEST_F(MultiInputTest, AnInputThatOutrunsTheOtherTakesNoMemory)
{
    make<GPUImageTwoInputFilter>(kTwo, 2);
    stream(0, 0);
    stream(0, 1);
    const std::size_t living = GPUImageFramebufferCache::livingCount();
    for (int number = 2; number < 100; ++number)
        stream(0, number);
    EXPECT_LE(GPUImageFramebufferCache::livingCount(), living + 1);
    stream(1, 100, 7);
    EXPECT_EQ(drawn(), 1U);
    EXPECT_EQ(m_end->last().time, second(99));
}

TEST_F(MultiInputTest, SourcesFillTheNextSlotAndRemovalFreesIt)
{
    const auto filter = make<GPUImageTwoInputFilter>(kTwo, 2);
    EXPECT_EQ(filter->nextAvailableTextureIndex(), 1) << "a third source takes the second one's slot";
    m_sources[0]->removeTarget(filter);
    EXPECT_EQ(filter->nextAvailableTextureIndex(), 0);
    m_sources[0]->addTarget(filter);
    still(1, 5);
    still(0, 4);
    EXPECT_EQ(drawn(), 1U);

    const auto four = make<GPUImageFourInputFilter>(kFour, 0);
    for (int slot = 0; slot < 4; ++slot) {
        EXPECT_EQ(four->nextAvailableTextureIndex(), slot);
        m_sources.push_back(std::make_shared<FrameSource>());
        m_sources.back()->addTarget(four);
    }
    EXPECT_EQ(four->nextAvailableTextureIndex(), 3);
    m_sources[4]->removeTarget(four); // slot 2
    EXPECT_EQ(four->nextAvailableTextureIndex(), 2);
}

TEST_F(MultiInputTest, TheFirstInputGivesTheSizeAndEachSlotItsRotation)
{
    make<GPUImageTwoInputFilter>(kTwo, 2);
    const CGImage first = makePicture(4, 2, [](int x, int y) {
        return Rgba{static_cast<std::uint8_t>(60 * x + y), 0, 0, 255};
    });
    const CGImage secondPicture = makePicture(2, 4, [](int x, int y) {
        return Rgba{static_cast<std::uint8_t>(60 * y + x), 0, 0, 255};
    });
    m_sources[1]->setRotation(kGPUImageRotateRight);
    m_sources[1]->push(secondPicture, second(1));
    m_sources[0]->push(first, second(1));
    ASSERT_EQ(drawn(), 1U);
    EXPECT_TRUE(samePixels(m_end->last().pixels, makePicture(4, 2, [&](int x, int y) {
                               return Rgba{pixelAt(first, x, y)[0], pixelAt(secondPicture, y, 3 - x)[0], 0, 255};
                           })));

    // A second input of another size is stretched over the first.
    m_sources[1]->setRotation(kGPUImageNoRotation);
    m_sources[1]->push({1, 1}, {200, 0, 0, 255}, second(2));
    m_sources[0]->push(first, second(2));
    EXPECT_EQ(m_end->last().size, (CGSize{4, 2}));
    EXPECT_EQ(pixelAt(m_end->last().pixels, 3, 1), (Rgba{181, 200, 0, 255}));
}

TEST_F(MultiInputTest, ASlotWhoseCheckIsDisabledIsNotWaitedFor)
{
    const auto filter = make<GPUImageTwoInputFilter>(kTwo, 2);
    stream(1, 1, 20);
    stream(0, 1, 10);
    EXPECT_EQ(drawn(), 1U);
    filter->disableSecondFrameCheck();
    stream(0, 2, 11);
    stream(0, 3, 12);
    EXPECT_EQ(drawn(), 3U);

    const auto three = make<GPUImageThreeInputFilter>(kThree, 0);
    for (int slot = 0; slot < 3; ++slot) {
        m_sources.push_back(std::make_shared<FrameSource>());
        m_sources.back()->addTarget(three);
    }
    three->disableFirstFrameCheck();
    three->disableThirdFrameCheck();
    m_sources[2]->pushStill(plainPicture(2, 2, {1, 0, 0, 255}));
    m_sources[4]->pushStill(plainPicture(2, 2, {3, 0, 0, 255}));
    m_end->forget();
    for (int number = 1; number <= 2; ++number) {
        m_sources[3]->push({2, 2}, {2, 0, 0, 255}, second(number));
        ASSERT_EQ(drawn(), static_cast<std::size_t>(number));
        EXPECT_EQ(m_end->last().time, second(number));
        EXPECT_TRUE(samePixels(m_end->last().pixels, plainPicture(2, 2, {1, 2, 3, 255})));
    }
}

TEST_F(MultiInputTest, ThreeInputsDrawWhenAllAreThere)
{
    make<GPUImageThreeInputFilter>(kThree, 3);
    stream(2, 3, 30);
    stream(0, 1, 10);
    EXPECT_EQ(drawn(), 0U);
    stream(1, 2, 20);
    ASSERT_EQ(drawn(), 1U);
    EXPECT_EQ(m_end->last().time, second(2)) << "that of the frame that completed the set";
    EXPECT_TRUE(samePixels(m_end->last().pixels, plainPicture(2, 2, {10, 20, 30, 255})));
    EXPECT_EQ(idleFramebuffers(), GPUImageFramebufferCache::livingCount());

    // Beside stills every frame of a stream draws.
    still(0, 11);
    still(1, 21);
    for (int number = 5; number <= 7; ++number) {
        stream(2, number, 31);
        EXPECT_EQ(m_end->last().time, second(number));
    }
    EXPECT_EQ(drawn(), 4U);
    EXPECT_TRUE(samePixels(m_end->last().pixels, plainPicture(2, 2, {11, 21, 31, 255})));
}

TEST_F(MultiInputTest, OfFourInputsTheFourthMustNotComeLast)
{
    make<GPUImageFourInputFilter>(kFour, 4);
    stream(3, 1, 40);
    stream(0, 2, 10);
    stream(2, 3, 30);
    EXPECT_EQ(drawn(), 0U);
    stream(1, 4, 20);
    ASSERT_EQ(drawn(), 1U);
    EXPECT_EQ(m_end->last().time, second(4));
    EXPECT_TRUE(samePixels(m_end->last().pixels, plainPicture(2, 2, {10, 20, 30, 40})));
    EXPECT_EQ(idleFramebuffers(), GPUImageFramebufferCache::livingCount());

    for (const int slot : {0, 1, 2, 3})
        stream(slot, 5 + slot);
    EXPECT_EQ(drawn(), 1U) << "three have arrived: the fourth is passed over";
}

TEST_F(MultiInputTest, AFourthInputThatStreamsBesideAStillDraws)
{
    make<GPUImageFourInputFilter>(kFour, 4);
    still(0, 10);
    for (int number = 1; number <= 2; ++number) {
        stream(3, number, 40);
        ASSERT_EQ(drawn(), static_cast<std::size_t>(number));
        EXPECT_EQ(m_end->last().time, second(number));
        const Rgba pixel = pixelAt(m_end->last().pixels, 0, 0);
        EXPECT_EQ(pixel[0], 10);
        EXPECT_EQ(pixel[3], 40);
    }
}

TEST_F(MultiInputTest, PreventedRenderingGivesAllCountsBack)
{
    const auto filter = make<GPUImageFourInputFilter>(kFour, 4);
    filter->setPreventRendering(true);
    for (const int slot : {3, 0, 1, 2})
        stream(slot, slot);
    EXPECT_EQ(idleFramebuffers(), GPUImageFramebufferCache::livingCount());
}

} // namespace
} // namespace lamina::test
