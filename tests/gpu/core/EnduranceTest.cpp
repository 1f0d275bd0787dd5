#include "GLCalls.h"
#include "GraphFixture.h"
#include "TestPictures.h"
#include "gpu/core/GPUImage3x3TextureSamplingFilter.h"
#include "gpu/core/GPUImageBuffer.h"
#include "gpu/core/GPUImageFilterGroup.h"
#include "gpu/core/GPUImageFourInputFilter.h"
#include "gpu/core/GPUImageTwoInputFilter.h"
#include "gpu/core/GPUImageTwoPassTextureSamplingFilter.h"
#include "gpu/sources/GPUImageRawDataInput.h"
#include "gpu/sources/GPUImageRawDataOutput.h"
#include "platform/image/pixels/CGImage.h"

#include <array>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <thread>
#include <vector>

namespace lamina::test {
namespace {

/// Mesa's software driver draws without threads of its own in this program. With them, its rasterizer (22.3) signals a
/// fence that whoever waited for it has freed already, once in some hundred thousand draws on a busy machine: the heap
/// is damaged, or the process stands still in `pthread_cond_broadcast`.
[[maybe_unused]] const int kDrawsWithoutThreads = setenv("LP_NUM_THREADS", "0", 0);

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

struct ThreePasses : GPUImageFilter {
    int passCount() const override { return 3; }
};

/// The filter with these in its slots.
template <class Stage>
std::shared_ptr<Stage> fed(std::shared_ptr<Stage> stage, const std::vector<std::shared_ptr<GPUImageOutput>>& slots)
{
    for (std::size_t slot = 0; slot < slots.size(); ++slot)
        slots[slot]->addTarget(stage, static_cast<int>(slot));
    return stage;
}

TEST_F(EnduranceTest, FramesOfAStreamThroughEveryBaseTakeNothing)
{
    const char* const through = kGPUImagePassthroughFragmentShaderString;
    const char* const corners = kGPUImageVertexShaderString;
    const auto still = std::make_shared<FrameSource>();
    const auto group = std::make_shared<GPUImageFilterGroup>();
    group->addFilter(multiplying(0.25F));
    group->setInitialFilters({group->filterAtIndex(0)});
    group->setTerminalFilter(group->filterAtIndex(0));
    fed(group, {m_source}); // first: of four slots the last must not be filled last
    const auto twice = fed(std::make_shared<GPUImageTwoPassFilter>(through, through), {m_source});
    const auto first = fed(multiplying(0.5F), {m_source});
    const auto sampling =
        fed(std::make_shared<GPUImageTwoPassTextureSamplingFilter>(corners, through, corners, through), {first});
    const auto grid = fed(std::make_shared<GPUImage3x3TextureSamplingFilter>(through), {first});
    const auto buffer = fed(std::make_shared<GPUImageBuffer>(), {fed(std::make_shared<ThreePasses>(), {grid})});
    const auto kept = fed(std::make_shared<GPUImageFilter>(), {still});
    const std::array<std::shared_ptr<GPUImageFilter>, 3> ends{
        fed(std::make_shared<GPUImageTwoInputFilter>(through), {buffer, kept}),
        fed(std::make_shared<GPUImageThreeInputFilter>(through), {first, sampling, twice}),
        fed(std::make_shared<GPUImageFourInputFilter>(through), {buffer, twice, sampling, group})};
    const auto raw = std::make_shared<GPUImageRawDataInput>(std::vector<std::uint8_t>(64), CGSize{4, 4});
    const auto bytes = fed(std::make_shared<GPUImageRawDataOutput>(CGSize{3, 5}, false), {raw});
    int drawn = 0;
    for (const auto& end : ends)
        end->setFrameProcessingCompletionBlock([&](GPUImageOutput&, const CMTime&) { ++drawn; });
    const CGImage picture = chartPicture(4, 4);
    still->push(picture, kCMTimeIndefinite);
    const auto run = [&](int frames) {
        onQueue([&] { // without a hop a frame
            for (int i = 0; i < frames; ++i) {
                first->setFloat(0.1F, "factor");
                m_source->push(picture, second(i));
                ASSERT_TRUE(raw->uploadBytes(std::vector(64, static_cast<std::uint8_t>(i))).ok());
                raw->processData();
                if (i % 3 == 0)
                    continue; // never read
                ASSERT_EQ(bytes->rawBytesForImage().back(), static_cast<std::uint8_t>(i));
            }
        });
    };
    run(100);
    const GLCalls calls = valueFromVideoProcessingQueue(glCallsSoFar);
    const std::size_t living = GPUImageFramebufferCache::livingCount();
    const std::size_t idle = idleFramebuffers();
    [[maybe_unused]] const std::size_t memory = residentBytes();
    run(10000);
    EXPECT_EQ(drawn, 3 * 10100);
    EXPECT_EQ((valueFromVideoProcessingQueue(glCallsSoFar) - calls).objectsMade(), 0);
    EXPECT_EQ(GPUImageFramebufferCache::livingCount(), living);
    EXPECT_EQ(idleFramebuffers(), idle);
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
