#include "BlendEditorFixture.h"
#include "platform/view/UIAlertController.h"

#include <cmath>

namespace lamina::test {
namespace {

/// a·T + (1 − a)·(b·B + (1 − b)·C) for one pixel, computed in real numbers.
Rgba over(Rgba top, double a, Rgba bottom, double b, Rgba backdrop)
{
    Rgba result{};
    for (std::size_t i = 0; i < result.size(); ++i)
        result[i] =
            static_cast<std::uint8_t>(std::lround(a * top[i] + (1 - a) * (b * bottom[i] + (1 - b) * backdrop[i])));
    return result;
}

TEST_F(BlendEditor, OpensInMoveModeWithTheSecondPhotoOnTop)
{
    EXPECT_TRUE(state().photo2Selected);
    EXPECT_FALSE(state().photo1Selected);
    EXPECT_TRUE(state().panBool);
    EXPECT_EQ(&editor->currentImageView(), &editor->imgView2());
    EXPECT_EQ(stack(), (std::vector<UIView*>{&editor->imgView1(), &editor->imgView2()}));
    EXPECT_EQ(editor->imgView1().alpha(), 0.5);
    EXPECT_EQ(editor->imgView2().alpha(), 0.5);
    EXPECT_EQ(editor->imgView2().gestureRecognizers().size(), 2u);
    EXPECT_TRUE(editor->imgView1().gestureRecognizers().empty());
    EXPECT_EQ(editor->mainImgView().frame(), (CGRect{0, 0, kSide, kSide}));
    EXPECT_EQ(editor->toolBar().activeTool(), BlendTool::Pan);
    EXPECT_EQ(editor->stickerHandleTag(), 500);
}

TEST_F(BlendEditor, TheFirstPhotoCannotBeChosenInMoveMode)
{
    editor->photo1();
    DispatchQueue::main().runUntilIdle();
    EXPECT_FALSE(state().photo1Selected);
    EXPECT_FALSE(state().photo2Selected);
    const auto alert = std::dynamic_pointer_cast<UIAlertController>(editor->presentedViewController());
    ASSERT_TRUE(alert);
    EXPECT_EQ(alert->title(), "⚠️");
    EXPECT_EQ(alert->message(), "Photo 1 is not movable.");
    ASSERT_EQ(alert->actions().size(), 1u);
    EXPECT_EQ(alert->actions()[0].title, "OK");

    // The second photo stays movable.
    pan().perform({5, 0}, &editor->saveTheImg());
    EXPECT_EQ(editor->imgView2().transform().tx, 5);
}

TEST_F(BlendEditor, SelectionButtonsSwapOutsideMoveModeAndForgetSnapshots)
{
    leaveMoveMode();
    BlendComposition composition = state();
    composition.contrastBool = composition.brightBool = composition.opacityBool = true;
    editor->setComposition(composition);

    editor->photo2();
    EXPECT_TRUE(state().photo1Selected);
    EXPECT_FALSE(state().photo2Selected);
    EXPECT_FALSE(state().contrastBool || state().brightBool || state().opacityBool);
    editor->photo1();
    EXPECT_FALSE(state().photo1Selected);
    EXPECT_TRUE(state().photo2Selected);
    editor->photo1();
    EXPECT_TRUE(state().photo1Selected);
    EXPECT_FALSE(state().photo2Selected);
    EXPECT_FALSE(editor->presentedViewController());
}

TEST_F(BlendEditor, TheSecondPhotoStaysSelectedInMoveMode)
{
    editor->photo2();
    EXPECT_TRUE(state().photo2Selected);
    EXPECT_FALSE(state().photo1Selected);
    EXPECT_EQ(editor->imgView2().gestureRecognizers().size(), 2u);
}

TEST_F(BlendEditor, GesturesAddUpInsideTheTransform)
{
    pinch().perform(2);
    pan().perform({10, -4}, &editor->saveTheImg());
    const CGAffineTransform wanted{2, 0, 0, 2, 20, -8};
    EXPECT_EQ(editor->imgView2().transform(), wanted);
    EXPECT_EQ(state().photos[1].transform, wanted);
    EXPECT_TRUE(editor->imgView1().transform().isIdentity());

    UIRotationGestureRecognizer rotation;
    editor->rotationGes(rotation); // belongs to no photo
    EXPECT_EQ(editor->imgView2().transform(), wanted);
}

TEST_F(BlendEditor, ResetGoesBackToThePhotosAsTheyCame)
{
    pinch().perform(3);
    BlendComposition composition = state();
    composition.photos[1].image = flat({1, 2, 3, 255});
    composition.photos[0].alpha = 0.9;
    composition.backdrop = UIColor{1, 0, 0, 1};
    composition.contrastBool = true;
    composition.applyFxOnImage1 = flat({9, 9, 9, 255});
    editor->setComposition(composition);
    auto sticker = std::make_shared<UIView>(CGRect{0, 0, 10, 10});
    editor->mainImgView().addSubview(sticker);

    editor->resetBtn();
    EXPECT_EQ(stack(), (std::vector<UIView*>{&editor->imgView1(), &editor->imgView2()}));
    EXPECT_EQ(sticker->superview(), nullptr);
    EXPECT_TRUE(editor->imgView2().transform().isIdentity());
    EXPECT_TRUE(editor->imgView2().image().isIdenticalTo(secondPickedImage));
    EXPECT_EQ(editor->imgView1().alpha(), 0.5);
    EXPECT_FALSE(editor->mainImgView().backgroundColor().has_value());
    EXPECT_TRUE(state().panBool);
    EXPECT_EQ(editor->toolBar().activeTool(), BlendTool::Reset);
    EXPECT_EQ(editor->imgView2().gestureRecognizers().size(), 2u);
    // What a slider works from outlives a reset.
    EXPECT_TRUE(state().contrastBool);
    EXPECT_TRUE(state().applyFxOnImage1);
}

TEST_F(BlendEditor, FlattensSourceOverOnWhiteAtTheScreensScale)
{
    const UIImage picture = editor->flattened();
    ASSERT_EQ(picture.pixelSize(), (IntSize{2 * kSide, 2 * kSide}));
    EXPECT_EQ(picture.scale(), 2);
    const Rgba wanted = over(kBlue, 0.5, kRed, 0.5, {255, 255, 255, 255});
    for (const auto& [x, y] : {std::pair{0, 0}, {127, 0}, {0, 127}, {127, 127}, {64, 64}})
        EXPECT_LE(difference(pixelAt(picture.cgImage(), x, y), wanted), 1) << x << ", " << y;
}

TEST_F(BlendEditor, FlattensWithAlphasOrderAndWhiteInsteadOfTheBackdrop)
{
    BlendComposition composition = state();
    composition.photos[0].alpha = 0.8;
    composition.photos[1].alpha = 0.3;
    composition.photos[1].transform = CGAffineTransform::translation(kSide / 2.0, 0);
    composition.bringToFront(0);
    composition.backdrop = UIColor{1, 0, 0, 1};
    editor->setComposition(composition);
    const UIImage picture = editor->flattened();
    const Rgba white{255, 255, 255, 255};
    EXPECT_LE(difference(pixelAt(picture.cgImage(), 10, 64), over(kRed, 0.8, white, 1, white)), 1);
    EXPECT_LE(difference(pixelAt(picture.cgImage(), 100, 64), over(kRed, 0.8, kBlue, 0.3, white)), 1);
    // The canvas shows the white backdrop from here on.
    EXPECT_EQ(editor->mainImgView().backgroundColor(), UIColor::white());
    EXPECT_EQ(state().backdrop, UIColor::white());
}

TEST_F(BlendEditor, ARecordRebuildsTheSameCanvas)
{
    pinch().perform(1.7);
    pan().perform({7, 3}, &editor->saveTheImg());
    const BlendComposition record = state();
    const UIImage before = editor->flattened();
    editor->resetBtn();
    editor->setComposition(record);
    const UIImage after = editor->flattened();
    ASSERT_EQ(after.pixelSize(), before.pixelSize());
    EXPECT_TRUE(
        std::equal(before.cgImage().bytes().begin(), before.cgImage().bytes().end(), after.cgImage().bytes().begin()));
    // And it can still be moved.
    pan().perform({1, 0}, &editor->saveTheImg());
    EXPECT_NE(state().photos[1].transform, record.photos[1].transform);
}

TEST_F(BlendEditor, EmptySlotsLeaveTheRestWorking)
{
    clearPickedImages();
    auto empty = std::make_shared<BlendPhotoViewController>();
    empty->view();
    const UIImage picture = empty->flattened();
    ASSERT_TRUE(picture);
    EXPECT_EQ(pixelAt(picture.cgImage(), 5, 5), (Rgba{255, 255, 255, 255}));
}

} // namespace
} // namespace lamina::test
