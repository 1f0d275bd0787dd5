#include "editors/collage/CollageEffects.h"

#include "CollageColorsFixture.h"
#include "editors/collage/CollageEffectWork.h"
#include "editors/common/LatestWork.h"
#include "gpu/filters/color/GPUImageHighlightShadowFilter.h"
#include "gpu/filters/color/GPUImageSaturationFilter.h"
#include "gpu/filters/effect/GPUImageVignetteFilter.h"
#include "imageops/ImageFilters.h"
#include "platform/base/DispatchSemaphore.h"
#include "platform/view/UIImageView.h"
#include "platform/view/UIPinchGestureRecognizer.h"

#include <functional>
#include <vector>

namespace lamina::test {
namespace {

using CollageEffects = CollageColors;
using Editor = CreateCollageViewController;
using Effect = std::function<UIImage(const UIImage& base)>;

Effect vignetted(float start, float end)
{
    return [=](const UIImage& base) {
        const auto filter = std::make_shared<GPUImageVignetteFilter>();
        filter->setVignetteStart(start);
        filter->setVignetteEnd(end);
        return filter->imageByFilteringImage(base);
    };
}

template <class Filter>
Effect filtered(void (Filter::*set)(float), float value)
{
    return [=](const UIImage& base) {
        const auto filter = std::make_shared<Filter>();
        (*filter.*set)(value);
        return filter->imageByFilteringImage(base);
    };
}

TEST_F(CollageEffects, EverySliderWorksOnTheOneBase)
{
    struct Case {
        void (Editor::*slider)(double value);
        double value;
        Effect wanted;
    };
    const std::vector<Case> cases = {
        {&Editor::contrast, 60, [](const UIImage& base) { return contrastAdjustmentWithValue(base, 60); }},
        {&Editor::brightn, -33.5, [](const UIImage& base) { return brightenWithValue(base, -33.5F); }},
        {&Editor::emboss, -1.9, [](const UIImage& base) { return embossWithBias(base, -1); }},
        {&Editor::emboss, -0.9, [](const UIImage& base) { return embossWithBias(base, 0); }},
        {&Editor::sharpen, 7.9, [](const UIImage& base) { return sharpenWithBias(base, 7); }},
        {&Editor::unsharpen, 1000, [](const UIImage& base) { return unsharpenWithBias(base, 200); }},
        {&Editor::vignette, 0, vignetted(0.2F, 0.4F)},
        {&Editor::vignette, 0.5, vignetted(0.7F, 0.9F)},
        {&Editor::saturation, 1.5, filtered(&GPUImageSaturationFilter::setSaturation, 1.5F)},
        {&Editor::highlight, 0.25, filtered(&GPUImageHighlightShadowFilter::setHighlights, 0.25F)},
    };
    for (const Case& one : cases) {
        openWith(photo(1), photo(2));
        (*editor.*one.slider)(one.value);
        EXPECT_TRUE(same(shown(), one.wanted(photo(1)))) << "case " << &one - cases.data();
    }
    EXPECT_EQ(editor->sliderText(collageslider::kSharpen, 64), QStringLiteral("+64"));
    EXPECT_EQ(editor->sliderText(collageslider::kVignette, 0.5), QStringLiteral("0.50"));
}

TEST_F(CollageEffects, FirstTouchesStackAndMovesDoNot)
{
    editor->contrast(80);
    editor->contrast(-40);
    const UIImage contrasted = contrastAdjustmentWithValue(photo(1), -40);
    EXPECT_TRUE(same(shown(), contrasted));
    editor->brightn(25);
    editor->brightn(30);
    const UIImage brightened = brightenWithValue(contrasted, 30);
    EXPECT_TRUE(same(shown(), brightened));
    // The base is the brightness's by now, and holds the first contrast.
    editor->contrast(20);
    EXPECT_TRUE(same(shown(), contrastAdjustmentWithValue(contrasted, 20)));
    // In whichever order they stand on the screen.
    openWith(photo(1), photo(2));
    editor->brightn(30);
    editor->contrast(-40);
    EXPECT_TRUE(same(shown(), contrastAdjustmentWithValue(brightenWithValue(photo(1), 30), -40)));
}

TEST_F(CollageEffects, AnotherSlotTakesItsOwnBaseAtTheNextTouchAlone)
{
    editor->contrast(100);
    const UIImage first = shown();
    editor->selectSlot(2);
    EXPECT_EQ(state().sliders[0], 100); // thumbs follow no slot
    EXPECT_TRUE(same(shown(), photo(2)));
    EXPECT_TRUE(same(state().applyFxOnImg, photo(1)));
    editor->contrast(-50);
    EXPECT_TRUE(same(shown(), contrastAdjustmentWithValue(photo(2), -50)));
    editor->selectSlot(1);
    editor->contrast(10);
    EXPECT_TRUE(same(shown(), contrastAdjustmentWithValue(first, 10)));
}

TEST_F(CollageEffects, ResetKeepsFlagsAndOpacity)
{
    editor->brightn(40);
    editor->contrast(50);
    editor->opacity(0.25);
    const UIImage base = brightenWithValue(photo(1), 40);
    editor->photosBack();
    EXPECT_TRUE(same(shown(), photo(1)));
    EXPECT_EQ(editor->currentImageView().alpha(), 0.25);
    editor->hideFxViewBtnClicked();
    editor->contrast(20); // what reset replaced comes back; opacity's first touch took the base with both on it
    EXPECT_TRUE(same(shown(), contrastAdjustmentWithValue(contrastAdjustmentWithValue(base, 50), 20)));
    EXPECT_EQ(state().photoSlots[0].alpha, 0.25);
    editor->applyLayout(2001);
    EXPECT_EQ(editor->currentImageView().alpha(), 1);
}

TEST_F(CollageEffects, AStepTakesFlagsAndBaseWithIt)
{
    editor->contrast(30);
    shown();
    clock->advance(2);
    editor->brightn(60);
    shown();
    editor->undo();
    EXPECT_EQ(state().sliders[1], 0);
    editor->contrast(90);
    EXPECT_TRUE(same(shown(), contrastAdjustmentWithValue(photo(1), 90))); // the brightness never was
    editor->undo();
    editor->undo();
    EXPECT_FALSE(editor->canUndo());
    EXPECT_TRUE(same(shown(), photo(1)));
}

/// Photos above this size are shown as smaller ones while a finger slides.
class LargeCollagePhoto : public CollageEffects {
protected:
    void SetUp() override
    {
        CollageEffects::SetUp();
        openWith(large, photo(2));
    }
    IntSize sizeInView() const { return editor->currentImageView().image().pixelSize(); }
    /// A finger that comes, moves, and goes.
    void drag(int tag, double value)
    {
        editor->beginSliding(tag);
        editor->slide(tag, value - 30);
        editor->slide(tag, value);
        editor->endSliding(tag);
    }
    /// Whether the view comes to show it without anybody waiting for what is outstanding.
    testing::AssertionResult showsSoon(const UIImage& wanted) const
    {
        testing::AssertionResult shows = testing::AssertionFailure();
        for (int turn = 0; !shows && turn < 2000; ++turn) {
            DispatchQueue::main().runUntilIdle(0.005);
            shows = same(editor->currentImageView().image(), wanted);
        }
        return shows;
    }

    const UIImage large = photo(3, 1500, 1000);
};

TEST_F(LargeCollagePhoto, IsSmallerUnderAFingerAndExactWhenItLeaves)
{
    editor->beginSliding(collageslider::kContrast);
    editor->slide(collageslider::kContrast, 50);
    editor->landWork();
    EXPECT_LT(sizeInView().width, 1500);
    EXPECT_TRUE(same(picture(), large)); // of the composition
    editor->slide(collageslider::kContrast, 90);
    editor->slide(collageslider::kContrast, 100);
    editor->endSliding(collageslider::kContrast);
    EXPECT_FALSE(editor->canUndo()); // not before the picture is there
    DispatchQueue::main().runUntilIdle();
    EXPECT_TRUE(same(shown(), contrastAdjustmentWithValue(large, 100)));
    EXPECT_FALSE(editor->isBusy());
    editor->undo();
    EXPECT_TRUE(same(shown(), large));
    EXPECT_FALSE(editor->canUndo()); // all of it was one step
}

TEST_F(LargeCollagePhoto, IsExactForEveryActionAndExport)
{
    editor->beginSliding(collageslider::kBrightness);
    editor->slide(collageslider::kBrightness, 70);
    editor->flattened();
    EXPECT_TRUE(same(picture(), brightenWithValue(large, 70)));

    editor->beginSliding(collageslider::kBrightness);
    editor->slide(collageslider::kBrightness, 60);
    editor->viewWillDisappear(false);
    EXPECT_TRUE(same(picture(), brightenWithValue(large, 60)));
    editor->undo();

    editor->beginSliding(collageslider::kBrightness);
    editor->slide(collageslider::kBrightness, 50);
    const auto zoom = std::make_shared<UIPinchGestureRecognizer>(); // of other fingers, which have gone
    editor->currentImageView().addGestureRecognizer(zoom);
    editor->pinch(*zoom);
    EXPECT_TRUE(same(picture(), brightenWithValue(large, 50)));
    editor->undo();

    editor->beginSliding(collageslider::kSaturation);
    editor->slide(collageslider::kSaturation, 0);
    editor->selectSlot(2);
    editor->undo(); // the saturation, which was a step before the other slot
    EXPECT_TRUE(same(state().photoSlots[0].image, brightenWithValue(large, 70)));

    // Keys: what waits is replaced, and all is one step.
    editor->selectSlot(1);
    for (int value = 1; value <= 5; ++value)
        editor->slide(collageslider::kContrast, value);
    EXPECT_TRUE(editor->isBusy());
    editor->undo();
    EXPECT_TRUE(same(shown(), brightenWithValue(large, 70)));
}

TEST_F(LargeCollagePhoto, IsFollowedWhileTheStepsBeforeAreStillBeingMade)
{
    DispatchSemaphore go;
    LatestWork other; // keeps exact pictures waiting
    other.run(
        [&go] {
            go.wait();
            return UIImage();
        },
        [](const UIImage&) {});
    drag(collageslider::kContrast, 50);
    drag(collageslider::kContrast, 90);
    CoarsePicture coarse;
    const UIImage contrasted = contrastAdjustmentWithValue(coarse.of(large), 90);
    EXPECT_TRUE(showsSoon(contrasted));
    drag(collageslider::kBrightness, 40); // takes a base that isn't there yet
    EXPECT_TRUE(showsSoon(brightenWithValue(contrasted, 40)));
    editor->slide(collageslider::kOpacity, 0.5);
    EXPECT_EQ(editor->currentImageView().alpha(), 0.5);
    EXPECT_FALSE(editor->canUndo());
    go.signal();
    DispatchQueue::main().runUntilIdle();

    const UIImage first = contrastAdjustmentWithValue(large, 90);
    EXPECT_TRUE(same(shown(), brightenWithValue(first, 40)));
    EXPECT_EQ(state().photoSlots[0].alpha, 0.5);
    editor->undo();
    EXPECT_EQ(state().photoSlots[0].alpha, 1);
    editor->undo();
    EXPECT_TRUE(same(shown(), first));
    EXPECT_EQ(state().sliders[1], 0);
    editor->undo();
    EXPECT_TRUE(same(shown(), contrastAdjustmentWithValue(large, 50)));
    editor->undo();
    EXPECT_TRUE(same(shown(), large));
    EXPECT_FALSE(editor->canUndo());
}

TEST_F(CollageEffects, AnEffectThatFailsLeavesThePhotoAndTellsOnce)
{
    const UIImage endless = photo(1, 300000, 1); // longer than pictures may be
    openWith(endless, photo(2));
    editor->contrast(10);
    EXPECT_TRUE(same(shown(), endless));
    EXPECT_TRUE(alertIsUp());
    editor->dismiss(false, {});
    DispatchQueue::main().runUntilIdle();
    editor->contrast(20);
    EXPECT_FALSE(alertIsUp());
    EXPECT_EQ(state().sliders[0], 20);
}

TEST_F(CollageEffects, APictureThatFailsAfterItsCoarseOneLeavesNothingOfIt)
{
    const UIImage wide = photo(1, 300000, 6); // longer than pictures may be, but not when it is reduced
    openWith(wide, photo(2));
    editor->beginSliding(collageslider::kContrast);
    editor->slide(collageslider::kContrast, 10);
    editor->landWork();
    EXPECT_LT(editor->currentImageView().image().pixelSize().width, 300000);
    editor->endSliding(collageslider::kContrast);
    EXPECT_TRUE(same(shown(), wide));
    EXPECT_TRUE(alertIsUp());
}

} // namespace
} // namespace lamina::test
