#include "editors/stickers/StickerStrip.h"

#include "editors/stickers/StickerCatalogue.h"
#include "platform/base/DispatchQueue.h"

#include <gtest/gtest.h>
#include <map>
#include <optional>
#include <set>
#include <vector>

namespace lamina::test {
namespace {

TEST(StickerCatalogue, GroupsStandTogetherAndEachNameIsOne)
{
    std::vector<int> counts;
    std::set<std::string_view> names;
    std::set<std::string_view> words;
    std::optional<StickerGroup> group;
    for (const StickerEntry& entry : stickerCatalogue()) {
        if (group != entry.group)
            counts.push_back(0);
        group = entry.group;
        ++counts.back();
        EXPECT_TRUE(names.insert(entry.name).second && words.insert(entry.word).second) << entry.name;
    }
    EXPECT_EQ(counts, (std::vector{11, 12, 10, 12, 11, 10, 9, 9}));
    EXPECT_STREQ(stickerGroupTitle(StickerGroup::FramesAndRibbons), "Frames and ribbons");
}

TEST(StickerStrip, EachFillsInOrderWithItsOwn)
{
    auto closed = std::make_unique<StickerStrip>();
    const StickerStrip strip(kCollageStickerStrip);
    DispatchQueue::main().runTurn();
    closed.reset();
    DispatchQueue::main().runUntilIdle();
    const auto& rows = strip.thumbnails().rows();
    ASSERT_EQ(rows.size(), kStickerCount);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(rows[i].tag, 6000 + static_cast<int>(i));
        EXPECT_EQ(rows[i].drawing, stickerCatalogue()[*StickerStrip::stickerIndex(rows[i].tag)].name);
    }
    EXPECT_EQ(rows[0].picture.size(), (CGSize{58, 58}));
    EXPECT_EQ(rows[4].name + " of " + rows[4].group, "Snowflake of Weather");
    EXPECT_EQ(rows[83].drawing, "big116");
    EXPECT_FALSE(StickerStrip::stickerIndex(6084) || StickerStrip::stickerIndex(-1));

    EXPECT_EQ(strip.frame(2), (CGRect{155, 2, 70, 70}));
    EXPECT_EQ(strip.contentSize(), (CGSize{6300, 70}));
    EXPECT_EQ(StickerStrip().frame(83), (CGRect{7060, 2, 80, 80}));
    EXPECT_EQ(StickerStrip().contentSize(), (CGSize{7140, 80}));
}

} // namespace
} // namespace lamina::test
