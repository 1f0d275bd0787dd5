#include "TestPictures.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/DispatchSemaphore.h"
#include "progressive/NYXProgressiveImageView.h"
#include "progressive/ProgressiveCache_p.h"
#include "progressive/ProgressivePace_p.h"
#include "progressive/ProgressiveState_p.h"

#include <gtest/gtest.h>
#include <memory>

namespace lamina {
namespace {

TEST(ProgressiveParts, TheDecodedPartStandsAtTheTop)
{
    using test::Rgba;
    const struct {
        CGImageAlphaInfo alpha;
        Rgba drawn, below;
    } cases[] = {
        {CGImageAlphaInfo::NoneSkipLast, {255, 200, 100, 40}, {255, 0, 0, 0}},
        {CGImageAlphaInfo::Last, {102, 80, 40, 16}, {0, 0, 0, 0}},
    };
    for (const auto& each : cases) {
        const CGImage partial = test::solidPicture(5, 2, {200, 100, 40, 102}, each.alpha);
        const CGImage frame = NYXProgressiveImageView::createTransitoryImage(partial, {5, 4});
        ASSERT_EQ(frame.size(), (IntSize{5, 4}));
        for (int y = 0; y < 4; ++y)
            EXPECT_TRUE(test::pixelMatches(frame, 3, y, y < 2 ? each.drawn : each.below)) << y;
        EXPECT_FALSE(NYXProgressiveImageView::createTransitoryImage(partial, {5, 1}));
    }
    EXPECT_FALSE(NYXProgressiveImageView::createTransitoryImage({}, {5, 4}));
}

TEST(ProgressiveParts, CachedFilesByNameAndAge)
{
    EXPECT_EQ(progressivecache::fileName("http://example.org/beach.jpg?size=2"), "d6f25f26356729219f4ac7092bd48b8f");
    EXPECT_EQ(progressivecache::fileName("http://example.org/\xFF"), "");
    EXPECT_TRUE(progressivecache::isFresh(604'800, 604'800));
}

TEST(ProgressiveParts, PaceFollowsWhatHasComeAndWhatItCosts)
{
    using Due = ProgressivePace::Due;
    ProgressivePace pace;
    EXPECT_EQ(pace.due(100, 6400, 10), Due::Now);
    pace.made(100, 10, 11);
    EXPECT_EQ(pace.due(6400, 6400, 100), Due::No); // the last is on its way
    pace.arrived();
    EXPECT_EQ(pace.due(199, 6400, 100), Due::No);
    EXPECT_EQ(pace.due(200, 6400, 14.5), Due::Later);
    EXPECT_DOUBLE_EQ(pace.wait(14.5), 0.5);
    EXPECT_EQ(pace.due(200, 6400, 15), Due::Now);
    EXPECT_EQ(pace.due(106, -1, 15), Due::Now); // without a length a sixteenth of what there was
    EXPECT_EQ(pace.due(105, -1, 15), Due::No);
}

TEST(ProgressiveParts, AQueueThatWaitsForMainGoesOnWhenTheViewGoes)
{
    constexpr double kPatience = 20;
    NYXProgressiveImageView view;
    const auto state = std::make_shared<ProgressiveState>(view);
    DispatchSemaphore waits{0};
    DispatchSemaphore goesOn{0};
    DispatchQueue queue("test");
    DispatchQueue::main().setWakeHandler([&] { waits.signal(); });
    queue.async([&] {
        state->onMainAndWait([](const ProgressiveState&) { FAIL(); });
        goesOn.signal();
    });
    EXPECT_TRUE(waits.wait(kPatience));
    EXPECT_FALSE(goesOn.wait(0.1));
    state->viewGoes();
    EXPECT_TRUE(goesOn.wait(kPatience)); // though nobody pumps
    DispatchQueue::main().setWakeHandler({});
    DispatchQueue::main().drain();
}

} // namespace
} // namespace lamina
