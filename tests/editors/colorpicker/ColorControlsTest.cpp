// The controls as fingers, those who don't see them, and other views meet them.
#include "LayerScene.h"
#include "TouchBench.h"
#include "editors/colorpicker/HSBColor.h"
#include "editors/colorpicker/InfColorBarPicker.h"
#include "editors/colorpicker/InfColorIndicatorView.h"
#include "editors/colorpicker/InfColorSquarePicker.h"
#include "editors/colorpicker/InfColorSquareView.h"
#include "editors/colorpicker/InfSourceColorView.h"

#include <cstdint>
#include <memory>

namespace lamina::test {
namespace {

/// Controls of which a value that changes is a "c", a tap a "t".
class ColorControls : public TouchBench {
protected:
    template <class Control>
    std::shared_ptr<Control> add(const CGRect& frame)
    {
        const auto control = addView<Control>(frame);
        control->addTarget([this](UIControl&) { log += 'c'; }, UIControlEvents::ValueChanged);
        control->addTarget([this](UIControl&) { log += 't'; }, UIControlEvents::TouchUpInside);
        return control;
    }
};

TEST_F(ColorControls, ABarFollowsTheFingerAlongItsTrack)
{
    const auto bar = add<InfColorBarPicker>({10, 10, 240, 44});
    EXPECT_EQ(play("1+80,20"), "c");
    EXPECT_FLOAT_EQ(bar->value(), 0.25F);
    EXPECT_EQ(bar->indicator()->center(), (CGPoint{70, 22}));
    EXPECT_EQ(bar->indicator()->color(), colorFromHSB({0.25F, 1, 1}));
    EXPECT_EQ(play("1>80,300 1>-50,20"), "c"); // first the same place along the track
    EXPECT_EQ(bar->value(), 0);
    EXPECT_EQ(play("1>399,399"), "c");
    EXPECT_EQ(bar->value(), 1);
    bar->setFrame({0, 0, 140, 30});
    EXPECT_EQ(bar->indicator()->center(), (CGPoint{120, 15}));
}

TEST_F(ColorControls, ABarStepsRoundItsEndsAndSaysItsDegrees)
{
    InfColorBarPicker bar;
    bar.setValue(0.98F);
    EXPECT_EQ(bar.accessibilityValue(), "352 degrees hue"); // 352.8
    bar.accessibilityIncrement();
    EXPECT_NEAR(bar.value(), 0.03, 1e-6);
    bar.accessibilityDecrement();
    EXPECT_NEAR(bar.value(), 0.98, 1e-6);
    bar.setValue(0.95F);
    bar.stepBy(0.05F);
    EXPECT_EQ(bar.value(), 1) << "the end itself is a place";
}

TEST_F(ColorControls, ASquareFollowsTheFingerAndSaysItsValues)
{
    const auto square = add<InfColorSquarePicker>({0, 0, 240, 140});
    EXPECT_EQ(play("1+136,45"), "c");
    EXPECT_EQ(square->value(), (CGPoint{0.58, 0.75}));
    EXPECT_EQ(square->indicator()->center(), (CGPoint{136, 45}));
    EXPECT_EQ(square->spokenValue(), "57% saturation, 75% brightness"); // 0.58 · 100 is a hair below 58
    EXPECT_EQ(play("1>300,-5"), "c");
    EXPECT_EQ(square->value(), (CGPoint{1, 1}));
    EXPECT_EQ(play("1>0,399"), "c");
    EXPECT_EQ(square->value(), (CGPoint{0, 0}));
    EXPECT_EQ(square->indicator()->center(), (CGPoint{20, 120}));
    square->setHue(0.5F);
    EXPECT_EQ(log, "") << "a hue is no value";
    square->setValue({1, 0.5});
    EXPECT_EQ(square->indicator()->color(), colorFromHSB({0.5F, 1, 0.5F}));
    square->stepBy(0.1, 3);
    EXPECT_EQ(square->value(), (CGPoint{1, 1})) << "steps stop at the edges";
}

TEST_F(ColorControls, ASquaresPictureIsMadeForAnotherHueOnlyAndInTheSameMemory)
{
    InfColorSquareView view({0, 0, 100, 100});
    view.setHue(0);
    const std::uint8_t* const first = view.image().cgImage().row(0);
    view.setHue(0);
    EXPECT_EQ(view.image().cgImage().row(0), first);
    view.setHue(0.5F);
    const UIImage held = view.image();
    view.setHue(0.2F);
    EXPECT_EQ(view.image().cgImage().row(0), first) << "memory is used again";
    view.setHue(0.9F); // both are taken
    EXPECT_EQ(held.cgImage().row(0)[4 * 255 + 2], 0) << "what is held stays as it is: cyan has no red";
}

TEST_F(ColorControls, TheSourceIsFramedWhileTheFingerIsInside)
{
    const auto swatch = add<InfSourceColorView>({0, 0, 60, 40});
    swatch->setBackgroundColor(UIColor{1, 0, 0, 1});
    constexpr Rgba kSource{255, 0, 0, 255};
    const auto at = [&](int x) { return pixelAt(rendered(swatch->layer()), x, 20); };
    play("1+30,20");
    EXPECT_EQ(at(1), (Rgba{255, 255, 255, 255}));
    EXPECT_EQ(at(2), (Rgba{0, 0, 0, 255}));
    EXPECT_EQ(at(3), kSource);
    play("1>70,20"); // near enough for a tap, but outside
    EXPECT_FALSE(swatch->trackingInside());
    play("1>50,20");
    EXPECT_TRUE(swatch->trackingInside());
    EXPECT_EQ(play("1-50,20 1+30,20 1x"), "t");
    EXPECT_FALSE(swatch->trackingInside());
    EXPECT_EQ(at(1), kSource);
}

} // namespace
} // namespace lamina::test
