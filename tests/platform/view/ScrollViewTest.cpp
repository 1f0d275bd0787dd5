#include "TouchBench.h"

#include "platform/view/UIPanGestureRecognizer.h"
#include "platform/view/UIPinchGestureRecognizer.h"
#include "platform/view/UIScrollView.h"

#include <limits>

namespace lamina {
namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// A square of 375 at (10, 20) with a photo of 500 by 375 in it, whose zoom goes up to 6.
class ScrollViewTest : public test::TouchBench, public UIScrollViewDelegate {
protected:
    ScrollViewTest()
    {
        scroll->setDelegate(delegate);
        scroll->setMinimumZoomScale(1);
        scroll->setMaximumZoomScale(6);
        scroll->addSubview(photo);
        scroll->setContentSize({500, 281.25});
        root->addSubview(scroll);
    }

    UIView* viewForZoomingInScrollView(UIScrollView&) override { return photo.get(); }
    void scrollViewDidScroll(UIScrollView&) override { log += 's'; }
    void scrollViewDidZoom(UIScrollView&) override { log += 'z'; }

    std::shared_ptr<UIScrollViewDelegate> delegate{std::make_shared<int>(), this}; // ends with the test
    std::shared_ptr<UIScrollView> scroll = std::make_shared<UIScrollView>(CGRect{10, 20, 375, 375});
    std::shared_ptr<UIView> photo = std::make_shared<UIView>(CGRect{0, 0, 500, 375});
};

TEST_F(ScrollViewTest, OffsetsStayInTheRange)
{
    struct Case {
        CGPoint wanted, got;
    };
    const Case cases[] = {
        {{50, 0}, {50, 0}},  {{200, 0}, {125, 0}},     {{-5, -5}, {0, 0}},         {{60, 40}, {60, 0}},
        {{kNan, 3}, {0, 0}}, {{kInfinity, 0}, {0, 0}}, {{1e300, 1e300}, {125, 0}},
    };
    for (const Case& c : cases) {
        scroll->setContentOffset(c.wanted);
        EXPECT_EQ(scroll->contentOffset(), c.got) << c.wanted.x << ", " << c.wanted.y;
        EXPECT_EQ(scroll->bounds().origin, c.got);
    }
    EXPECT_EQ(scroll->frame(), (CGRect{10, 20, 375, 375}));
    scroll->setContentSize({400, 400});
    EXPECT_EQ(scroll->contentOffset(), (CGPoint{25, 0}));
    scroll->setFrame({10, 20, 390, 375});
    EXPECT_EQ(scroll->contentOffset(), (CGPoint{10, 0}));
    scroll->setContentSize({kNan, -4});
    EXPECT_EQ(scroll->contentSize(), (CGSize{0, 0}));
    EXPECT_EQ(scroll->contentOffset(), (CGPoint{0, 0}));
    EXPECT_TRUE(scroll->clipsToBounds());
}

TEST_F(ScrollViewTest, ContentSizeFollowsTheZoomedViewFromTheFirstZoomOn)
{
    scroll->setZoomScale(1);
    EXPECT_EQ(scroll->contentSize(), (CGSize{500, 281.25}));
    scroll->setZoomScale(2);
    EXPECT_EQ(scroll->contentSize(), (CGSize{1000, 750}));
    EXPECT_EQ(photo->transform(), CGAffineTransform::scaling(2, 2));
    EXPECT_EQ(photo->frame(), (CGRect{0, 0, 1000, 750}));
    scroll->setZoomScale(1);
    EXPECT_EQ(scroll->contentSize(), (CGSize{500, 375}));
    EXPECT_TRUE(photo->transform().isIdentity());
    EXPECT_EQ(photo->frame(), (CGRect{0, 0, 500, 375}));
}

TEST_F(ScrollViewTest, ZoomKeepsThePointUnderTheAnchor)
{
    scroll->setContentOffset({60, 0});
    scroll->zoomToScale(2, {160, 50}); // 100 points right of the left edge
    EXPECT_EQ(scroll->contentOffset(), (CGPoint{220, 50}));
    scroll->setZoomScale(4); // about the middle: 187.5 from both edges
    EXPECT_EQ(scroll->contentOffset(), (CGPoint{2 * (220 + 187.5) - 187.5, 2 * (50 + 187.5) - 187.5}));
    scroll->zoomToScale(1, scroll->contentOffset()); // the corner would leave the range
    EXPECT_EQ(scroll->contentOffset(), (CGPoint{125, 0}));
    heard();
    scroll->zoomToScale(1.5, {200, 0});
    EXPECT_EQ(heard(), "sz");
    scroll->setZoomScale(1.5);
    scroll->setZoomScale(kNan);
    scroll->zoomToScale(2, {kNan, 0});
    EXPECT_EQ(heard(), "");
}

TEST_F(ScrollViewTest, ZoomStaysInItsLimits)
{
    scroll->setZoomScale(50);
    EXPECT_DOUBLE_EQ(scroll->zoomScale(), 6);
    scroll->setZoomScale(-1);
    EXPECT_DOUBLE_EQ(scroll->zoomScale(), 1);
    scroll->setZoomScale(4);
    scroll->setMaximumZoomScale(3);
    EXPECT_DOUBLE_EQ(scroll->zoomScale(), 3);
    scroll->setMinimumZoomScale(kNan);
    scroll->setMaximumZoomScale(0);
    EXPECT_DOUBLE_EQ(scroll->minimumZoomScale(), 1);
    EXPECT_DOUBLE_EQ(scroll->maximumZoomScale(), 3);
    scroll->setDelegate({});
    scroll->setZoomScale(1);
    EXPECT_DOUBLE_EQ(scroll->zoomScale(), 3);
}

TEST_F(ScrollViewTest, FingersScrollAndZoom)
{
    down(1, 300, 100);
    move(1, 285, 100);
    move(1, 225, 40);
    EXPECT_EQ(scroll->contentOffset(), (CGPoint{60, 0}));
    move(1, 245, 40);
    EXPECT_EQ(scroll->contentOffset(), (CGPoint{40, 0}));
    up(1, 245, 40);
    scroll->setContentOffset({0, 0});

    down(1, 160, 170); // 150, 150 in the square
    down(2, 260, 270);
    moveBoth({110, 120}, {310, 320}); // apart, the middle stays at (200, 200)
    EXPECT_DOUBLE_EQ(scroll->zoomScale(), 2);
    EXPECT_EQ(scroll->contentOffset(), (CGPoint{200, 200}));
    moveBoth({90, 100}, {290, 300}); // both fingers drag as well
    EXPECT_TRUE(scroll->panGestureRecognizer().isActive());
    moveBoth({80, 100}, {280, 300});
    EXPECT_EQ(scroll->contentOffset().x, 210);
    EXPECT_DOUBLE_EQ(scroll->zoomScale(), 2);
    up(1, 80, 100);
    up(2, 280, 300);
}

TEST_F(ScrollViewTest, FingersBeyondTheLimitComeBackBeforeTheZoomDoes)
{
    scroll->setMaximumZoomScale(2);
    down(1, 150, 200);
    down(2, 250, 200);
    moveBoth({50, 200}, {350, 200}); // 3 times
    EXPECT_DOUBLE_EQ(scroll->zoomScale(), 2);
    moveBoth({75, 200}, {325, 200}); // 2.5 times
    EXPECT_DOUBLE_EQ(scroll->zoomScale(), 2);
    moveBoth({125, 200}, {275, 200});
    EXPECT_DOUBLE_EQ(scroll->zoomScale(), 1.5);
}

TEST_F(ScrollViewTest, WheelZoomsAtThePointerOrScrolls)
{
    EXPECT_TRUE(fingers.magnify({110, 120}, 2)); // (100, 100) in the square
    EXPECT_EQ(scroll->contentOffset(), (CGPoint{100, 100}));
    EXPECT_TRUE(fingers.wheel({110, 120}, 1));
    EXPECT_DOUBLE_EQ(scroll->zoomScale(), 2.2);
    scroll->setZoomScale(1);
    scroll->setMaximumZoomScale(1); // nothing to zoom
    scroll->setContentOffset({0, 0});
    EXPECT_TRUE(fingers.wheel({110, 120}, -1));
    EXPECT_EQ(scroll->contentOffset(), (CGPoint{40, 0}));
    scroll->setScrollEnabled(false);
    EXPECT_FALSE(fingers.wheel({110, 120}, -1));
}

TEST_F(ScrollViewTest, LeavesFingersAloneThatItCannotUse)
{
    scroll->setMaximumZoomScale(1);
    scroll->setContentSize({375, 375});
    const auto outer = attach<UIPanGestureRecognizer>(*root, "outer");
    down(1, 200, 200);
    move(1, 220, 200);
    EXPECT_EQ(heard(), "outer:began ");
}

} // namespace
} // namespace lamina
