// The controls as fingers, those who don't see them, and other views meet them.
#include "editors/colorpicker/HSBColor.h"
#include "editors/colorpicker/InfColorBarPicker.h"
#include "editors/colorpicker/InfColorIndicatorView.h"
#include "editors/colorpicker/InfColorSquarePicker.h"
#include "editors/colorpicker/InfColorSquareView.h"
#include "editors/colorpicker/InfSourceColorView.h"
#include "platform/image/drawing/CGContext.h"
#include "platform/view/TouchDispatcher.h"

#include <array>
#include <gtest/gtest.h>
#include <memory>

namespace lamina::test {
namespace {

/// A control on a root that fingers reach.
template <class Control>
struct Touched {
    explicit Touched(const CGRect& frame)
    {
        root->addSubview(control);
        control->setFrame(frame);
        control->addTarget([this](UIControl&) { ++changes; }, UIControlEvents::ValueChanged);
        control->addTarget([this](UIControl&) { ++taps; }, UIControlEvents::TouchUpInside);
    }
    void down(double x, double y) { fingers.touchBegan(1, {x, y}, 0); }
    void move(double x, double y) { fingers.touchMoved(1, {x, y}, 0.1); }
    void up(double x, double y) { fingers.touchEnded(1, {x, y}, 0.2); }

    std::shared_ptr<UIView> root = std::make_shared<UIView>(CGRect{0, 0, 400, 400});
    std::shared_ptr<Control> control = std::make_shared<Control>();
    TouchDispatcher fingers{root};
    int changes = 0;
    int taps = 0;
};

/// What a view draws on grey, a pixel a point.
std::array<int, 3> pixelOf(const UIView& view, int x, int y)
{
    auto context = CGContext::image(view.bounds().size, true, 1);
    context->setFillColor(UIColor::gray());
    context->fillRect(view.bounds());
    view.layer().renderInContext(*context);
    const std::uint8_t* const pixel = context->makeImage().row(y) + static_cast<std::ptrdiff_t>(4) * x;
    return {pixel[0], pixel[1], pixel[2]};
}

TEST(ColorBar, FollowsTheFingerAlongItsTrack)
{
    Touched<InfColorBarPicker> bar({10, 10, 240, 44});
    bar.down(10 + 20 + 50, 20);
    EXPECT_FLOAT_EQ(bar.control->value(), 0.25F);
    EXPECT_EQ(bar.control->indicator()->center(), (CGPoint{70, 22}));
    EXPECT_EQ(bar.control->indicator()->color(), colorFromHSB({0.25F, 1, 1}));
    bar.move(80, 300); // the same place along the track
    bar.move(-50, 20);
    EXPECT_EQ(bar.control->value(), 0);
    bar.move(399, 399);
    EXPECT_EQ(bar.control->value(), 1);
    EXPECT_EQ(bar.changes, 3);
    bar.control->setFrame({0, 0, 140, 30});
    EXPECT_EQ(bar.control->indicator()->center(), (CGPoint{120, 15}));
}

TEST(ColorBar, StepsRoundItsEndsAndSaysItsDegrees)
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

TEST(ColorSquare, FollowsTheFingerAndSaysItsValues)
{
    Touched<InfColorSquarePicker> square({0, 0, 240, 140});
    square.down(20 + 116, 20 + 25);
    EXPECT_EQ(square.control->value(), (CGPoint{0.58, 0.75}));
    EXPECT_EQ(square.control->indicator()->center(), (CGPoint{136, 45}));
    EXPECT_EQ(square.control->spokenValue(), "57% saturation, 75% brightness"); // 0.58 · 100 is a hair below 58
    square.move(300, -5);
    EXPECT_EQ(square.control->value(), (CGPoint{1, 1}));
    square.move(0, 399);
    EXPECT_EQ(square.control->value(), (CGPoint{0, 0}));
    EXPECT_EQ(square.control->indicator()->center(), (CGPoint{20, 120}));
    square.control->setHue(0.5F);
    EXPECT_EQ(square.changes, 3) << "a hue is no value";
    square.control->setValue({1, 0.5});
    EXPECT_EQ(square.control->indicator()->color(), colorFromHSB({0.5F, 1, 0.5F}));
    square.control->stepBy(0.1, 3);
    EXPECT_EQ(square.control->value(), (CGPoint{1, 1})) << "steps stop at the edges";
}

TEST(ColorSquare, ItsPictureIsMadeForAnotherHueOnlyAndInTheSameMemory)
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

TEST(SourceSwatch, IsFramedWhileTheFingerIsInside)
{
    Touched<InfSourceColorView> swatch({0, 0, 60, 40});
    swatch.control->setBackgroundColor(UIColor{1, 0, 0, 1});
    constexpr std::array kRed{255, 0, 0};
    swatch.down(30, 20);
    EXPECT_EQ(pixelOf(*swatch.control, 1, 20), (std::array{255, 255, 255}));
    EXPECT_EQ(pixelOf(*swatch.control, 2, 20), (std::array{0, 0, 0}));
    EXPECT_EQ(pixelOf(*swatch.control, 3, 20), kRed);
    swatch.move(70, 20); // near enough for a tap, but outside
    EXPECT_FALSE(swatch.control->trackingInside());
    swatch.move(50, 20);
    EXPECT_TRUE(swatch.control->trackingInside());
    swatch.up(50, 20);
    EXPECT_EQ(pixelOf(*swatch.control, 1, 20), kRed);
    swatch.down(30, 20);
    swatch.fingers.cancelAllTouches(1);
    EXPECT_FALSE(swatch.control->trackingInside());
    EXPECT_EQ(swatch.taps, 1);
}

TEST(ColorIndicator, IsADiscWithALightRimAndADarkEdge)
{
    InfColorIndicatorView indicator({0, 0, 24, 24});
    indicator.setColor({0, 0, 1, 1});
    EXPECT_EQ(pixelOf(indicator, 12, 12), (std::array{0, 0, 255}));
    EXPECT_EQ(pixelOf(indicator, 2, 12)[0], 255); // the rim is drawn over the edge
    EXPECT_LT(pixelOf(indicator, 0, 12)[0], 100);
}

} // namespace
} // namespace lamina::test
