#include "platform/view/ImageRendering.h"

#include "LayerScene.h"
#include "platform/base/UIScreen.h"
#include "platform/view/UIScrollView.h"

namespace lamina::test {
namespace {

class ImageRendering : public testing::Test {
protected:
    ImageRendering() { UIScreen::setMain({{375, 667}, 2}); }
};

TEST_F(ImageRendering, TakesSizeScaleAndOpacityOfTheView)
{
    const auto view = std::make_shared<UIView>(CGRect(100, 50, 4, 2));
    view->setTransform(CGAffineTransform::rotation(0.3)); // stands in the parent, and has no say here
    addView(*view, {1, 1, 2, 4}, kRed);
    const UIImage opaque = imageByRenderingView(*view);
    EXPECT_EQ(opaque.size(), (CGSize{4, 2}));
    EXPECT_EQ(drawn(opaque.cgImage()), "kkkkkkkk\nkkkkkkkk\nkkrrrrkk\nkkrrrrkk\n");
    view->setOpaque(false);
    EXPECT_EQ(drawn(imageByRenderingView(*view, 1).cgImage()), "....\n.rr.\n");
    EXPECT_FALSE(imageByRenderingView(UIView({0, 0, 0, 10})));
}

/// Wherever the background hides every pixel the picture has no alpha, and is the same otherwise.
TEST_F(ImageRendering, AnOpaqueGroundNeedsNoAlpha)
{
    const struct {
        bool hasAlpha;
        void (*change)(UIView&);
    } kGrounds[] = {
        {false, [](UIView&) {}},
        {true, [](UIView& view) { view.setBackgroundColor({}); }},
        {true, [](UIView& view) { view.setBackgroundColor(kGreen.withAlpha(0.99)); }},
        {true, [](UIView& view) { view.setAlpha(0.99); }},
        {true, [](UIView& view) { view.setHidden(true); }},
        {true, [](UIView& view) { view.layer().setCornerRadius(1); }},
        {true, [](UIView& view) { view.layer().setMask(std::make_shared<CALayer>()); }},
        {true, [](UIView& view) { view.setBounds(CGRect(0, 1, 20, 10)); }},    // scrolled away
        {true, [](UIView& view) { view.setBounds(CGRect(0, 0, 20, 10.25)); }}, // ends within a pixel
    };
    for (const auto& ground : kGrounds) {
        SCOPED_TRACE(&ground - kGrounds);
        const auto view = std::make_shared<UIView>(CGRect(0, 0, 20, 10));
        view->setBackgroundColor(kGreen);
        addView(*view, {5, 2, 10, 4}, kRed.withAlpha(0.5));
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
    const auto scroll = std::make_shared<UIScrollView>(CGRect(0, 0, 6, 4));
    scroll->setOpaque(false);
    scroll->setContentSize({20, 40});
    addView(*scroll, {0, 0, 20, 10}, kRed);
    addView(*scroll, {0, 10, 20, 30}, kGreen);
    scroll->setContentOffset({2, 9}); // sideways nothing moves, so the clip's left edge shows
    EXPECT_EQ(drawn(imageByRenderingCurrentVisibleRect(*scroll).cgImage()), "..rrrr\n..gggg\n..gggg\n..gggg\n");
}

} // namespace
} // namespace lamina::test
