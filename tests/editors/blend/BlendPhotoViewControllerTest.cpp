#include "BlendEditorFixture.h"

#include <cmath>
#include <functional>
#include <map>
#include <string>

namespace lamina::test {
namespace {

TEST_F(BlendEditor, OpensInMoveModeWithTheSecondPhotoOnTop)
{
    EXPECT_TRUE(state().photo2Selected && !state().photo1Selected && state().panBool && editor->photo2OnTop());
    EXPECT_EQ(&editor->currentImageView(), &editor->imgView2());
    EXPECT_EQ(editor->mainImgView().subviews().back().get(), &editor->imgView2());
    EXPECT_EQ(editor->mainImgView().frame(), (CGRect{0, 0, kSide, kSide}));
    EXPECT_EQ(editor->stickerHandleTag(), 500);
    EXPECT_EQ(editor->toolSpacing(), 47);
}

TEST_F(BlendEditor, SelectionButtonsSwapOutsideMoveModeAlone)
{
    using Button = void (BlendPhotoViewController::*)();
    const struct {
        bool moves;
        bool first; ///< selected before, and then the second
        bool second;
        Button button;
        bool firstThen;
        bool secondThen;
    } table[] = {
        {false, false, true, &BlendPhotoViewController::photo2, true, false},
        {false, true, false, &BlendPhotoViewController::photo1, false, true},
        {false, false, true, &BlendPhotoViewController::photo1, true, false},
        {false, false, false, &BlendPhotoViewController::photo2, false, true},
        {true, false, true, &BlendPhotoViewController::photo1, false, false},
        {true, false, false, &BlendPhotoViewController::photo2, false, true},
        {true, false, true, &BlendPhotoViewController::photo2, false, true},
    };
    for (const auto& c : table) {
        SCOPED_TRACE(&c - table);
        BlendComposition composition = state();
        composition.panBool = c.moves;
        composition.photo1Selected = c.first;
        composition.photo2Selected = c.second;
        composition.contrastBool = composition.brightBool = composition.opacityBool = true;
        editor->setComposition(composition);
        ((*editor).*c.button)();
        DispatchQueue::main().runUntilIdle();
        EXPECT_EQ(state().photo1Selected, c.firstThen);
        EXPECT_EQ(state().photo2Selected, c.secondThen);
        EXPECT_FALSE(state().contrastBool || state().brightBool || state().opacityBool);
        // An alert says why nothing is selected, and the second photo stays movable.
        EXPECT_EQ(editor->presentedViewController() != nullptr, !c.firstThen && !c.secondThen);
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
    gesture<UIPinchGestureRecognizer>().perform(2.3);
    gesture<UIPanGestureRecognizer>().perform({10.7, -4.1}, &editor->saveTheImg());
    const CGAffineTransform byFingers = transform();
    EXPECT_EQ(byFingers, (CGAffineTransform{2.3, 0, 0, 2.3, 2.3 * 10.7, 2.3 * -4.1}));
    EXPECT_EQ(state().photos[1].transform, byFingers);
    EXPECT_TRUE(editor->imgView1().transform().isIdentity());
    editor->resetBtn();
    editor->zoomBy(2.3);
    editor->nudge(10.7, -4.1);
    EXPECT_EQ(transform(), byFingers);

    UIRotationGestureRecognizer rotation;
    editor->rotationGes(rotation); // belongs to no photo
    EXPECT_EQ(transform(), byFingers);
}

TEST_F(BlendEditor, FlattensSourceOverOnWhiteAtTheScreensScale)
{
    // T over B on white, alphas a and b: a·T + (1 − a)·(b·B + (1 − b)·white).
    const auto over = [](Rgba top, double a, Rgba bottom, double b) {
        Rgba mixed{};
        for (std::size_t i = 0; i < mixed.size(); ++i)
            mixed[i] = static_cast<std::uint8_t>(std::lround(a * top[i] + (1 - a) * (b * bottom[i] + (1 - b) * 255)));
        return mixed;
    };
    const UIImage opening = editor->flattened();
    ASSERT_EQ(opening.pixelSize(), (IntSize{2 * kSide, 2 * kSide}));
    EXPECT_EQ(opening.scale(), 2);
    EXPECT_TRUE(pixelMatches(opening.cgImage(), 127, 127, over(kBlue, 0.5, kRed, 0.5), 1));

    BlendComposition composition = state();
    composition.photos[0].alpha = 0.8;
    composition.photos[1].alpha = 0.3;
    composition.photos[1].transform = CGAffineTransform::translation(kSide / 2.0, 0);
    composition.bringToFront(0);
    composition.backdrop = UIColor{1, 0, 0, 1};
    editor->setComposition(composition);
    EXPECT_FALSE(pixelMatches(editor->renderedCanvas().cgImage(), 10, 64, over(kRed, 0.8, kWhite, 1), 1));
    const UIImage moved = editor->flattened();
    EXPECT_TRUE(pixelMatches(moved.cgImage(), 10, 64, over(kRed, 0.8, kWhite, 1), 1));
    EXPECT_TRUE(pixelMatches(moved.cgImage(), 100, 64, over(kRed, 0.8, kBlue, 0.3), 1));
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
    std::map<std::string, int> heard;
    const auto listen = [&](const char* name, auto signal) {
        QObject::connect(editor.get(), signal, editor.get(), [&heard, name] { ++heard[name]; });
    };
    listen("bar", &Editor::barChanged);
    listen("selection", &Editor::selectionChanged);
    listen("history", &Editor::historyChanged);
    listen("edited", &Editor::editedChanged);
    listen("pictures", &Editor::picturesChanged);
    using Calls = std::map<std::string, int>;

    beginDrag(4);
    fingers->touchMoved(1, {50, 32}, 0.3);
    EXPECT_EQ(heard, (Calls{{"edited", 1}}));
    fingers->touchEnded(1, {50, 32}, 0.4);
    EXPECT_EQ(heard, (Calls{{"edited", 1}, {"history", 1}}));

    heard.clear();
    editor->resetBtn();
    EXPECT_EQ(heard, (Calls{{"edited", 1}, {"bar", 1}}));
    EXPECT_EQ(editor->tools(), editor->toolBar().list());
    heard.clear();
    BlendComposition other = state();
    other.photos[1].image = flat(kRed);
    other.photo1Selected = true;
    editor->setComposition(other);
    EXPECT_EQ(heard, (Calls{{"edited", 1}, {"bar", 1}, {"selection", 1}, {"pictures", 1}}));
    EXPECT_TRUE(qvariant_cast<UIImage>(editor->property("photo2Picture")).isIdenticalTo(other.photos[1].image));
}

} // namespace
} // namespace lamina::test
