// Where thumbnails come from, and the order in which they are made.
#include "CommandRunner.h"
#include "FileDisguise.h"
#include "TestPictures.h"
#include "platform/base/Causes.h"
#include "platform/base/DispatchSemaphore.h"
#include "platform/base/MemoryWarning.h"
#include "platform/photos/AssetThumbnails_p.h"

#include <gtest/gtest.h>

namespace lamina::test {
namespace {

void forgetMemory()
{
    NotificationCenter::defaultCenter().post(UIApplicationDidReceiveMemoryWarningNotification);
}

class ThumbnailSources : public testing::Test {
protected:
    /// What stands in the middle of the file's thumbnail; empty when there is none.
    std::optional<Rgba> middle(const std::string& path, double side = 100)
    {
        const AssetPictureRequest request{{.localIdentifier = path, .path = path},
                                          {side, side},
                                          PHImageContentMode::AspectFill,
                                          PHImageRequestOptionsResizeMode::Fast};
        const Result<UIImage> picture = thumbnails.load(request, nullptr);
        EXPECT_TRUE(DispatchQueue::main().runUntilIdle(20)); // what is kept has been written
        if (!picture)
            return std::nullopt;
        EXPECT_FALSE(picture->cgImage().hasAlpha());
        return pixelAt(picture->cgImage(), picture->pixelSize().width / 2, picture->pixelSize().height / 2);
    }
    std::string photo(const char* name, Rgba color, CGImageAlphaInfo alpha = CGImageAlphaInfo::NoneSkipLast)
    {
        writePng(home.path(name), solidPicture(800, 600, color, alpha));
        return home.path(name);
    }
    static testing::AssertionResult isNear(const std::optional<Rgba>& got, const Rgba& wanted)
    {
        if (got && difference(*got, wanted) <= 3)
            return testing::AssertionSuccess();
        return testing::AssertionFailure() << (got ? "another colour" : "no picture");
    }

    const TemporaryFolder home;
    AssetThumbnails thumbnails{{home.path("kept"), {}}};
    static constexpr Rgba kRed{220, 30, 20, 255};
    static constexpr Rgba kBlue{20, 30, 220, 255};
};

TEST_F(ThumbnailSources, AreReadOnceForAsLongAsAFileStays)
{
    const std::string path = photo("a.png", kRed);
    EXPECT_TRUE(isNear(middle(path), kRed));
    disguise(path, "no picture any more");
    EXPECT_TRUE(isNear(middle(path), kRed)) << "from memory";
    forgetMemory();
    EXPECT_TRUE(isNear(middle(path), kRed)) << "from disk";
    EXPECT_FALSE(middle(path, 620)) << "what is kept is too small";
    setModified(path, {1'000'000'000, 0});
    EXPECT_FALSE(middle(path)) << "a file that was touched is another one";

    photo("b.png", kBlue);
    std::filesystem::rename(home.path("b.png"), path);
    EXPECT_TRUE(isNear(middle(path), kBlue)) << "replaced";
}

TEST_F(ThumbnailSources, OfFilesThatHoldNoPictureAreNotTriedAgain)
{
    const std::string good = readFile(photo("a.png", kRed));
    const std::string path = home.path("b.png");
    EXPECT_FALSE(middle(path)) << "not there yet";
    writeFile(path, std::string(good.size(), 'x'));
    EXPECT_FALSE(middle(path));
    disguise(path, good);
    EXPECT_FALSE(middle(path)) << "known";
    setModified(path, {1'000'000'000, 0});
    EXPECT_TRUE(isNear(middle(path), kRed));
}

TEST_F(ThumbnailSources, LieOnWhiteFromWhereverTheyCome)
{
    const std::string path = photo("a.png", {200, 0, 0, 128}, CGImageAlphaInfo::Last);
    const Rgba onWhite{227, 127, 127, 255};
    EXPECT_TRUE(isNear(middle(path), onWhite));
    forgetMemory();
    EXPECT_TRUE(isNear(middle(path), onWhite));
}

TEST(ThumbnailMemory, HoldsWhatWasUsedLast)
{
    const UIImage picture(solidPicture(100, 100, {1, 2, 3, 255})); // 40 kB
    ThumbnailMemory memory(100'000);
    const AssetPictureRequest request{{}, {100, 100}, PHImageContentMode::AspectFill};
    const auto file = [](std::uint64_t inode) { return FileStamp{1, inode, 0, 0}; };
    memory.keep(file(1), request, picture);
    memory.keep(file(2), request, picture);
    EXPECT_TRUE(memory.find(file(1), request));
    memory.keep(file(3), request, picture);
    EXPECT_TRUE(memory.find(file(1), request));
    EXPECT_FALSE(memory.find(file(2), request));
    EXPECT_TRUE(memory.findAny(file(3)));
    const AssetPictureRequest larger{{}, {200, 200}, PHImageContentMode::AspectFill};
    EXPECT_FALSE(memory.find(file(3), larger));
    memory.keepUnreadable(file(4));
    EXPECT_TRUE(memory.find(file(4), larger));
    EXPECT_FALSE(*memory.find(file(4), larger));
}

TEST(PictureWork, IsTakenUpByRankAndWhatIsWithdrawnNever)
{
    using Rank = PictureWorkRank;
    PictureWorkers& workers = PictureWorkers::shared();
    DispatchSemaphore gates[2];
    for (DispatchSemaphore& gate : gates)
        workers.add(Rank::Look, [&gate] { gate.wait(20); });
    std::string order;
    const auto add = [&](Rank rank, char name, PictureWorkKind kind = PictureWorkKind::Ordinary) {
        return workers.add(
            rank, [&order, name] { order += name; }, kind);
    };
    add(Rank::Warm, 'w');
    add(Rank::Warm, 'W');
    add(Rank::Read, 'r');
    const auto withdrawn = add(Rank::Read, '!');
    add(Rank::Read, 'R');
    add(Rank::Short, 's');
    add(Rank::Short, 'S');
    add(Rank::Look, 'l');
    workers.withdraw(withdrawn);
    workers.withdraw(withdrawn);
    workers.withdraw({});
    gates[0].signal(); // the other thread stays away
    const auto finished = [&](std::size_t count) {
        return DispatchQueue::main().runUntil([&] { return order.size() == count; }, 0.02);
    };
    for (int i = 0; i < 500 && !finished(7); ++i) {
    }
    EXPECT_EQ(order, "lsSRrwW");
    gates[1].signal();
    EXPECT_TRUE(DispatchQueue::main().runUntilIdle(20));
}

TEST(PictureWork, ThatCannotBeStoppedLeavesAThreadToTheRest)
{
    PictureWorkers& workers = PictureWorkers::shared();
    DispatchSemaphore gate;
    std::atomic<int> done = 0;
    for (int i = 0; i < 3; ++i)
        workers.add(
            PictureWorkRank::Read,
            [&] {
                gate.wait(20);
                ++done;
            },
            PictureWorkKind::OneAtATime);
    DispatchSemaphore other;
    workers.add(PictureWorkRank::Warm, [&] { other.signal(); });
    EXPECT_TRUE(other.wait(10));
    EXPECT_EQ(done, 0);
    for (int i = 0; i < 3; ++i)
        gate.signal();
    EXPECT_TRUE(DispatchQueue::main().runUntilIdle(20));
    EXPECT_EQ(done, 3);
}

} // namespace
} // namespace lamina::test
