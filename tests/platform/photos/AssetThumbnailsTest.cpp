// Where thumbnails come from, and the order in which they are made.
#include "BusyWorkers.h"
#include "CommandRunner.h"
#include "FileDisguise.h"
#include "TestPictures.h"
#include "platform/base/MemoryWarning.h"
#include "platform/photos/AssetThumbnails_p.h"
#include "platform/photos/PHImageRequestOptions.h"

#include <gtest/gtest.h>
#include <utility>

namespace lamina::test {
namespace {

constexpr PHImageContentMode kFill = PHImageContentMode::AspectFill;

void forgetMemory()
{
    NotificationCenter::defaultCenter().post(UIApplicationDidReceiveMemoryWarningNotification);
}

class ThumbnailSources : public testing::Test {
protected:
    /// The middle of the file's thumbnail; all 0 when there is none.
    Rgba middle(const std::string& path, double side = 100)
    {
        const AssetPictureRequest request{{.localIdentifier = path, .path = path}, {side, side}, kFill};
        const Result<UIImage> picture = thumbnails.load(request, nullptr);
        EXPECT_TRUE(DispatchQueue::main().runUntilIdle(20)); // what is kept has been written
        if (!picture)
            return {};
        EXPECT_FALSE(picture->cgImage().hasAlpha());
        return pixelAt(picture->cgImage(), picture->pixelSize().width / 2, picture->pixelSize().height / 2);
    }
    std::string photo(const char* name, Rgba color)
    {
        writePng(home.path(name), solidPicture(800, 600, color));
        return home.path(name);
    }

    const TemporaryFolder home;
    AssetThumbnails thumbnails{{home.path("kept"), {}}};
    static constexpr Rgba kRed{220, 30, 20, 255};
    static constexpr Rgba kBlue{20, 30, 220, 255};
};

TEST_F(ThumbnailSources, AreReadOnceForAsLongAsAFileStays)
{
    const std::string path = photo("a.png", kRed);
    EXPECT_LE(difference(middle(path), kRed), 3);
    disguise(path, "no picture any more");
    EXPECT_LE(difference(middle(path), kRed), 3) << "from memory";
    forgetMemory();
    EXPECT_LE(difference(middle(path), kRed), 3) << "from disk";
    EXPECT_EQ(middle(path, 620), Rgba()) << "what is kept is too small";
    std::filesystem::last_write_time(path, {});
    EXPECT_EQ(middle(path), Rgba()) << "a file that was touched is another one";

    photo("b.png", kBlue);
    std::filesystem::rename(home.path("b.png"), path);
    EXPECT_LE(difference(middle(path), kBlue), 3) << "replaced";
}

TEST_F(ThumbnailSources, OfFilesThatHoldNoPictureAreNotTriedAgain)
{
    const std::string good = readFile(photo("a.png", kRed));
    const std::string path = home.path("b.png");
    EXPECT_EQ(middle(path), Rgba()) << "not there yet";
    writeFile(path, std::string(good.size(), 'x'));
    EXPECT_EQ(middle(path), Rgba());
    disguise(path, good);
    EXPECT_EQ(middle(path), Rgba()) << "known";
    std::filesystem::last_write_time(path, {});
    EXPECT_LE(difference(middle(path), kRed), 3);
}

TEST_F(ThumbnailSources, LieOnWhiteFromWhereverTheyCome)
{
    const std::string path = photo("a.png", {200, 0, 0, 128});
    const Rgba onWhite{227, 127, 127, 255};
    EXPECT_LE(difference(middle(path), onWhite), 3);
    forgetMemory();
    EXPECT_LE(difference(middle(path), onWhite), 3);
}

TEST(ThumbnailMemory, HoldsWhatWasUsedLast)
{
    const UIImage picture(solidPicture(100, 100, {1, 2, 3, 255})); // 40 kB
    ThumbnailMemory memory(100'000);
    const AssetPictureRequest request{{}, {100, 100}, kFill};
    const AssetPictureRequest larger{{}, {200, 200}, kFill};
    const auto file = [](std::uint64_t inode) { return FileStamp{1, inode, 0, 0, {}}; };
    memory.keep(file(1), request, picture);
    memory.keep(file(2), request, picture);
    EXPECT_TRUE(memory.find(file(1), request));
    memory.keep(file(3), request, picture);
    memory.keepUnreadable(file(4));
    memory.keep(file(5), request, UIImage(solidPicture(200, 100, {1, 2, 3, 255}))); // too large to push out the rest
    EXPECT_TRUE(memory.find(file(1), request));
    EXPECT_FALSE(memory.find(file(2), request));
    EXPECT_FALSE(memory.find(file(3), larger));
    EXPECT_TRUE(memory.find(file(4), larger));
}

TEST(PictureWork, IsTakenUpByRankAndAgeUnlessItIsWithdrawn)
{
    using Rank = PictureWorkRank;
    std::string order;
    const auto add = [&](Rank rank, char name, PictureWorkKind kind = PictureWorkKind::Ordinary) {
        return PictureWorkers::shared().add(
            rank, [&order, name] { order += name; }, kind);
    };
    {
        BusyWorkers workers;
        add(Rank::Look, '1', PictureWorkKind::OneAtATime); // another one is under way
        const auto withdrawn = add(Rank::Read, '!');
        for (const auto& [rank, name] : {std::pair(Rank::Warm, 'w'),
                                         std::pair(Rank::Keep, 'k'),
                                         {Rank::Read, 'r'},
                                         {Rank::Read, 'R'},
                                         {Rank::Short, 's'},
                                         {Rank::Short, 'S'}})
            add(rank, name);
        for (const auto& ticket : {withdrawn, withdrawn, PictureWorkers::Ticket()})
            PictureWorkers::shared().withdraw(ticket);
        workers.runOne();
        EXPECT_EQ(order, "sSRrkw");
    }
    EXPECT_EQ(order, "sSRrkw1");
}

} // namespace
} // namespace lamina::test
