#include "CollageColorsFixture.h"
#include "editors/collage/CollageTools.h"
#include "editors/stickers/IQStickerView.h"
#include "editors/stickers/Sticker.h"
#include "editors/stickers/StickerBoard.h"
#include "editors/stickers/StickerStrip.h"
#include "export/ExportScenes.h"
#include "export/SavingTypeController.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/UIColor.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/view/ListModel.h"
#include "platform/view/UINavigationController.h"
#include "platform/view/UIStoryboard.h"
#include "platform/view/UIWindow.h"

#include <cstddef>
#include <tuple>
#include <utility>
#include <vector>

namespace lamina::test {
namespace {

/// On a canvas of 320 points, where a new sticker stands from 0 to 200.
class CollageStickers : public CollageColors {
protected:
    void SetUp() override
    {
        CollageColors::SetUp();
        open({320, 640}, 1, photo(1), photo(2));
    }
    void open(CGSize screen, double scale, const UIImage& first, const UIImage& second)
    {
        UIScreen::setMain({screen, scale});
        openWith(first, second);
    }
    std::vector<int> order() const
    {
        std::vector<int> tags;
        for (const Sticker& sticker : state().stickers)
            tags.push_back(sticker.tag);
        return tags;
    }
    IQStickerView& view(int tag) const { return *StickerBoard::find(editor->view(), tag); }
    /// Of what stands on the canvas, the lowest first: a sticker's tag, 0 for a slot.
    std::vector<int> stack() const
    {
        std::vector<int> tags;
        const auto& views = editor->saveTheImg().subviews();
        for (std::size_t i = 0; i + 1 < views.size(); ++i) // the border is the last
            tags.push_back(dynamic_cast<const IQStickerView*>(views[i].get()) ? views[i]->tag() : 0);
        return tags;
    }
    void choose(std::string_view tool) { editor->chooseTool(QString::fromLatin1(tool.data(), tool.size())); }
};

TEST_F(CollageStickers, TagsCountOnOverOpeningsOfTheStrip)
{
    choose(collagetool::kSticker);
    ASSERT_TRUE(editor->stickerStrip());
    editor->stickerImgGesture(6083);
    choose(collagetool::kTools);
    EXPECT_FALSE(editor->stickerStrip());
    choose(collagetool::kSticker);
    for (const int tag : {6000, 6084, -1})
        editor->stickerImgGesture(tag); // the last two stand for none
    EXPECT_EQ(order(), (std::vector{7000, 7001}));
    EXPECT_EQ(state().stickers[0].name, "big116");
    EXPECT_EQ(view(7000).frame(), (CGRect{0, 0, 200, 200}));
    EXPECT_EQ(editor->stickerHandleTag(), 7002);
    DispatchQueue::main().runUntilIdle();
    const auto* const strip = dynamic_cast<ListModel<StickerThumbnail>*>(editor->stickerStrip());
    ASSERT_TRUE(strip);
    EXPECT_EQ(strip->rows().size(), 84u);
}

TEST_F(CollageStickers, ALayoutCoversThemUntilStickerIsPressedAndUndoTakesAllBack)
{
    std::vector<std::tuple<Stickers, std::vector<int>, CGImage>> states;
    const auto now = [this] {
        DispatchQueue::main().runUntilIdle(); // what was scaled is drawn anew
        return std::tuple{state().stickers, stack(), editor->renderedCanvas().cgImage()};
    };
    const auto step = [&](auto change) {
        states.push_back(now());
        clock->advance(2);
        change();
    };
    step([this] { editor->stickerImgGesture(6003); });
    step([this] { editor->stickerImgGesture(6004); });
    view(7000).contentTapped();
    step([this] { view(7000).contentTapped(); });
    EXPECT_EQ(stack(), (std::vector{0, 0, 7001, 7000}));
    step([this] { editor->imgGesture1(2001); });
    EXPECT_EQ(stack(), (std::vector{7001, 7000, 0, 0}));
    step([this] { editor->stickerImgGesture(6005); });
    step([this] { view(7001).close(); });
    EXPECT_EQ(stack(), (std::vector{7000, 0, 0, 7002}));
    step([this] { choose(collagetool::kSticker); });
    EXPECT_EQ(stack(), (std::vector{0, 0, 7000, 7002}));
    step([this] { editor->imgGesture1(2002); });
    step([this] { view(7002).moveBy(30, 40); });
    step([] {});
    EXPECT_EQ(stack(), (std::vector{7000, 7002, 0, 0}));
    const auto expectState = [&](std::size_t i) {
        SCOPED_TRACE(i);
        const auto [stickers, views, picture] = now();
        EXPECT_EQ(stickers, std::get<0>(states[i]));
        EXPECT_EQ(views, std::get<1>(states[i]));
        EXPECT_TRUE(imagesMatch(picture, std::get<2>(states[i])));
    };
    for (std::size_t i = states.size() - 1; i-- > 0; expectState(i))
        editor->undo();
    EXPECT_FALSE(editor->canUndo());
    for (std::size_t i = 1; i < states.size(); expectState(i++))
        editor->redo();
    EXPECT_FALSE(editor->canRedo());
}

TEST_F(CollageStickers, KeysGoToTheOneWithHandlesAndTheWayBackBeginsWithThePanel)
{
    editor->stickerImgGesture(6000);
    editor->nudge(2, 0); // the photo
    view(7000).contentTapped();
    editor->nudge(5, 6);
    EXPECT_EQ(state().stickers[0].center, (CGPoint{105, 106}));
    EXPECT_FALSE(editor->shownPanel().isEmpty());
    EXPECT_TRUE(editor->letGo());
    EXPECT_TRUE(editor->shownPanel().isEmpty() && editor->stickerActive());
    EXPECT_TRUE(editor->letGo());
    EXPECT_FALSE(editor->stickerActive() || editor->letGo());

    view(7000).contentTapped();
    editor->selectSlot(2);
    EXPECT_FALSE(editor->stickerActive()) << "choosing a slot hides handles";
    view(7000).contentTapped();
    editor->deleteSticker();
    EXPECT_TRUE(order().empty());
}

TEST_F(CollageStickers, AFinishTakesMarksAwayAndSkipsWhatWasClosed)
{
    addExportScenes(*UIStoryboard::named(kMainStoryboard));
    const auto finish = [this] {
        editor->shareBtn();
        DispatchQueue::main().runUntilIdle();
        EXPECT_TRUE(std::dynamic_pointer_cast<SavingTypeController>(editor->presentedViewController()));
        editor->dismiss(false);
        DispatchQueue::main().runUntilIdle();
        return editor->flattened();
    };
    const UIImage bare = finish(); // without stickers too
    for (const int tag : {6000, 6001})
        editor->stickerImgGesture(tag);
    view(7000).close();
    view(7001).moveBy(60, 50);
    editor->letGoOfStickers();
    const UIImage plain = editor->renderedCanvas();
    EXPECT_FALSE(same(plain, bare));
    view(7001).contentTapped();
    EXPECT_FALSE(same(editor->renderedCanvas(), plain)) << "its handles are there";
    EXPECT_TRUE(same(finish(), plain));
    view(7001).contentTapped();
    EXPECT_TRUE(same(editor->flattened(), plain)) << "without the chooser too";
    view(7001).moveBy(1, 0);
    editor->undo(); // to the state that was finished
    EXPECT_FALSE(state().stickers[0].border || state().stickers[0].handles);
    view(7001).close();
    EXPECT_TRUE(same(finish(), bare)) << "as it stands then";
    EXPECT_EQ(editor->stickerTagMutableArr(), (std::vector{7000, 7001}));
}

/// On a screen of 480 points slots stand 50 points inside the canvas.
TEST_F(CollageStickers, TheFlattenedCanvasIsClearWhereNothingCoversIt)
{
    const auto flat = [](Rgba color) { return UIImage(solidPicture(8, 8, color, CGImageAlphaInfo::NoneSkipLast)); };
    open({320, 480}, 2, flat({200, 100, 50, 255}), flat({0, 0, 0, 255}));
    CollageComposition work = state();
    work.layout = 0; // the first slot covers the other
    work.photoSlots[0].alpha = 0.5;
    work.photoSlots[0].background = UIColor{0, 0.2, 1, 1};
    editor->setComposition(work);
    const CGImage picture = editor->flattened().cgImage();
    EXPECT_EQ(picture.size(), (IntSize{640, 640}));
    EXPECT_EQ(pixelAt(picture, 99, 320), (Rgba{0, 0, 0, 0}));
    EXPECT_EQ(pixelAt(picture, 540, 540), (Rgba{0, 0, 0, 0}));
    const Rgba mixed = pixelAt(picture, 100, 320);
    const Rgba wanted = {100, 75, 152, 255}; // (200, 100, 50) and (0, 51, 255) by halves
    for (std::size_t channel = 0; channel < 4; ++channel)
        EXPECT_NEAR(mixed[channel], wanted[channel], 1) << channel;
}

TEST_F(CollageStickers, BackAsksNothingAndGoesToTheRoot)
{
    const auto root = std::make_shared<UIViewController>();
    const auto stack = UINavigationController::make(root);
    UIWindow window;
    window.setRootViewController(stack);
    stack->pushViewController(std::make_shared<UIViewController>(), false);
    stack->pushViewController(editor, false);
    DispatchQueue::main().runUntilIdle();
    editor->nudge(3, 0);
    editor->backBtn();
    DispatchQueue::main().runUntilIdle();
    EXPECT_EQ(window.topViewController(), root);
    EXPECT_EQ(stack->viewControllers().size(), 1u);
    window.setRootViewController(nullptr);
}

} // namespace
} // namespace lamina::test
