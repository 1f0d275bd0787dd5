#include "platform/view/ImageRendering.h"

#include "LayerScene.h"
#include "platform/base/UIScreen.h"
#include "platform/view/UIScrollView.h"

namespace lamina::test {
namespace {

class ImageRendering : public testing::Test {
protected:
    ImageRendering() { UIScreen::setMain({{375, 667}, 2}); }
    ~ImageRendering() override { UIScreen::setMain(former); }

    template <class View = UIView>
    static std::shared_ptr<View> colored(const CGRect& frame, const std::optional<UIColor>& color)
    {
        auto view = std::make_shared<View>(frame);
        view->setBackgroundColor(color);
        return view;
    }

    const UIScreen former = UIScreen::main();
};

TEST_F(ImageRendering, TakesSizeScaleAndOpacityOfTheView)
{
    const auto view = colored({100, 50, 4, 2}, std::nullopt);
    view->setTransform(CGAffineTransform::rotation(0.3)); // stands in the parent, and has no say here
    view->addSubview(colored({1, 1, 2, 4}, kRed));
    const UIImage opaque = imageByRenderingView(*view);
    EXPECT_EQ(opaque.size(), (CGSize{4, 2}));
    EXPECT_EQ(opaque.scale(), 2);
    EXPECT_FALSE(opaque.cgImage().hasAlpha());
    EXPECT_EQ(drawn(opaque.cgImage()), "kkkkkkkk\nkkkkkkkk\nkkrrrrkk\nkkrrrrkk\n");
    view->setOpaque(false);
    const UIImage clear = imageByRenderingView(*view, 1);
    EXPECT_TRUE(clear.cgImage().hasAlpha());
    EXPECT_EQ(drawn(clear.cgImage()), "....\n.rr.\n");
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
        {"shadow", false,
         [](UIView& view) {
             view.layer().setShadow({UIColor::black(), 0.5, {2, 2}, 3});
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
        const auto view = colored({0, 0, 20, 10}, kGreen);
        view->addSubview(colored({5, 2, 10, 4}, kRed.withAlpha(0.5)));
        view->setOpaque(false);
        ground.change(*view);
        const CGImage image = imageByRenderingView(*view).cgImage();
        EXPECT_EQ(image.hasAlpha(), ground.hasAlpha);
        std::optional<CGContext> context = CGContext::image(view->bounds().size, false, 2);
        view->layer().renderInContext(*context);
        EXPECT_EQ(bytesOf(image), bytesOf(context->makeImage()));
    }
}

TEST_F(ImageRendering, ShowsWhatAScrollViewShowsNow)
{
    UIScreen::setMain({{375, 667}, 1});
    const auto scroll = colored<UIScrollView>({0, 0, 6, 4}, std::nullopt);
    scroll->setOpaque(false);
    scroll->setContentSize({20, 40});
    scroll->addSubview(colored({0, 0, 20, 10}, kRed));
    scroll->addSubview(colored({0, 10, 20, 30}, kGreen));
    scroll->setContentOffset({0, 9});
    EXPECT_EQ(drawn(imageByRenderingCurrentVisibleRect(*scroll).cgImage()), "rrrrrr\ngggggg\ngggggg\ngggggg\n");
    // Without the move the view's clip leaves nothing above its bounds' origin.
    EXPECT_EQ(coveredArea(imageByRenderingView(*scroll).cgImage()), 0);
    scroll->setContentOffset({2, 9}); // sideways nothing moves, so the clip's left edge shows
    EXPECT_EQ(drawn(imageByRenderingCurrentVisibleRect(*scroll).cgImage()), "..rrrr\n..gggg\n..gggg\n..gggg\n");
}

TEST_F(ImageRendering, GivesNothingForAnEmptyView)
{
    EXPECT_FALSE(imageByRenderingView(UIView({0, 0, 0, 10})));
    EXPECT_FALSE(imageByRenderingCurrentVisibleRect(UIScrollView({0, 0, 10, 0})));
}

} // namespace
} // namespace lamina::test
