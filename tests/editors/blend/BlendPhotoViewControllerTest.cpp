#include "BlendEditorFixture.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/UIColor.h"

#include <string>
#include <utility>

namespace lamina::test {
namespace {

TEST_F(BlendEditor, SelectionButtonsSwapOutsideMoveModeAlone)
{
    const struct {
        bool moves;
        int selected; ///< 1, 2 or none
        int button;
        int then;
    } table[] = {
        {false, 2, 2, 1}, {false, 1, 1, 2}, {false, 2, 1, 1}, {false, 0, 2, 2},
        {true, 2, 1, 0},  {true, 0, 2, 2},  {true, 2, 2, 2},
    };
    for (const auto& c : table) {
        SCOPED_TRACE(&c - table);
        BlendComposition composition = state();
        composition.mode = c.moves ? BlendMode::Move : BlendMode::Tools;
        composition.photo1Selected = c.selected == 1;
        composition.photo2Selected = c.selected == 2;
        composition.contrastBool = composition.brightBool = composition.opacityBool = true;
        editor->setComposition(composition);
        c.button == 1 ? editor->photo1() : editor->photo2();
        DispatchQueue::main().runUntilIdle();
        EXPECT_EQ(state().photo1Selected, c.then == 1);
        EXPECT_EQ(state().photo2Selected, c.then == 2);
        EXPECT_FALSE(state().contrastBool || state().brightBool || state().opacityBool);
        // An alert says why nothing is selected, and the second photo stays movable.
        EXPECT_EQ(editor->presentedViewController() != nullptr, c.then == 0);
        EXPECT_EQ(editor->movingPhoto(), c.moves ? 2 : 0);
        const double before = transform().tx;
        dragBy(3);
        EXPECT_EQ(transform().tx - before, c.moves ? 3 : 0);
        if (editor->presentedViewController())
            editor->dismiss(false);
        DispatchQueue::main().runUntilIdle();
    }
}

TEST_F(BlendEditor, GesturesAddUpInsideTheTransformAndKeysDoTheSame)
{
    EXPECT_TRUE(fingers->magnify({32, 32}, 2.5));
    dragBy(8);
    const CGAffineTransform moved{2.5, 0, 0, 2.5, 2.5 * 8, 0};
    EXPECT_EQ(transform(), moved);
    EXPECT_EQ(state().photos[1].transform, moved);
    EXPECT_TRUE(editor->imgView1().transform().isIdentity());
    editor->resetBtn();
    editor->zoomBy(2.5);
    editor->nudge(8, 0);
    EXPECT_EQ(transform(), moved);
}

TEST_F(BlendEditor, FlattensSourceOverOnWhiteAtTheScreensScale)
{
    BlendComposition composition = state();
    composition.photos[0].alpha = 0.8;
    composition.photos[1].alpha = 0.3;
    composition.photos[1].transform = CGAffineTransform::translation(kSide / 2.0, 0);
    composition.bringToFront(0);
    composition.backdrop = UIColor{1, 0, 0, 1};
    editor->setComposition(composition);
    const Rgba redOnWhite{227, 83, 75, 255}; // 0.8 · red + 0.2 · white
    EXPECT_FALSE(pixelMatches(editor->renderedCanvas().cgImage(), 10, 64, redOnWhite, 1));
    const UIImage moved = editor->flattened();
    EXPECT_EQ(moved.scale(), 2);
    EXPECT_TRUE(pixelMatches(moved.cgImage(), 10, 64, redOnWhite, 1));
    // 0.8 · red + 0.2 · (0.3 · blue + 0.7 · white)
    EXPECT_TRUE(pixelMatches(moved.cgImage(), 100, 64, {214, 71, 72, 255}, 1));
    // The canvas shows the white backdrop from here on.
    EXPECT_EQ(editor->mainImgView().backgroundColor(), UIColor::white());
    EXPECT_EQ(state().backdrop, UIColor::white());
}

TEST_F(BlendEditor, EmptySlotsLeaveTheRestWorking)
{
    clearPickedImages();
    const auto empty = std::make_shared<BlendPhotoViewController>();
    empty->view();
    EXPECT_TRUE(pixelMatches(empty->flattened().cgImage(), 5, 5, kWhite));
}

TEST_F(BlendEditor, ADragWakesOnlyWhoHasToKnow)
{
    using Editor = BlendPhotoViewController;
    std::string heard;
    const auto listen = [&](const char* name, auto signal) {
        QObject::connect(editor.get(), signal, editor.get(), [&heard, name] { heard += name; });
    };
    listen("bar ", &Editor::barChanged);
    listen("selection ", &Editor::selectionChanged);
    listen("history ", &Editor::historyChanged);
    listen("edited ", &Editor::editedChanged);
    listen("pictures ", &Editor::picturesChanged);

    beginDrag(4);
    fingers->touchMoved(1, {50, 32}, 0.3);
    EXPECT_EQ(heard, "edited ");
    fingers->touchEnded(1, {50, 32}, 0.4);
    EXPECT_EQ(std::exchange(heard, {}), "edited history ");
    editor->resetBtn();
    EXPECT_EQ(std::exchange(heard, {}), "bar edited ");
    EXPECT_EQ(editor->tools(), editor->toolBar().list());
    BlendComposition other = state();
    other.photos[1].image = flat(kRed);
    other.photo1Selected = true;
    editor->setComposition(other);
    EXPECT_EQ(heard, "bar selection pictures edited ");
    EXPECT_TRUE(qvariant_cast<UIImage>(editor->property("photo2Picture")).isIdenticalTo(other.photos[1].image));
}

} // namespace
} // namespace lamina::test
