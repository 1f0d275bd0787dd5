#include "editors/common/LatestWork.h"

#include "TestPictures.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/DispatchSemaphore.h"

#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <vector>

namespace lamina::test {
namespace {

/// Numbers as pictures: of so many pixels a row.
class LatestPictures : public testing::Test {
protected:
    static UIImage picture(int number) { return UIImage(solidPicture(number, 1, Rgba{1, 2, 3, 255})); }
    static int numberOf(const UIImage& image) { return static_cast<int>(image.size().width); }

    void ask(int number)
    {
        work->run([number] { return picture(number); },
                  [this](const UIImage& image) { landed.push_back(numberOf(image)); });
    }
    /// Has one begin that is made when `go` is signalled.
    void askHeld(int number)
    {
        work->run(
            [this, number] {
                began.signal();
                go.wait();
                return picture(number);
            },
            [this](const UIImage& image) { landed.push_back(numberOf(image)); });
        began.wait();
    }

    DispatchSemaphore began{0};
    DispatchSemaphore go{0};
    std::optional<LatestWork> work{std::in_place};
    std::vector<int> landed;
};

TEST_F(LatestPictures, WhatHasBegunLandsAndOfWhatWaitsTheNewest)
{
    askHeld(1);
    ask(2);
    ask(3);
    go.signal();
    EXPECT_TRUE(landed.empty()); // never but by the main queue
    DispatchQueue::main().runUntilIdle();
    EXPECT_EQ(landed, (std::vector{1, 3}));
    EXPECT_FALSE(work->isBusy());
}

TEST_F(LatestPictures, OfOneLaneDoNotWaitForAnother)
{
    LatestWork coarse(LatestWork::Lane::Coarse);
    askHeld(1);
    coarse.run([] { return picture(2); }, [this](const UIImage& image) { landed.push_back(numberOf(image)); });
    coarse.land();
    EXPECT_EQ(landed, std::vector{2});
    go.signal();
    DispatchQueue::main().runUntilIdle();
    EXPECT_EQ(landed, (std::vector{2, 1}));
}

TEST_F(LatestPictures, LandingAtOnceIsInOrderAndHappensOnce)
{
    ask(1);
    ask(2);
    work->run([] { return UIImage(); },
              [this](const UIImage& image) {
                  EXPECT_FALSE(image);
                  ask(4); // outstanding too
              });
    work->land();
    EXPECT_FALSE(work->isBusy());
    EXPECT_EQ(landed, (std::vector{1, 4}));
    DispatchQueue::main().runUntilIdle();
    EXPECT_EQ(landed.size(), 2U);
}

TEST_F(LatestPictures, NothingLandsOnceForgottenOrWithoutItsOwner)
{
    askHeld(1);
    ask(2);
    work->forget();
    EXPECT_FALSE(work->isBusy());
    ask(3);
    go.signal();
    DispatchQueue::main().runUntilIdle();
    EXPECT_EQ(landed, std::vector{3});

    askHeld(4);
    work.reset(); // doesn't wait for it
    go.signal();
    DispatchQueue::main().runUntilIdle();
    EXPECT_EQ(landed, std::vector{3});
}

} // namespace
} // namespace lamina::test
