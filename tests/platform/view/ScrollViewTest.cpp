#include "TouchBench.h"

#include "platform/view/UIScrollView.h"

#include <limits>

namespace lamina::test {
namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// A square of 375 at (10, 20) with a photo of 500 by 375 in it, whose zoom goes up to 6.
class ScrollViewTest : public TouchBench, public UIScrollViewDelegate {
protected:
    ScrollViewTest()
    {
        scroll->setDelegate(delegate);
        scroll->setMaximumZoomScale(6);
        scroll->addSubview(photo);
        scroll->setContentSize({500, 281.25});
        root->addSubview(scroll);
    }

    UIView* viewForZoomingInScrollView(UIScrollView&) override { return photo.get(); }
    void scrollViewWillBeginDragging(UIScrollView&) override { log += 'd'; }
    void scrollViewDidScroll(UIScrollView&) override { log += 's'; }
    void scrollViewDidEndDragging(UIScrollView& view, bool willDecelerate) override
    {
        log += willDecelerate || view.isDragging() ? '?' : 'D';
    }
    void scrollViewDidEndScrollingAnimation(UIScrollView&) override { log += 'A'; }
    void scrollViewWillBeginZooming(UIScrollView&, UIView* view) override { log += view == photo.get() ? 'p' : '?'; }
    void scrollViewDidZoom(UIScrollView&) override { log += 'z'; }
    void scrollViewDidEndZooming(UIScrollView&, UIView*, double scale) override { log += 'P' + number(scale); }

    /// "OFFSET ZOOM" after the script.
    std::string after(const std::string& script)
    {
        play(script);
        return text(scroll->contentOffset()) + ' ' + number(scroll->zoomScale());
    }

    std::shared_ptr<UIScrollViewDelegate> delegate{std::make_shared<int>(), this}; // ends with the test
    std::shared_ptr<UIScrollView> scroll = std::make_shared<UIScrollView>(CGRect{10, 20, 375, 375});
    std::shared_ptr<UIView> photo = std::make_shared<UIView>(CGRect{0, 0, 500, 375});
};

TEST_F(ScrollViewTest, OffsetsStayInTheRange)
{
    const std::pair<CGPoint, CGPoint> cases[] = {
        {{50, 0}, {50, 0}},  {{200, 0}, {125, 0}},     {{-5, -5}, {0, 0}},         {{60, 40}, {60, 0}},
        {{kNan, 3}, {0, 0}}, {{kInfinity, 0}, {0, 0}}, {{1e300, 1e300}, {125, 0}},
    };
    for (const auto& [wanted, got] : cases) {
        scroll->setContentOffset(wanted);
        EXPECT_EQ(scroll->contentOffset(), got) << text(wanted);
    }
    scroll->setContentSize({400, 400});
    EXPECT_EQ(scroll->contentOffset(), (CGPoint{25, 0}));
    scroll->setFrame({10, 20, 390, 375});
    EXPECT_EQ(scroll->contentOffset(), (CGPoint{10, 0}));
    scroll->setContentSize({kNan, -4});
    EXPECT_EQ(scroll->contentOffset(), (CGPoint{0, 0}));

    scroll->setContentSize({400, 300});
    scroll->setContentInset({5, 10, 95, 20}); // top, left, bottom, right
    scroll->setContentInset({kNan, 0, 0, 0});
    const CGPoint far{1e6, 1e6};
    for (const CGPoint got : {CGPoint{30, 20}, {-10, -5}}) {
        scroll->setContentOffset(got.x > 0 ? far : CGPoint{-far.x, -far.y});
        EXPECT_EQ(scroll->contentOffset(), got);
    }
    scroll->setContentInset({});
    EXPECT_EQ(scroll->contentOffset(), (CGPoint{0, 0}));
}

TEST_F(ScrollViewTest, EachGestureIsToldFromItsBeginningToItsEnd)
{
    EXPECT_EQ(play("1+300,100 1>285,100 1>280,100 1>270,100 1-270,100"), "dssD");
    EXPECT_EQ(play("1+300,100 1>285,100 1x"), "dD");
    EXPECT_EQ(play("1+150,200 2+250,200 1>100,200&2>300,200 1-100,200 2-300,200"), "pszP2");
    EXPECT_EQ(play("1+150,200 1>170,200 2+270,200 2>370,200 1x 2x"), "dspszDP4"); // a drag goes on as well
    fingers.wheel({110, 120}, -1);
    EXPECT_EQ(play(""), "pszP3.636");
    scroll->setMaximumZoomScale(1);
    scroll->setContentOffset({});
    play("");
    fingers.wheel({110, 120}, -1);
    EXPECT_EQ(play(""), "dsD");
    scroll->setContentOffset({0, 10}, true);
    EXPECT_EQ(play(""), "s");
    EXPECT_EQ(play("w0"), "A");
    scroll->setContentOffset({0, 10}, true);
    EXPECT_EQ(play("w0"), "");
}

TEST_F(ScrollViewTest, ZoomKeepsThePointUnderTheAnchorAndStaysInItsLimits)
{
    scroll->setContentOffset({60, 0});
    scroll->zoomToScale(2, {160, 50}); // 100 points right of the left edge
    EXPECT_EQ(scroll->contentOffset(), (CGPoint{220, 50}));
    EXPECT_EQ(scroll->contentSize(), (CGSize{1000, 750})); // that of the zoomed view from here on
    EXPECT_EQ(photo->frame(), (CGRect{0, 0, 1000, 750}));
    scroll->zoomToScale(1, scroll->contentOffset()); // below, the corner would leave the range
    EXPECT_EQ(scroll->contentOffset(), (CGPoint{110, 0}));
    EXPECT_EQ(play(""), "sszsz");
    scroll->setZoomScale(kNan);
    scroll->zoomToScale(2, {kNan, 0});
    EXPECT_EQ(play(""), "");
    scroll->setZoomScale(4);
    scroll->setMaximumZoomScale(3);
    EXPECT_EQ(scroll->zoomScale(), 3);
    scroll->setMinimumZoomScale(kNan);
    scroll->setMaximumZoomScale(0);
    scroll->setZoomScale(-1);
    EXPECT_EQ(scroll->zoomScale(), 1);
    scroll->setDelegate({});
    scroll->setZoomScale(3);
    EXPECT_EQ(scroll->zoomScale(), 1);
}

TEST_F(ScrollViewTest, FingersScrollAndZoom)
{
    EXPECT_EQ(after("1+300,100 1>285,100 1>225,40"), "60,0 1");
    EXPECT_EQ(after("1>285,40 1-285,40"), "0,0 1");
    EXPECT_EQ(after("1+160,170 2+260,270 1>110,120&2>310,320"), "200,200 2"); // apart about (200, 200) of the square
    EXPECT_EQ(after("1>90,100&2>290,300 1>80,100&2>280,300"), "210,200 2");   // both fingers drag as well
    play("1x 2x");
    // Fingers beyond a limit come back before the zoom does.
    scroll->setZoomScale(1);
    scroll->setMaximumZoomScale(2);
    for (const auto& [script, zoom] : {std::pair("1+150,200 2+250,200 1>50,200&2>350,200", 2.0), // three times
                                       {"1>75,200&2>325,200", 2.0},
                                       {"1>125,200&2>275,200", 1.5}}) {
        play(script);
        EXPECT_EQ(scroll->zoomScale(), zoom);
    }
}

TEST_F(ScrollViewTest, WheelZoomsAtThePointerOrScrolls)
{
    EXPECT_TRUE(fingers.wheel({110, 120}, 1)); // (100, 100) in the square
    EXPECT_EQ(after(""), "10,10 1.1");
    scroll->setMaximumZoomScale(1); // nothing to zoom
    scroll->setContentSize({500, 281.25});
    scroll->setContentOffset({0, 0});
    EXPECT_TRUE(fingers.wheel({110, 120}, -1));
    EXPECT_EQ(after(""), "40,0 1");

    // Fingers that it cannot use are left to others.
    scroll->setContentSize({375, 375});
    attach("pan");
    play("");
    EXPECT_EQ(play("1+200,200 1>220,200"), "pan+0,0 ");
    EXPECT_FALSE(fingers.wheel({110, 120}, -1));
    EXPECT_EQ(fingers.pointerShape({110, 120}), UIPointerShape::OpenHand); // the root's
    root->removeAllGestureRecognizers();
    EXPECT_EQ(fingers.pointerShape({110, 120}), UIPointerShape::Arrow);
}

} // namespace
} // namespace lamina::test
