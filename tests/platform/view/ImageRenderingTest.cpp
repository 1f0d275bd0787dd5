#include "platform/view/ImageRendering.h"

#include "TestPictures.h"
#include "platform/base/UIScreen.h"
#include "platform/view/UIScrollView.h"

#include <gtest/gtest.h>

namespace lamina::test {
namespace {

constexpr Rgba kRed{255, 0, 0, 255};
constexpr Rgba kGreen{0, 255, 0, 255};
constexpr Rgba kBlack{0, 0, 0, 255};
constexpr Rgba kClear{0, 0, 0, 0};

class ImageRendering : public testing::Test {
protected:
    ImageRendering() { UIScreen::setMain({{375, 667}, 2}); }
    ~ImageRendering() override { UIScreen::setMain(former); }

    static std::shared_ptr<UIView> colored(const CGRect& frame, const UIColor& color)
    {
        auto view = std::make_shared<UIView>(frame);
        view->setBackgroundColor(color);
        return view;
    }

    const UIScreen former = UIScreen::main();
};

TEST_F(ImageRendering, TakesSizeScaleAndOpacityOfTheView)
{
    const auto view = std::make_shared<UIView>(CGRect{100, 50, 20, 10});
    view->setTransform(CGAffineTransform::rotation(0.3)); // stands in the parent, and has no say here
    view->addSubview(colored({5, 2, 10, 4}, {1, 0, 0, 1}));

    const UIImage opaque = imageByRenderingView(*view);
    EXPECT_EQ(opaque.size(), (CGSize{20, 10}));
    EXPECT_EQ(opaque.scale(), 2);
    EXPECT_EQ(opaque.pixelSize(), (IntSize{40, 20}));
    EXPECT_FALSE(opaque.cgImage().hasAlpha());
    EXPECT_EQ(pixelAt(opaque.cgImage(), 10, 4), kRed);
    EXPECT_EQ(pixelAt(opaque.cgImage(), 29, 11), kRed);
    EXPECT_EQ(pixelAt(opaque.cgImage(), 9, 4), kBlack);
    EXPECT_EQ(pixelAt(opaque.cgImage(), 29, 12), kBlack);

    view->setOpaque(false);
    const UIImage clear = imageByRenderingView(*view);
    EXPECT_TRUE(clear.cgImage().hasAlpha());
    EXPECT_EQ(pixelAt(clear.cgImage(), 10, 4), kRed);
    EXPECT_EQ(pixelAt(clear.cgImage(), 9, 4), kClear);
}

/// Wherever the background hides every pixel the picture has no alpha, and is the same otherwise.
TEST_F(ImageRendering, AnOpaqueGroundNeedsNoAlpha)
{
    const struct {
        const char* name;
        bool hasAlpha;
        void (*change)(UIView&);
    } kGrounds[] = {
        {"opaque colour", false, [](UIView&) {}},
        {"with a shadow and a border", false,
         [](UIView& view) {
             view.layer().setShadow({UIColor::black(), 0.5, {2, 2}, 3});
             view.layer().setBorderWidth(2);
             view.layer().setBorderColor({0, 0, 1, 0.5});
         }},
        {"no colour", true, [](UIView& view) { view.setBackgroundColor({}); }},
        {"translucent colour", true,
         [](UIView& view) {
             view.setBackgroundColor(UIColor{0, 1, 0, 0.99});
         }},
        {"translucent view", true, [](UIView& view) { view.setAlpha(0.99); }},
        {"hidden view", true, [](UIView& view) { view.setHidden(true); }},
        {"round corners", true, [](UIView& view) { view.layer().setCornerRadius(1); }},
        {"a mask", true, [](UIView& view) { view.layer().setMask(std::make_shared<CALayer>()); }},
        {"scrolled away", true,
         [](UIView& view) {
             view.setBounds({0, 1, 20, 10});
         }},
        {"ends within a pixel", true,
         [](UIView& view) {
             view.setBounds({0, 0, 20, 10.25});
         }},
    };
    for (const auto& ground : kGrounds) {
        SCOPED_TRACE(ground.name);
        const auto view = colored({0, 0, 20, 10}, {0, 1, 0, 1});
        view->addSubview(colored({5, 2, 10, 4}, {1, 0, 0, 0.5}));
        view->setOpaque(false);
        ground.change(*view);
        const CGImage image = imageByRenderingView(*view).cgImage();
        EXPECT_EQ(image.hasAlpha(), ground.hasAlpha);

        std::optional<CGContext> context = CGContext::image(view->bounds().size, false, 2);
        view->layer().renderInContext(*context);
        const CGImage clear = context->makeImage();
        int differing = 0;
        for (int y = 0; y < clear.height(); ++y)
            for (int x = 0; x < clear.width(); ++x)
                differing += pixelAt(image, x, y) != pixelAt(clear, x, y);
        EXPECT_EQ(differing, 0);
    }
}

TEST_F(ImageRendering, ShowsWhatAScrollViewShowsNow)
{
    const auto scroll = std::make_shared<UIScrollView>(CGRect{0, 0, 20, 20});
    scroll->setOpaque(false);
    scroll->setContentSize({60, 100});
    scroll->addSubview(colored({0, 0, 60, 30}, {1, 0, 0, 1}));
    scroll->addSubview(colored({0, 30, 60, 70}, {0, 1, 0, 1}));

    scroll->setContentOffset({0, 25}); // five points of red above the green
    const CGImage below = imageByRenderingCurrentVisibleRect(*scroll).cgImage();
    ASSERT_EQ(below.size(), (IntSize{40, 40}));
    EXPECT_EQ(pixelAt(below, 0, 9), kRed);
    EXPECT_EQ(pixelAt(below, 39, 10), kGreen);
    EXPECT_EQ(pixelAt(below, 39, 39), kGreen);
    // Without the move the view's clip leaves nothing above its bounds' origin.
    EXPECT_EQ(pixelAt(imageByRenderingView(*scroll).cgImage(), 0, 9), kClear);

    scroll->setContentOffset({8, 25}); // sideways nothing moves, so the clip's left edge shows
    const CGImage aside = imageByRenderingCurrentVisibleRect(*scroll).cgImage();
    EXPECT_EQ(pixelAt(aside, 15, 39), kClear);
    EXPECT_EQ(pixelAt(aside, 16, 39), kGreen);
    EXPECT_EQ(pixelAt(aside, 16, 9), kRed);
}

TEST_F(ImageRendering, GivesNothingForAnEmptyView)
{
    EXPECT_FALSE(imageByRenderingView(UIView({0, 0, 0, 10})));
    EXPECT_FALSE(imageByRenderingCurrentVisibleRect(UIScrollView({0, 0, 10, 0})));
}

} // namespace
} // namespace lamina::test
