#include "GLCalls.h"
#include "GraphFixture.h"
#include "TestPictures.h"
#include "gpu/core/GPUImageTwoInputFilter.h"
#include "gpu/core/GPUImageTwoPassFilter.h"
#include "platform/image/pixels/CGImage.h"

#include <cstdint>
#include <fstream>
#include <thread>

namespace lamina::test {
namespace {

/// The process's memory in bytes.
std::size_t residentBytes()
{
    std::ifstream statm("/proc/self/statm");
    std::size_t total = 0;
    std::size_t resident = 0;
    statm >> total >> resident;
    return resident * 4096;
}

using EnduranceTest = GraphFixture;

TEST_F(EnduranceTest, FramesTakeNothing)
{
    const auto first = multiplying(0.5F);
    const auto twice = std::make_shared<GPUImageTwoPassFilter>(kGPUImagePassthroughFragmentShaderString,
                                                               kGPUImagePassthroughFragmentShaderString);
    const auto both = std::make_shared<GPUImageTwoInputFilter>(kGPUImagePassthroughFragmentShaderString);
    m_source->addTarget(first);
    first->addTarget(twice);
    first->addTarget(both);
    twice->addTarget(both);
    const CGImage picture = chartPicture(16, 16);
    const auto run = [&](int frames) {
        for (int i = 0; i < frames; ++i) {
            first->setFloat(0.1F, "factor");
            m_source->push(picture, second(i));
        }
    };
    run(100);
    const GLCalls calls = valueFromVideoProcessingQueue(glCallsSoFar);
    const std::size_t living = GPUImageFramebufferCache::livingCount();
    [[maybe_unused]] const std::size_t memory = residentBytes();
    run(2000);
    EXPECT_EQ((valueFromVideoProcessingQueue(glCallsSoFar) - calls).objectsMade(), 0);
    EXPECT_EQ(GPUImageFramebufferCache::livingCount(), living);
    EXPECT_EQ(idleFramebuffers(), living);
#ifndef __SANITIZE_ADDRESS__ // which keeps memory to find late uses
    EXPECT_LT(residentBytes(), memory + (std::size_t{1} << 20));
#endif
}

TEST_F(EnduranceTest, ThreadsFilterConnectAndLeaveAtOnce)
{
    const auto filterPictures = [](float factor, std::uint8_t red) {
        const auto filter = multiplying(factor);
        for (int i = 0; i < 50; ++i) {
            filter->setFloat(factor, "factor");
            ASSERT_TRUE(imagesMatch(filter->newCGImageByFilteringCGImage(solidPicture(31, 17, {200, 0, 0, 0})),
                                    solidPicture(31, 17, {red, 0, 0, 0})));
        }
    };
    std::thread one(filterPictures, 0.5F, 100);
    std::thread other(filterPictures, 0.2F, 40);
    std::thread connecting([&] {
        for (int i = 0; i < 50; ++i) {
            const auto filter = multiplying(0.2F);
            m_source->addTarget(filter);
            m_source->removeTarget(filter);
        }
    });
    for (int i = 0; i < 100; ++i)
        m_source->push({8, 8}, {1, 2, 3, 4}, second(i));
    for (std::thread* thread : {&one, &other, &connecting})
        thread->join();
    EXPECT_TRUE(m_source->targets().empty());
    EXPECT_EQ(idleFramebuffers(), GPUImageFramebufferCache::livingCount());
}

#ifndef NDEBUG
TEST(MisuseDeathTest, WorkOfTheQueueElsewhereIsCaught)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto filter = std::make_shared<GPUImageFilter>();
    const auto framebuffer = GPUImageContext::sharedFramebufferCache().fetchFramebufferForSize({4, 4}, false);
    EXPECT_DEATH(filter->newFrameReadyAtTime(kCMTimeZero, 0), "Assert");
    EXPECT_DEATH(framebuffer->lock(), "Assert");
    GPUImageContext own;
    EXPECT_DEATH(runSynchronouslyOnContextQueue(own, [&] { framebuffer->lock(); }), "Assert");
    EXPECT_DEATH(runSynchronouslyOnVideoProcessingQueue([] { DispatchQueue::main().sync([] {}); }), "Assert");
}
#endif

} // namespace
} // namespace lamina::test
