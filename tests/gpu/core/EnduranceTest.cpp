#include "GLCalls.h"
#include "GraphFixture.h"
#include "gpu/core/GPUImageTwoInputFilter.h"
#include "gpu/core/GPUImageTwoPassFilter.h"

#include <fstream>
#include <thread>

namespace lamina::test {
namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kMemoryIsKept = true; // by the sanitizer, to find late uses
#else
constexpr bool kMemoryIsKept = false;
#endif

/// The process's memory in bytes.
std::size_t residentBytes()
{
    std::ifstream statm("/proc/self/statm");
    std::size_t total = 0;
    std::size_t resident = 0;
    statm >> total >> resident;
    return resident * 4096;
}

std::shared_ptr<GPUImageFilter> adding(float amount)
{
    auto filter = std::make_shared<GPUImageFilter>(R"(
        varying highp vec2 textureCoordinate; uniform sampler2D inputImageTexture; uniform highp float amount;
        void main() { gl_FragColor = texture2D(inputImageTexture, textureCoordinate) + vec4(amount, 0.0, 0.0, 0.0); })");
    filter->setFloat(amount, "amount");
    return filter;
}

class EnduranceTest : public GraphFixture {};

TEST_F(EnduranceTest, TenThousandFramesTakeNothing)
{
    const auto source = std::make_shared<FrameSource>();
    const auto first = adding(0.1F);
    const auto twice = std::make_shared<GPUImageTwoPassFilter>(kGPUImagePassthroughFragmentShaderString,
                                                               kGPUImagePassthroughFragmentShaderString);
    const auto both = std::make_shared<GPUImageTwoInputFilter>(kGPUImagePassthroughFragmentShaderString);
    source->addTarget(first);
    first->addTarget(twice);
    first->addTarget(both);
    twice->addTarget(both);
    const auto end = consumerOf(*both);
    const CGImage picture = distinctPicture(16, 16);
    const auto run = [&](int frames) {
        for (int i = 0; i < frames; ++i) {
            first->setFloat(0.1F, "amount");
            source->push(picture, second(i));
            if (i % 100 == 0)
                end->forget();
        }
    };
    run(1000);
    const GLCalls calls = valueFromVideoProcessingQueue(glCallsSoFar);
    const std::size_t living = GPUImageFramebufferCache::livingCount();
    const std::size_t memory = residentBytes();
    run(10000);
    EXPECT_EQ((valueFromVideoProcessingQueue(glCallsSoFar) - calls).objectsMade(), 0);
    EXPECT_EQ(GPUImageFramebufferCache::livingCount(), living);
    EXPECT_EQ(idleFramebuffers(), living);
    if (!kMemoryIsKept) {
        EXPECT_LT(residentBytes(), memory + (std::size_t{2} << 20));
    }
}

TEST_F(EnduranceTest, RepeatedPicturesMakeNothingNew)
{
    const auto filter = adding(0.1F);
    const CGImage picture = distinctPicture(9, 7);
    for (int i = 0; i < 3; ++i)
        filter->newCGImageByFilteringCGImage(picture);
    const std::size_t living = GPUImageFramebufferCache::livingCount();
    const GLCalls before = valueFromVideoProcessingQueue(glCallsSoFar);
    for (int i = 0; i < 50; ++i)
        EXPECT_TRUE(filter->newCGImageByFilteringCGImage(picture));
    const GLCalls calls = valueFromVideoProcessingQueue(glCallsSoFar) - before;
    EXPECT_EQ(calls.objectsMade() - calls.uploads, 0);
    EXPECT_LE(calls.uploads, 50) << "one for each picture";
    EXPECT_EQ(GPUImageFramebufferCache::livingCount(), living);
}

TEST_F(EnduranceTest, TwoThreadsFilterAtOnce)
{
    const auto work = [](float amount, std::uint8_t red) {
        const auto filter = adding(amount);
        const CGImage picture = plainPicture(31, 17, {50, 60, 70, 255});
        const CGImage expected = plainPicture(31, 17, {red, 60, 70, 255});
        for (int i = 0; i < 50; ++i) {
            filter->setFloat(amount, "amount");
            ASSERT_TRUE(samePixels(filter->newCGImageByFilteringCGImage(picture), expected, 1)) << i;
        }
    };
    std::thread one(work, 0.2F, 101); // 50 + 51
    std::thread other(work, 0.4F, 152);
    one.join();
    other.join();
}

TEST_F(EnduranceTest, FiltersMayComeAndGoOnAnyThread)
{
    const auto source = std::make_shared<FrameSource>();
    std::thread worker([&] {
        for (int i = 0; i < 50; ++i) {
            const auto filter = adding(0.2F);
            source->addTarget(filter);
            std::this_thread::yield();
            source->removeTarget(filter);
        }
    });
    for (int i = 0; i < 200; ++i)
        source->push({8, 8}, {1, 2, 3, 4}, second(i));
    worker.join();
    EXPECT_TRUE(source->targets().empty());
    EXPECT_EQ(idleFramebuffers(), GPUImageFramebufferCache::livingCount());
}

#ifndef NDEBUG
TEST(MisuseDeathTest, WorkOfTheQueueElsewhereIsCaught)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto filter = std::make_shared<GPUImageFilter>();
    const auto framebuffer = GPUImageContext::sharedFramebufferCache().fetchFramebufferForSize({4, 4}, false);
    EXPECT_DEATH(filter->newFrameReadyAtTime(kCMTimeZero, 0), "Assert");
    EXPECT_DEATH(filter->setInputFramebuffer(framebuffer, 0), "Assert");
    EXPECT_DEATH(framebuffer->lock(), "Assert");
    EXPECT_DEATH(framebuffer->activateFramebuffer(), "Assert");
    EXPECT_DEATH(GPUImageContext::useImageProcessingContext(), "Assert");
    EXPECT_DEATH(GPUImageContext::setActiveShaderProgram(std::make_shared<GLProgram>("", "")), "Assert");
    EXPECT_DEATH(runSynchronouslyOnVideoProcessingQueue([] { DispatchQueue::main().sync([] {}); }), "Assert");
}
#endif

} // namespace
} // namespace lamina::test
