#include "StickerBench.h"

#include "editors/common/RecordReading.h"
#include "editors/stickers/Sticker.h"
#include "editors/stickers/StickerBoard.h"
#include "editors/stickers/StickerPicture.h"
#include "platform/base/UIScreen.h"
#include "platform/view/UIAccessibility.h"

#include <vector>

namespace lamina::test {
namespace {

class StickerBoardTest : public StickerBench {
protected:
    IQStickerView& add(const char* name = "big117") { return board.add(*root, name, StickerPlace::Middle); }

    StickerBoard board{500};
};

TEST_F(StickerBoardTest, TagsCountOnAndDeletedOnesAreSkipped)
{
    board.setObserver(listener);
    IQStickerView& first = add();
    EXPECT_TRUE(first.showsBorder() && !first.isShowingEditingHandles());
    EXPECT_EQ(geometry(first), "200,200 200x200@0");
    EXPECT_EQ(geometry(board.add(*root, "big116", StickerPlace::TopLeft)), "100,100 200x200@0");
    add();
    EXPECT_EQ(log, "");
    first.close();
    EXPECT_EQ(log, "X");
    root->bringSubviewToFront(*StickerBoard::find(*root, 501));
    board.bringToFront(*root);
    EXPECT_EQ(root->subviews().back()->tag(), 502);
    EXPECT_EQ(board.stickerTagMutableArr(), (std::vector{500, 501, 502}));
    EXPECT_EQ(board.stickerHandleTag(), 503);
    board.show(*root, {});
    EXPECT_EQ(add().tag(), 503);
}

TEST_F(StickerBoardTest, WhatAFinishTakesAwayDoesNotCountAsAChange)
{
    add().showEditingHandles();
    IQStickerView& second = add(); // the first keeps its handles
    second.showEditingHandles();
    const Stickers selected = StickerBoard::stickers(*root);
    EXPECT_EQ(board.selected(*root), &second);
    board.hideHandlesAndBorders(*root);
    const Stickers bare = StickerBoard::stickers(*root);
    EXPECT_EQ(board.selected(*root), nullptr);
    second.moveBy(0, 1);
    EXPECT_TRUE(looksAlike(selected, bare));
    EXPECT_FALSE(looksAlike(bare, StickerBoard::stickers(*root)) || looksAlike(bare, {bare[0]}));
}

TEST_F(StickerBoardTest, ValuesGiveTheSameStickersAgain)
{
    add().showEditingHandles();
    add("big121").turnBy(1);
    IQStickerView& third = add("big122");
    third.scaleBy(0.7);
    third.scaleBy(0.43);
    third.moveBy(-77.7, 1e5);
    add("big123").setShowsBorder(false);
    third.showEditingHandles(); // and the first one still does
    root->bringSubviewToFront(*root->subviews().front());
    const Stickers before = StickerBoard::stickers(*root);
    ASSERT_TRUE(before[3].handles && before[1].handles && before[1].active && !before[3].active);

    Stickers read;
    ASSERT_TRUE(readStickers(recordOf(before), read));
    EXPECT_EQ(read, before);
    const auto canvas = addView({0, 0, 400, 400});
    StickerBoard resumed(500);
    resumed.setObserver(listener);
    log.clear();
    resumed.show(*canvas, read);
    resumed.show(*canvas, read); // in the place of those
    EXPECT_EQ(StickerBoard::stickers(*canvas), before);
    EXPECT_EQ(StickerBoard::find(*canvas, 502)->contentView()->frame(), third.contentView()->frame()); // to the bit
    EXPECT_EQ(resumed.stickerTagMutableArr(), board.stickerTagMutableArr());
    EXPECT_EQ(resumed.stickerHandleTag(), 504);
    EXPECT_EQ(log, "");
    resumed.selected(*canvas)->close();
    EXPECT_EQ(log, "X");
}

TEST_F(StickerBoardTest, RecordsThatLieAreRefused)
{
    const Sticker good{.tag = 500, .name = "big117", .size = {37, 4096}, .center = {-9, 1e9}, .transform = {}};
    const RecordValue record = recordOf(Stickers{good});
    Stickers read;
    EXPECT_TRUE(readStickers(record, read));
    const std::pair<const char*, RecordValue> lies[] = {
        {"tag", 0},         {"tag", 1LL << 31},          {"name", "close"},
        {"name", 7},        {"size", {36.9, 50}},        {"size", {50, 5000}},
        {"size", {50}},     {"center", {1, nullptr}},    {"transform", {0, 0, 0, 0, 0, 0}},
        {"handles", "yes"}, {"transform", {1, 0, 0, 1}}, {"transform", {1, 0, 0, 1, 5, 0}},
    };
    for (const auto& [field, lie] : lies) {
        RecordValue changed = record;
        changed[0][field] = lie;
        EXPECT_FALSE(readStickers(changed, read)) << field << ' ' << lie;
        changed[0].erase(field);
        EXPECT_FALSE(readStickers(changed, read)) << "no " << field;
    }
    EXPECT_FALSE(readStickers(recordOf(Stickers{good, good}), read));
    EXPECT_FALSE(readStickers(record[0], read) || readStickers({}, read) || readStickers("x", read));
    EXPECT_EQ(read, Stickers{good});
}

TEST_F(StickerBoardTest, PicturesAreDrawnForASizeThatStays)
{
    add().showEditingHandles();
    const auto sticker = [&] { return board.selected(*root); };
    const auto picture = [&] { return dynamic_cast<const StickerPicture&>(*sticker()->contentView()).image(); };
    const auto points = [&] { return picture().cgImage().width() / UIScreen::main().scale; };
    EXPECT_EQ(points(), 164);
    play("1+118,282 1>108,292");
    EXPECT_EQ(points(), 164);
    play("1x");
    EXPECT_EQ(points(), 184);
    sticker()->scaleBy(2);
    sticker()->scaleBy(2.5);
    EXPECT_EQ(points(), 184);
    play("w0.3");
    EXPECT_EQ(picture().cgImage().width(), 2048);
    const UIImage large = picture(); // such a one is kept by nobody else
    board.show(*root, StickerBoard::stickers(*root));
    EXPECT_TRUE(picture().isIdenticalTo(large));
    sticker()->scaleBy(0.2);
    board.hideHandles(*root); // a picture of the canvas may be taken now
    board.find(*root, 500)->showEditingHandles();
    EXPECT_EQ(points(), 184);
}

TEST_F(StickerBoardTest, PicturesSayWhatTheyAreAndArePressed)
{
    auto& picture = dynamic_cast<StickerPicture&>(*add().contentView());
    EXPECT_EQ(picture.accessibilityLabel(), "Sun");
    for (const bool selected : {true, false}) {
        EXPECT_TRUE(picture.accessibilityActivate());
        EXPECT_EQ((picture.accessibilityTraits() & UIAccessibilityTraits::Selected) != 0, selected);
    }
    EXPECT_FALSE(StickerPicture("nothing").accessibilityActivate());
}

} // namespace
} // namespace lamina::test
