#include "CollageCanvasFixture.h"
#include "editors/common/PictureMemory.h"
#include "editors/frames/TwoFramesViewController.h"
#include "platform/base/CGAffineTransform.h"
#include "platform/base/UIColor.h"
#include "platform/view/UIImageView.h"

#include <cstddef>
#include <string>
#include <utility>

namespace lamina::test {
namespace {

TEST_F(CollageCanvas, OpensWithTheFirstLayoutForSoManyPhotos)
{
    const struct {
        int photos;
        std::size_t count;
        int layout;
        const char* order;
        int button; ///< that is selected
    } table[] = {{2, 2, 2000, "21", 4}, {3, 3, 3000, "213", 1}, {5, 3, 3000, "213", 1}};
    for (const auto& c : table) {
        SCOPED_TRACE(c.photos);
        open(c.photos);
        EXPECT_EQ(state().count, c.count);
        EXPECT_EQ(editor->layout(), c.layout);
        EXPECT_EQ(order(), c.order);
        EXPECT_EQ(editor->twoBtnViewHidden(), c.count == 3);
        EXPECT_EQ(editor->twoFrameObj() != nullptr, c.count == 2);
        EXPECT_EQ(editor->threeFramesObj() != nullptr, c.count == 3);
        for (int button = 1; button <= 5; ++button)
            EXPECT_EQ(editor->btnSelected(button), button == c.button) << button;
        EXPECT_FALSE(editor->saveTheImg().isOpaque() || editor->saveTheImg().backgroundColor());
        EXPECT_FALSE(editor->canUndo() || editor->isEdited());
        for (std::size_t index = 0; index < c.count; ++index) {
            EXPECT_EQ(editor->slotView(index)->frame(), (CGRect{0, 0, kSide, kSide}));
            EXPECT_TRUE(editor->slotView(index)->layer().mask());
            EXPECT_EQ(editor->slotView(index)->isUserInteractionEnabled(), index == 0);
            EXPECT_EQ(editor->slotImageView(index)->image().size().width, 30 + 10.0 * static_cast<double>(index));
        }
    }
}

TEST_F(CollageCanvas, MeasuresGoByTheScreen)
{
    const struct {
        CGSize screen;
        double spacing;
        CGRect slot;
    } table[] = {
        {{319, 600}, 47, {0, 0, 319, 319}},       {{320, 480}, 20, {50, 50, 220, 220}},
        {{320, 481}, 20, {0, 0, 320, 320}},       {{321, 600}, 30, {0, 0, 321, 321}},
        {{375, 667}, 30, {0, 0, 375, 375}},       {{376, 667}, 33, {0, 0, 376, 376}},
        {{390.5, 844}, 38, {0, 0, 390.5, 390.5}}, {{414, 896}, 38, {0, 0, 414, 414}},
        {{415, 900}, 47, {0, 0, 415, 415}},
    };
    for (const auto& c : table) {
        SCOPED_TRACE(c.screen.width);
        UIScreen::setMain({c.screen, 1});
        open(3);
        for (const double spacing :
             {editor->leftCOnst(), editor->rightConst(), editor->verticalConst(), editor->colorConst()})
            EXPECT_EQ(spacing, c.spacing);
        EXPECT_EQ(editor->baseViewHeightConstraint(), c.screen.width);
        EXPECT_EQ(editor->saveTheImg().frame(), (CGRect{0, 0, c.screen.width, c.screen.width}));
        EXPECT_EQ(editor->thirdView()->frame(), c.slot);
        EXPECT_EQ(editor->firstImage()->frame(), (CGRect{0, 0, c.slot.size.width, c.slot.size.width}));
    }
}

/// All of it, so that what is thrown away can be told from what comes back.
TEST_F(CollageCanvas, ALayoutThrowsAllButTheMastersAwayAndUndoBringsItBack)
{
    open(3);
    editor->secondBtn();
    editor->nudge(20, -30);
    editor->zoomBy(2);
    CollageComposition changed = state();
    changed.photoSlots[0].image = photo(4); // as a filter leaves it
    changed.photoSlots[2].alpha = 0.25;
    changed.photoSlots[2].background = UIColor{0, 1, 0, 1};
    changed.effectFlags.fill(true);
    editor->setComposition(changed);
    const auto frames = editor->threeFramesObj();

    editor->applyLayout(3005);
    EXPECT_NE(editor->threeFramesObj(), frames);
    EXPECT_EQ(editor->currentSlot(), 1);
    EXPECT_TRUE(editor->btnSelected(1));
    EXPECT_FALSE(state().effectFlags[0]);
    for (std::size_t index = 0; index < 3; ++index) {
        const UIImageView& view = *editor->slotImageView(index);
        EXPECT_TRUE(view.image().isIdenticalTo(slot(index).master)) << index;
        EXPECT_EQ(view.frame(), (CGRect{0, 0, kSide, kSide})) << index;
        EXPECT_EQ(view.alpha(), 1);
        EXPECT_FALSE(editor->slotView(index)->backgroundColor());
    }

    editor->undo();
    EXPECT_TRUE(looksAlike(state(), changed));
    EXPECT_EQ(editor->currentSlot(), 2);
    EXPECT_TRUE(editor->firstImage()->image().isIdenticalTo(changed.photoSlots[0].image));
    EXPECT_EQ(editor->secondImage()->center(), (CGPoint{kMiddle.x + 20, kMiddle.y - 30}));
    EXPECT_EQ(editor->secondImage()->transform().a, 2);
    EXPECT_EQ(editor->thirdImage()->alpha(), 0.25);
    EXPECT_EQ(editor->thirdView()->backgroundColor(), changed.photoSlots[2].background);
    EXPECT_TRUE(editor->firstView()->layer().mask());
    drag(kMiddle, {8, 0});
    EXPECT_EQ(slot(1).center.x, kMiddle.x + 28) << "the second one takes gestures again";
    editor->undo();
    editor->undo();
    editor->redo();
    EXPECT_TRUE(looksAlike(state(), changed));
}

TEST_F(CollageCanvas, NumbersOfNoLayoutOnlyRebuild)
{
    for (const int number : {2008, 3000, 3500, 3999, -1}) {
        SCOPED_TRACE(number);
        const auto objects = std::pair{editor->twoFrameObj(), editor->threeFramesObj()};
        editor->nudge(5, 0);
        editor->applyLayout(number);
        EXPECT_EQ(slot(0).center, kMiddle);
        EXPECT_FALSE(editor->firstView()->layer().mask());
        EXPECT_EQ(order(), "21");
        EXPECT_EQ(editor->twoFrameObj() != objects.first, number < 2999);
        EXPECT_EQ(editor->threeFramesObj() != objects.second, number >= 2999 && number <= 3998);
        EXPECT_TRUE(editor->slotOutline().isEmpty());
    }
}

TEST_F(CollageCanvas, TouchesReachTheCurrentSlotAlone)
{
    open(3);
    editor->thirdBtn();
    editor->secondBtn();
    // The third one's recognisers may be left: nothing comes through to them.
    EXPECT_EQ(editor->firstImage()->gestureRecognizers().size(), 0U);
    for (const int chosen : {1, 3, 2}) {
        SCOPED_TRACE(chosen);
        editor->selectSlot(chosen);
        editor->selectSlot(chosen); // a second set of recognisers, which moves nothing twice
        const auto before = state().photoSlots;
        drag({30, 30}, {6, 4});
        drag({170, 30}, {1, 0});
        EXPECT_TRUE(fingers->magnify({100, 150}, 2));
        for (std::size_t index = 0; index < 3; ++index) {
            const bool isChosen = static_cast<int>(index) + 1 == chosen;
            EXPECT_EQ(slot(index).center.x - before[index].center.x, isChosen ? 7 : 0);
            EXPECT_EQ(slot(index).transform.a / before[index].transform.a, isChosen ? 2 : 1);
            EXPECT_EQ(editor->slotImageView(index)->center(), slot(index).center);
        }
    }
    editor->selectSlot(4);
    editor->selectSlot(0);
    EXPECT_EQ(editor->currentSlot(), 2);
    open(2);
    editor->thirdBtn();
    EXPECT_EQ(editor->currentSlot(), 1);
}

TEST_F(CollageCanvas, PansAreTheCanvasesAndZoomsAndTurnsTheTransforms)
{
    EXPECT_TRUE(fingers->magnify(kMiddle, 2.5));
    editor->turnBy(0.5);
    drag(kMiddle, {8, -6});
    EXPECT_EQ(slot(0).center, (CGPoint{kMiddle.x + 8, kMiddle.y - 6})) << "neither zoomed nor turned";
    EXPECT_EQ(slot(0).transform, CGAffineTransform().scaled(2.5, 2.5).rotated(0.5));
    editor->zoomBy(1e-200);
    EXPECT_EQ(slot(0).transform, CGAffineTransform().scaled(2.5, 2.5).rotated(0.5)) << "flattened to nothing";
    EXPECT_EQ(editor->firstView()->frame(), (CGRect{0, 0, kSide, kSide}));
    drag(kMiddle, {900, 0});
    drag(kMiddle, {-900, 0}); // out of sight it can be caught everywhere
    EXPECT_EQ(slot(0).center, (CGPoint{kMiddle.x + 8, kMiddle.y - 6}));
    CollageComposition faint = state();
    faint.photoSlots[0].alpha = 0;
    editor->setComposition(faint);
    editor->nudge(2, 0);
    EXPECT_EQ(slot(0).center.x, kMiddle.x + 10);
    editor->fitPhoto();
    EXPECT_EQ(editor->firstImage()->frame(), (CGRect{0, 0, kSide, kSide}));
    EXPECT_EQ(slot(0).alpha, 0);
}

TEST_F(CollageCanvas, TapsPointTheCurrentSlotOutAndFitItsPhoto)
{
    editor->applyLayout(2003); // the left half and the right one
    editor->nudge(150, 0);
    const CGPoint moved = slot(0).center;
    editor->doubleTapCanvas(150, 100);
    editor->tapCanvas(50, 100);
    editor->tapCanvas(-5, 100);
    EXPECT_EQ(pointed, "");
    EXPECT_EQ(slot(0).center, moved);
    editor->tapCanvas(150, 100);
    EXPECT_EQ(pointed, "1");
    EXPECT_EQ(editor->currentSlot(), 1);
    editor->doubleTapCanvas(50, 100);
    EXPECT_EQ(slot(0).center, kMiddle);

    editor->applyLayout(2005); // circles: the corners are nobody's, and the upper one hides the lower one
    const std::string upper = order().substr(1);
    pointed.clear();
    for (const int chosen : {upper == "1" ? 1 : 2, upper == "1" ? 2 : 1}) {
        editor->selectSlot(chosen);
        editor->tapCanvas(2, 2);
    }
    EXPECT_EQ(pointed, "");
    editor->tapCanvas(100, 100);
    EXPECT_EQ(pointed, upper == "1" ? "2" : "1");
    editor->stickerImgGesture(6000); // over all of the canvas
    pointed.clear();
    editor->tapCanvas(100, 100);
    EXPECT_EQ(pointed, "");
}

TEST_F(CollageCanvas, SwappedPhotosTakeOverThePlaces)
{
    open(3);
    editor->zoomBy(3);
    CollageComposition before = state();
    before.photoSlots[0].image = photo(4);
    before.photoSlots[0].alpha = 0.5;
    before.effectFlags[3] = true;
    editor->setComposition(before);
    editor->swapSlots(1, 3);
    EXPECT_TRUE(editor->thirdImage()->image().isIdenticalTo(before.photoSlots[0].image));
    EXPECT_TRUE(editor->selectedImg3().isIdenticalTo(before.photoSlots[0].master));
    EXPECT_TRUE(editor->firstImage()->image().isIdenticalTo(before.photoSlots[2].image));
    EXPECT_TRUE(editor->selectedImg1().isIdenticalTo(before.photoSlots[2].master));
    EXPECT_EQ(slot(0).transform.a, 3);
    EXPECT_EQ(slot(0).alpha, 0.5);
    EXPECT_EQ(editor->currentSlot(), 1);
    EXPECT_FALSE(state().effectFlags[3]);
    editor->undo();
    EXPECT_TRUE(looksAlike(state(), before));
    editor->swapSlots(2, 2);
    editor->swapSlots(1, 4);
    editor->swapWithNeighbour(-1);
    EXPECT_TRUE(editor->canRedo()) << "nothing was done since";
    editor->swapWithNeighbour(1);
    EXPECT_EQ(editor->currentSlot(), 2);
    EXPECT_TRUE(editor->selectedImg2().isIdenticalTo(before.photoSlots[0].master));
    editor->undo();
    EXPECT_TRUE(looksAlike(state(), before)) << "one step";
}

TEST_F(CollageCanvas, BytesOfPicturesCountOnce)
{
    const auto bytesOf = [](const UIImage& image) { return image.cgImage().bytes().size(); };
    CollageComposition composition = state();
    composition.photoSlots[0].image = composition.applyFxOnImg = photo(4);
    composition.beforeApplyFilterImage = photo(5);
    PictureMemory counted;
    EXPECT_EQ(byteCount(composition, counted),
              bytesOf(photo(1)) + bytesOf(photo(2)) + bytesOf(photo(4)) + bytesOf(photo(5)));
    EXPECT_EQ(byteCount(composition, counted), 0U);
}

} // namespace
} // namespace lamina::test
