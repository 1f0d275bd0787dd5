#include "GLCalls.h"
#include "GraphFixture.h"
#include "TestPictures.h"
#include "gpu/core/GPUImage3x3TextureSamplingFilter.h"
#include "gpu/core/GPUImageBuffer.h"
#include "gpu/core/GPUImageFilterGroup.h"
#include "gpu/core/GPUImageFourInputFilter.h"
#include "gpu/core/GPUImageTwoPassTextureSamplingFilter.h"
#include "platform/image/pixels/CGImage.h"

#include <cstdint>
#include <fstream>
#include <thread>
#include <vector>

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

struct ThreePasses : GPUImageFilter {
    int passCount() const override { return 3; }
};

/// A member for each base: a stream goes through all of them, and a still beside it into one.
struct AllBases {
    using Stage = std::shared_ptr<GPUImageStage>;

    AllBases(GPUImageOutput& stream, GPUImageOutput& still)
    {
        const auto fill = [](const Stage& stage, const std::vector<GPUImageOutput*>& slots) {
            for (std::size_t slot = 0; slot < slots.size(); ++slot)
                slots[slot]->addTarget(stage, static_cast<int>(slot));
            return stage;
        };
        const char* const passing = kGPUImagePassthroughFragmentShaderString;
        group->addFilter(multiplying(0.25F));
        group->setInitialFilters({group->filterAtIndex(0)});
        group->setTerminalFilter(group->filterAtIndex(0));
        // First: of four slots the last must not be filled last.
        const Stage ofGroup = fill(group, {&stream});
        const Stage twice = fill(std::make_shared<GPUImageTwoPassFilter>(passing, passing), {&stream});
        const char* const corners = kGPUImageVertexShaderString;
        const Stage sampling =
            fill(std::make_shared<GPUImageTwoPassTextureSamplingFilter>(corners, passing, corners, passing), {&stream});
        fill(first, {&stream});
        const Stage grid = fill(std::make_shared<GPUImage3x3TextureSamplingFilter>(passing), {first.get()});
        const Stage thrice = fill(std::make_shared<ThreePasses>(), {grid.get()});
        const Stage buffer = fill(std::make_shared<GPUImageBuffer>(), {thrice.get()});
        const Stage kept = fill(std::make_shared<GPUImageFilter>(), {&still});
        ends = {fill(std::make_shared<GPUImageTwoInputFilter>(passing), {buffer.get(), kept.get()}),
                fill(std::make_shared<GPUImageTwoInputFilter>(passing), {first.get(), buffer.get()}),
                fill(std::make_shared<GPUImageThreeInputFilter>(passing), {first.get(), sampling.get(), twice.get()}),
                fill(std::make_shared<GPUImageFourInputFilter>(passing),
                     {buffer.get(), twice.get(), sampling.get(), ofGroup.get()})};
        for (const Stage& end : ends)
            end->setFrameProcessingCompletionBlock([this](GPUImageOutput&, const CMTime&) { ++frames; });
    }

    std::shared_ptr<GPUImageFilter> first = multiplying(0.5F);
    std::shared_ptr<GPUImageFilterGroup> group = std::make_shared<GPUImageFilterGroup>();
    std::vector<Stage> ends;
    int frames = 0;
};

TEST_F(EnduranceTest, FramesTakeNothing)
{
    std::size_t living = 0;
    {
        FrameSource still;
        AllBases bases(*m_source, still);
        const CGImage picture = chartPicture(4, 4);
        still.push(picture, kCMTimeIndefinite);
        const auto run = [&](int frames) {
            for (int i = 0; i < frames; ++i) {
                bases.first->setFloat(0.1F, "factor");
                m_source->push(picture, second(i));
            }
        };
        run(100);
        const GLCalls calls = valueFromVideoProcessingQueue(glCallsSoFar);
        living = GPUImageFramebufferCache::livingCount();
        [[maybe_unused]] const std::size_t memory = residentBytes();
        run(10000);
        EXPECT_EQ(bases.frames, 4 * 10100) << "all ends draw every frame";
        EXPECT_EQ((valueFromVideoProcessingQueue(glCallsSoFar) - calls).objectsMade(), 0);
        EXPECT_EQ(GPUImageFramebufferCache::livingCount(), living);
#ifndef __SANITIZE_ADDRESS__ // which keeps memory to find late uses
        EXPECT_LT(residentBytes(), memory + (std::size_t{1} << 20));
#endif
        m_source->removeAllTargets();
    }
    EXPECT_EQ(idleFramebuffers(), living) << "all counts have been given back";
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
