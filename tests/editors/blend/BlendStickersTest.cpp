#include "BlendEditorFixture.h"
#include "editors/stickers/IQStickerView.h"
#include "editors/stickers/Sticker.h"
#include "editors/stickers/StickerBoard.h"
#include "platform/base/CGGeometry.h"
#include "platform/image/pixels/CGImage.h"

#include <cstddef>
#include <utility>
#include <vector>

namespace lamina::test {
namespace {

/// On a canvas of 320 points, where a new sticker stands from 60 to 260.
class BlendStickers : public BlendEditor {
protected:
    void SetUp() override
    {
        BlendEditor::SetUp();
        UIScreen::setMain({{320, 640}, 1});
        editor = std::make_shared<BlendPhotoViewController>();
        fingers.emplace(editor->canvasView());
    }
    const Stickers& stickers() const { return state().stickers; }
    std::vector<int> order() const
    {
        std::vector<int> tags;
        for (const Sticker& sticker : stickers())
            tags.push_back(sticker.tag);
        return tags;
    }
    IQStickerView& view(int tag) const { return *StickerBoard::find(editor->mainImgView(), tag); }
};

TEST_F(BlendStickers, EveryChangeIsAStepThatUndoTakesBackWhole)
{
    editor->stickerBtn();
    EXPECT_TRUE(editor->stickerStrip());
    std::vector<std::pair<Stickers, CGImage>> states;
    const auto step = [&](auto change) {
        DispatchQueue::main().runUntilIdle(); // what was scaled is drawn anew
        states.emplace_back(stickers(), editor->renderedCanvas().cgImage());
        clock->advance(2);
        change();
    };
    step([this] { editor->stickerImgGesture(6003); });
    view(500).contentTapped(); // is none
    step([this] { editor->nudge(8, 0); });
    step([this] { editor->turnBy(-0.1); });
    step([this] { editor->stickerImgGesture(12004); });
    view(501).contentTapped();
    step([this] { editor->stickerImgGesture(6005); });
    step([this] { view(501).contentTapped(); }); // comes to the front
    editor->letGoOfStickers();
    step([this] { view(502).close(); });
    view(500).contentTapped();
    step([this] { editor->deleteSticker(); });
    step([this] { editor->resetBtn(); });
    step([this] { editor->stickerImgGesture(6000); });
    step([] {});
    EXPECT_EQ(order(), std::vector{503}) << "tags count on over a reset";
    const auto expectState = [&](std::size_t i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(stickers(), states[i].first);
        EXPECT_TRUE(imagesMatch(editor->renderedCanvas().cgImage(), states[i].second));
    };
    for (std::size_t i = states.size() - 1; i-- > 0; expectState(i))
        editor->undo();
    EXPECT_FALSE(editor->canUndo());
    for (std::size_t i = 1; i < states.size(); expectState(i++))
        editor->redo();
    EXPECT_FALSE(editor->canRedo());
}

TEST_F(BlendStickers, KeysGoToTheOneWithHandlesElseToThePhoto)
{
    editor->stickerImgGesture(6000);
    editor->nudge(2, 0);
    editor->turnBy(1); // photos of a blend turn by quarters only
    view(500).contentTapped();
    editor->nudge(5, 6);
    EXPECT_EQ(stickers()[0].center, (CGPoint{165, 166}));
    editor->letGoOfStickers();
    editor->deleteSticker(); // none is active
    EXPECT_EQ(transform(), CGAffineTransform::translation(2, 0));
    editor->stickerImgGesture(6084); // stands for none
    EXPECT_EQ(order(), std::vector{500});
}

TEST_F(BlendStickers, TheFinishTakesHandlesAndBordersAwayByEveryRoad)
{
    for (const bool shares : {false, true}) {
        editor->resetBtn();
        const int first = editor->stickerHandleTag();
        for (const int tag : {6000, 6083})
            editor->stickerImgGesture(tag);
        for (int tap = 0; tap < 3; ++tap)
            view(first).contentTapped(); // in front, and selected
        shares ? editor->shareBtn() : static_cast<void>(editor->flattened());
        const auto expectPlain = [&] {
            EXPECT_EQ(order(), (std::vector{first, first + 1}));
            for (const Sticker& sticker : stickers())
                EXPECT_FALSE(sticker.border || sticker.handles || view(sticker.tag).showsBorder());
        };
        expectPlain();
        view(first).moveBy(1, 0);
        editor->undo(); // to the state that was finished
        expectPlain();
    }
}

TEST_F(BlendStickers, MoveModeHidesHandlesAndPutsStickersOverThePhotos)
{
    editor->stickerImgGesture(6000);
    view(500).contentTapped();
    editor->panBtn();
    EXPECT_FALSE(editor->stickerActive());
    EXPECT_TRUE(view(500).showsBorder());
    EXPECT_EQ(editor->mainImgView().subviews().back().get(), &view(500));
    view(500).contentTapped();
    editor.reset();
    EXPECT_FALSE(IQStickerView::activeStickerView()) << "goes with the tree that held it";
}

} // namespace
} // namespace lamina::test
