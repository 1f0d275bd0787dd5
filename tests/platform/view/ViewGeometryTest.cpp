#include "platform/view/UIView.h"

#include <gtest/gtest.h>
#include <limits>
#include <numbers>
#include <utility>

namespace lamina {
namespace {

constexpr double kQuarter = std::numbers::pi / 2;

void expectNear(CGPoint got, CGPoint wanted)
{
    EXPECT_NEAR(got.x, wanted.x, 1e-9);
    EXPECT_NEAR(got.y, wanted.y, 1e-9);
}

void expectNear(const CGRect& got, const CGRect& wanted)
{
    expectNear(got.origin, wanted.origin);
    expectNear({got.maxX(), got.maxY()}, {wanted.maxX(), wanted.maxY()});
}

std::shared_ptr<UIView> child(UIView& parent, const CGRect& frame)
{
    auto view = std::make_shared<UIView>(frame);
    parent.addSubview(view);
    return view;
}

TEST(ViewGeometry, FrameIsTheBoxAroundTheTransformedBounds)
{
    UIView view({10, 20, 40, 30});
    const double side = 70 / std::numbers::sqrt2; // (40 + 30) · cos 45°
    const std::pair<CGAffineTransform, CGRect> cases[] = {
        {{}, {10, 20, 40, 30}},
        {CGAffineTransform::scaling(2, 3), {-10, -10, 80, 90}},
        {CGAffineTransform::rotation(kQuarter), {15, 15, 30, 40}},
        {CGAffineTransform::rotation(kQuarter / 2), {30 - side / 2, 35 - side / 2, side, side}},
    };
    for (const auto& [transform, frame] : cases) {
        view.setTransform(transform);
        expectNear(view.frame(), frame);
        EXPECT_EQ(view.bounds(), CGRect(0, 0, 40, 30));
        EXPECT_EQ(view.center(), (CGPoint{30, 35}));
    }
}

TEST(ViewGeometry, SettingTheFrameOfATransformedViewGivesThatFrame)
{
    const CGAffineTransform transforms[] = {
        CGAffineTransform::identity(),
        CGAffineTransform::translation(7, -3),
        CGAffineTransform::scaling(2, 0.5).concatenating(CGAffineTransform::translation(1, 2)),
        CGAffineTransform::scaling(-1, 1),
        CGAffineTransform::rotation(kQuarter).scaled(2, 4),
        CGAffineTransform::rotation(0.2),
    };
    for (const CGAffineTransform& transform : transforms) {
        UIView view;
        view.setBounds({3, 4, 5, 5});
        view.setTransform(transform);
        view.setFrame({10, 20, 60, 40});
        expectNear(view.frame(), {10, 20, 60, 40});
        EXPECT_EQ(view.bounds().origin, (CGPoint{3, 4}));
        EXPECT_EQ(view.transform(), transform);
    }
    UIView turned({0, 0, 5, 5});
    turned.setTransform(CGAffineTransform::rotation(kQuarter / 2));
    turned.setFrame({10, 20, 60, 40}); // no rectangle turned by 45 degrees has this box
    EXPECT_EQ(turned.center(), (CGPoint{40, 40}));
    EXPECT_NEAR(turned.bounds().size.width, 60, 1e-9);
}

TEST(ViewGeometry, RefusesWhatIsNotFinite)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    UIView view({1, 2, 3, 4});
    view.setCenter({nan, 0});
    view.setTransform({nan, 0, 0, 1, 0, 0});
    view.setAlpha(nan);
    view.setBounds({0, 0, std::numeric_limits<double>::infinity(), 1});
    EXPECT_EQ(view.frame(), CGRect(1, 2, 3, 4));
    view.setAlpha(7);
    EXPECT_EQ(view.alpha(), 1);
    view.setBounds({0, 0, -5, 4});
    EXPECT_EQ(view.bounds().size, (CGSize{0, 4}));
}

TEST(ViewGeometry, ConvertsThroughTransformsAndScrolledBounds)
{
    const auto root = std::make_shared<UIView>(CGRect(0, 0, 400, 400));
    const auto scrolled = child(*root, {100, 50, 200, 200});
    scrolled->setBounds({30, 40, 200, 200}); // its point (30, 40) stands at the frame's corner
    const auto zoomed = child(*scrolled, {50, 60, 20, 10});
    zoomed->setTransform(CGAffineTransform::scaling(2, 2).rotated(kQuarter));
    // Its centre (10, 5) is at (60, 65) of `scrolled`, that is (130, 75) of the root. Five to the right of that is,
    // turned clockwise and doubled, ten down.
    const auto sibling = child(*root, {300, 300, 10, 10});
    for (const auto& [view, point] : {std::pair<UIView*, CGPoint>{nullptr, {130, 85}},
                                      {root.get(), {130, 85}},
                                      {sibling.get(), {-170, -215}},
                                      {zoomed.get(), {15, 5}}}) {
        expectNear(zoomed->convertPointToView({15, 5}, view), point);
        expectNear(zoomed->convertPointFromView(point, view), {15, 5});
    }
    root->setTransform(CGAffineTransform::scaling(0, 0)); // above both, so of no matter between them
    expectNear(sibling->convertPointToView({-170, -215}, zoomed.get()), {15, 5});
    zoomed->setTransform(CGAffineTransform::scaling(0, 1));
    EXPECT_EQ(sibling->convertPointToView({1, 1}, zoomed.get()), (CGPoint{0, 0}));
}

TEST(ViewGeometry, HitsTheTopmostViewThroughTransforms)
{
    const auto root = std::make_shared<UIView>(CGRect(0, 0, 100, 100));
    const auto low = child(*root, {10, 10, 40, 40});
    const auto high = child(*root, {30, 30, 40, 20});
    const auto outside = child(*low, {60, 0, 20, 20}); // right of its parent's bounds
    const struct {
        CGAffineTransform ofHigh;
        CGPoint point;
        const UIView* hit;
    } cases[] = {
        {{}, {35, 35}, high.get()},
        {{}, {12, 12}, low.get()},
        {{}, {90, 90}, root.get()},
        {{}, {75, 15}, root.get()},
        {{}, {100, 50}, nullptr},                                      // the right edge is outside
        {CGAffineTransform::rotation(kQuarter), {50, 58}, high.get()}, // 20 x 40 about (50, 40)
        {CGAffineTransform::rotation(kQuarter), {65, 40}, root.get()},
        {CGAffineTransform::rotation(kQuarter / 2), {50 + 12, 40 + 12}, high.get()},
        {CGAffineTransform::rotation(kQuarter / 2), {50 + 12, 40 - 12}, root.get()}, // in the box, not in the view
        {CGAffineTransform::scaling(0, 0), {50, 40}, root.get()},
    };
    for (const auto& c : cases) {
        high->setTransform(c.ofHigh);
        EXPECT_EQ(root->hitTest(c.point), c.hit) << c.point.x << ' ' << c.point.y;
    }
    low->setBounds({50, 0, 40, 40}); // scrolled to it
    EXPECT_EQ(root->hitTest({25, 15}), outside.get());
}

TEST(ViewGeometry, SkipsWhatTakesNoTouches)
{
    const auto root = std::make_shared<UIView>(CGRect(0, 0, 100, 100));
    const auto view = child(*root, {0, 0, 50, 50});
    const auto inner = child(*view, {0, 0, 50, 50});
    const auto hit = [&] { return root->hitTest({25, 25}); };
    EXPECT_EQ(hit(), inner.get());
    inner->setUserInteractionEnabled(false);
    EXPECT_EQ(hit(), view.get());
    inner->setUserInteractionEnabled(true);
    view->setHidden(true);
    EXPECT_EQ(hit(), root.get());
    view->setHidden(false);
    view->setAlpha(0.009);
    EXPECT_EQ(hit(), root.get());
    view->setAlpha(0.01);
    EXPECT_EQ(hit(), inner.get());
    root->setUserInteractionEnabled(false);
    EXPECT_EQ(hit(), nullptr);
}

TEST(ViewGeometry, AHitTestMaySpoilTheTree)
{
    class Quitter : public UIView {
    public:
        using UIView::UIView;
        bool pointInside(CGPoint) const override
        {
            const_cast<Quitter*>(this)->removeFromSuperview();
            return false;
        }
    };
    const auto root = std::make_shared<UIView>(CGRect(0, 0, 100, 100));
    const auto stays = child(*root, {0, 0, 50, 50});
    root->addSubview(std::make_shared<Quitter>(CGRect(0, 0, 50, 50)));
    root->addSubview(std::make_shared<Quitter>(CGRect(0, 0, 50, 50)));
    EXPECT_EQ(root->hitTest({25, 25}), stays.get());
    EXPECT_EQ(root->subviews().size(), 1u);
}

} // namespace
} // namespace lamina
