#include "BlendEditorFixture.h"
#include "editors/common/PictureMemory.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/UIColor.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/view/UIView.h"

#include <functional>
#include <limits>
#include <utility>

namespace lamina::test {
namespace {

using BlendSteps = BlendEditor;

TEST_F(BlendSteps, ActionsEndAGestureThatIsUnderWay)
{
    dragBy(4);
    beginDrag(7);
    editor->undo();
    EXPECT_EQ(transform().tx, 4);
    // The finger is still down; it drags nothing any more.
    fingers->touchMoved(1, {60, 60}, 0.3);
    fingers->touchEnded(1, {60, 60}, 0.4);
    EXPECT_EQ(transform().tx, 4);
    EXPECT_TRUE(editor->canRedo());

    beginDrag(7);
    editor->resetBtn();
    EXPECT_TRUE(transform().isIdentity());
    for (const double place : {11, 4, 0, 0}) {
        editor->undo();
        EXPECT_EQ(transform().tx, place);
    }
    EXPECT_FALSE(editor->canUndo() || editor->isEdited());
}

TEST_F(BlendSteps, AStateThatComesBackLooksAndTakesTouchesAsItDid)
{
    const std::pair<std::function<void()>, std::function<void()>> ways[] = {
        {[this] { editor->resetBtn(); }, [this] { editor->undo(); }},
        {[this] { editor->undo(); }, [this] { editor->redo(); }},
    };
    for (const bool moves : {true, false}) {
        for (const auto& [away, back] : ways) {
            SCOPED_TRACE(moves);
            editor->resetBtn();
            dragBy(6);
            if (!moves)
                leaveMoveMode();
            const CGImage canvas = editor->renderedCanvas().cgImage();
            away();
            ASSERT_FALSE(imagesMatch(editor->renderedCanvas().cgImage(), canvas));
            back();
            EXPECT_TRUE(imagesMatch(editor->renderedCanvas().cgImage(), canvas));
            dragBy(5);
            EXPECT_EQ(transform().tx, moves ? 11 : 6);
        }
    }
}

TEST_F(BlendSteps, APhotoOutOfSightIsCaughtAndBroughtBack)
{
    editor->nudge(kSide - 0.5, 0);
    editor->bringPhotoBack(); // a part of it is in sight
    editor->nudge(0.5, 0);
    const CGAffineTransform away = transform();
    dragBy(-8);
    EXPECT_EQ(transform().tx, kSide - 8);
    EXPECT_TRUE(fingers->wheel({5, 5}, 1));
    editor->undo();
    editor->undo();
    EXPECT_EQ(transform(), away);
    editor->bringPhotoBack();
    EXPECT_TRUE(transform().isIdentity());
    editor->undo();
    leaveMoveMode();
    dragBy(-8);
    EXPECT_FALSE(fingers->wheel({5, 5}, 1));
    editor->bringPhotoBack();
    EXPECT_EQ(transform(), away);

    // A corner of its box is in sight, the turned photo is not.
    BlendComposition turned = state();
    turned.mode = BlendMode::Move;
    turned.photos[1].transform = CGAffineTransform::translation(50, 50).rotated(0.7853981633974483).scaled(0.5, 0.5);
    editor->setComposition(turned);
    editor->bringPhotoBack();
    EXPECT_EQ(transform().tx, 0);
    EXPECT_NEAR(transform().b, 0.35355, 1e-5);
}

TEST_F(BlendSteps, ASecondFingerEndsTheDragAndPinches)
{
    beginDrag(4); // to (46, 32)
    fingers->touchBegan(2, {6, 32}, 0.3);
    fingers->touchMoved(2, {-34, 32}, 0.4);
    EXPECT_EQ(transform(), CGAffineTransform::translation(4, 0).scaled(2, 2));
    for (const double left : {4, 0}) {
        editor->undo();
        EXPECT_EQ(transform(), CGAffineTransform::translation(left, 0));
    }
}

TEST_F(BlendSteps, KeysAndWheelJoinWithinASecond)
{
    editor->nudge(1, 0);
    clock->advance(0.9);
    editor->nudge(0, 1);
    clock->advance(0.9);
    editor->nudge(1, 0);
    clock->advance(1.1);
    editor->nudge(8, 0);
    for (int notch = 0; notch < 5; ++notch)
        EXPECT_TRUE(fingers->wheel({32, 32}, 1));
    editor->zoomBy(2);
    EXPECT_NEAR(transform().a, 3.22102, 1e-9); // 1.1^5 · 2

    editor->undo();
    EXPECT_EQ(transform(), CGAffineTransform::translation(10, 1));
    const CGAffineTransform run = CGAffineTransform::translation(2, 1);
    editor->undo();
    EXPECT_EQ(transform(), run);
    for (const double there : {1, -1, 1}) // no part of the run before, nor of one that has come to nothing
        editor->nudge(there, 0);
    editor->undo();
    EXPECT_EQ(transform(), run);
    editor->nudge(5, 0);
    editor->undo();
    EXPECT_EQ(transform(), run);
    editor->undo();
    EXPECT_FALSE(editor->canUndo());
}

TEST_F(BlendSteps, WhatChangesNothingIsNoStep)
{
    editor->resetBtn();
    editor->panBtn();
    editor->photo1();
    editor->nudge(3, 0);
    editor->nudge(-3, 0);
    dragBy(0);
    editor->flattened();
    for (const char* const tool : {"tools", "no tool"}) // a mode, and unknown
        editor->chooseTool(tool);
    EXPECT_FALSE(editor->canUndo() || editor->isEdited());

    // Nor is a change after which the photo would be lost.
    const double infinity = std::numeric_limits<double>::infinity();
    editor->nudge(infinity, 0);
    editor->nudge(0, std::numeric_limits<double>::quiet_NaN());
    for (const double factor : {0.0, -1.0, infinity, 1e-200})
        editor->zoomBy(factor);
    EXPECT_TRUE(transform().isIdentity());
    leaveMoveMode();
    editor->nudge(3, 0);
    editor->zoomBy(2);
    EXPECT_FALSE(editor->canUndo());
}

TEST_F(BlendSteps, AResetIsAStepFromAllOfTheComposition)
{
    const CGImage opening = editor->renderedCanvas().cgImage();
    BlendComposition work = state();
    work.photos[0].image = flat({1, 2, 3, 255});
    work.photos[0].alpha = 0.9;
    work.backdrop = UIColor{1, 0, 0, 1};
    work.bringToFront(0);
    work.photo2Selected = false;
    work.contrastBool = true;
    editor->setComposition(work);
    const CGImage edited = editor->renderedCanvas().cgImage();
    const auto sticker = std::make_shared<UIView>(CGRect{0, 0, 10, 10});
    editor->mainImgView().addSubview(sticker);

    editor->chooseTool("reset");
    EXPECT_FALSE(editor->isEdited());
    EXPECT_EQ(sticker->superview(), nullptr);
    EXPECT_TRUE(imagesMatch(editor->renderedCanvas().cgImage(), opening));
    EXPECT_TRUE(editor->photo2Selected());
    EXPECT_TRUE(state().contrastBool); // what a slider works from outlives a reset
    EXPECT_EQ(editor->toolBar().cell("reset").background, UIColor::gray());

    editor->undo();
    EXPECT_TRUE(imagesMatch(editor->renderedCanvas().cgImage(), edited));
    EXPECT_FALSE(editor->photo2Selected());
    EXPECT_EQ(editor->toolBar().cell("reset").background, UIColor::clear());
    EXPECT_EQ(editor->toolBar().activeTool(), "pan");
    editor->undo();
    EXPECT_FALSE(editor->canUndo());
}

TEST_F(BlendSteps, AStateCostsWhatItsOwnPicturesTake)
{
    constexpr std::size_t kPicture = 4 * kSide * kSide;
    PictureMemory counted;
    EXPECT_EQ(byteCount(state(), counted), 2 * kPicture);
    BlendComposition changed = state();
    changed.photos[1].image = flat(kRed);
    changed.applyFxOnImage1 = changed.photos[0].image;
    changed.applyFxOnImage2 = flat(kBlue);
    EXPECT_EQ(byteCount(changed, counted), 2 * kPicture);
}

TEST_F(BlendSteps, FlatteningLeavesADragAlone)
{
    beginDrag(4);
    editor->flattened();
    fingers->touchEnded(1, {46, 32}, 0.3);
    EXPECT_TRUE(editor->isEdited());
    editor->undo();
    EXPECT_FALSE(editor->canUndo());
    EXPECT_TRUE(transform().isIdentity());
}

} // namespace
} // namespace lamina::test
