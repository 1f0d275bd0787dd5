#include "CollageCanvasFixture.h"
#include "hud/ProgressOverlay.h"
#include "platform/photos/PhotoSource.h"

namespace lamina::test {
namespace {

class CollageDrop : public CollageCanvas {
protected:
    CollageDrop()
    {
        for (const int number : {1, 2, 3})
            writePng(path(number), photo(number).cgImage());
    }
    std::string path(int number) const { return folder.path(std::to_string(number) + ".png"); }
    void drop(const std::vector<int>& numbers)
    {
        std::vector<PhotoSource> photos;
        for (const int number : numbers)
            photos.push_back(PhotoSource::fromFile(path(number)));
        editor->receivePhotos(photos);
    }
    /// Which photos the slots show, by their colours; those of masters must be the same.
    std::string shown() const
    {
        std::string numbers;
        for (std::size_t index = 0; index < state().count; ++index) {
            EXPECT_TRUE(slot(index).image.isIdenticalTo(slot(index).master));
            EXPECT_TRUE(editor->slotImageView(index)->image().isIdenticalTo(slot(index).image));
            numbers += std::to_string(pixelAt(slot(index).image.cgImage(), 0, 0)[0] / 50);
        }
        return numbers;
    }

    const TemporaryFolder folder;
};

TEST_F(CollageDrop, PhotosFromOutsideTakeTheCurrentSlotOrFillAll)
{
    editor->secondBtn();
    editor->nudge(7, 0);
    drop({3});
    EXPECT_FALSE(editor->wantsPhotos()) << "while it is read";
    drop({1});
    settle();
    EXPECT_EQ(shown(), "13");
    EXPECT_EQ(slot(1).center.x, kMiddle.x + 7);
    drop({3, 1});
    settle();
    EXPECT_EQ(shown(), "31");
    editor->undo();
    EXPECT_EQ(shown(), "13") << "both were one step";
    drop({2, 1, 3});
    settle();
    EXPECT_EQ(alertText(), "Too many photos / The collage has no place for one of the photos.");
    settle();
    EXPECT_EQ(shown(), "21");
}

TEST_F(CollageDrop, WhatIsCancelledOrCannotBeReadChangesNothing)
{
    drop({3, 1});
    ASSERT_TRUE(DispatchQueue::main().runUntil([] { return ProgressOverlay::shared().isBlocking(); }, 20));
    ProgressOverlay::shared().giveUp();
    settle();
    EXPECT_FALSE(editor->canUndo());
    drop({3, 4});
    settle();
    EXPECT_EQ(alertText(), "Can’t open the photo / 4.png: no such file.");
    EXPECT_EQ(shown(), "12");
    EXPECT_FALSE(editor->canUndo());
    EXPECT_TRUE(editor->wantsPhotos());
}

} // namespace
} // namespace lamina::test
