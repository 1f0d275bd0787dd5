#include "editors/stickers/StickerStrip.h"

#include "editors/stickers/StickerCatalogue.h"
#include "platform/base/DispatchQueue.h"

#include <chrono>
#include <gtest/gtest.h>
#include <thread>

namespace lamina::test {
namespace {

TEST(StickerStrip, EachFillsInOrderWithItsOwn)
{
    auto closed = std::make_unique<StickerStrip>();
    const StickerStrip strip(kCollageStickerStrip);
    std::this_thread::sleep_for(std::chrono::milliseconds(100)); // something is drawn, and not added yet
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
    EXPECT_FALSE(StickerStrip::stickerIndex(6084) || StickerStrip::stickerIndex(-1));

    EXPECT_EQ(strip.frame(2), (CGRect{155, 2, 70, 70}));
    EXPECT_EQ(strip.contentSize(), (CGSize{6300, 70}));
    EXPECT_EQ(StickerStrip().frame(83), (CGRect{7060, 2, 80, 80}));
    EXPECT_EQ(StickerStrip().contentSize(), (CGSize{7140, 80}));
}

} // namespace
} // namespace lamina::test
