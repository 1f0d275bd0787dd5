#include "LayerScene.h"
#include "platform/view/UIView.h"

#include <limits>
#include <numbers>
#include <utility>

namespace lamina::test {
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

TEST(ViewGeometry, TheFrameIsTheBoxAroundTheTransformedBounds)
{
    const std::pair<CGAffineTransform, CGSize> cases[] = {
        {CGAffineTransform::identity(), {60, 40}},
        {CGAffineTransform::scaling(-2, 0.5).concatenating(CGAffineTransform::translation(1, 2)), {30, 80}},
        {CGAffineTransform::rotation(kQuarter).scaled(2, 4), {20, 15}},
        {CGAffineTransform::rotation(kQuarter / 2), {60, 40}}, // no rectangle turned by 45 degrees has this box
    };
    for (const auto& [transform, size] : cases) {
        UIView view;
        view.setBounds({3, 4, 5, 5});
        view.setTransform(transform);
        view.setFrame({10, 20, 60, 40});
        expectNear(view.bounds(), {{3, 4}, size});
        expectNear(view.center(), {40 - transform.tx, 40 - transform.ty});
    }
    UIView turned({10, 20, 40, 30});
    turned.setTransform(CGAffineTransform::rotation(kQuarter / 2));
    const double side = 70 / std::numbers::sqrt2; // (40 + 30) · cos 45°
    expectNear(turned.frame(), {30 - side / 2, 35 - side / 2, side, side});
}

TEST(ViewGeometry, ChildrenFollowTheirParentsSize)
{
    using Mask = UIViewAutoresizing;
    constexpr Mask kAcross = Mask::FlexibleLeftMargin | Mask::FlexibleWidth | Mask::FlexibleRightMargin;
    const struct {
        Mask mask;
        CGRect place; ///< in a parent of 100 by 100
        CGRect then;  ///< in one of 200 by 60
    } cases[] = {
        {Mask::None, {20, 30, 50, 50}, {20, 30, 50, 50}},
        {Mask::FlexibleLeftMargin | Mask::FlexibleHeight, {20, 30, 50, 50}, {120, 30, 50, 10}},
        {kAcross | Mask::FlexibleTopMargin | Mask::FlexibleBottomMargin, {20, 30, 50, 50}, {40, 6, 100, 50}}, // 30 : 20
        {Mask::FlexibleLeftMargin | Mask::FlexibleRightMargin, {0, 0, 100, 10}, {50, 0, 100, 10}}, // nothing to go by
        {Mask::FlexibleHeight, {0, 75, 10, 25}, {0, 75, 10, 0}},
    };
    for (const auto& c : cases) {
        UIView byFrame({5, 5, 100, 100});
        UIView byBounds({5, 5, 100, 100});
        for (UIView* const parent : {&byFrame, &byBounds})
            addView(*parent, c.place)->setAutoresizingMask(c.mask);
        byFrame.setFrame({9, 9, 200, 60});
        byBounds.setBounds({9, 9, 200, 60});
        for (const UIView* const parent : {&byFrame, &byBounds})
            expectNear(parent->subviews()[0]->frame(), c.then);
    }
    UIView parent({0, 0, 100, 100});
    const auto turned = addView(parent, {10, 10, 80, 20});
    turned->setTransform(CGAffineTransform::rotation(kQuarter));
    turned->setAutoresizingMask(Mask::FlexibleWidth);
    parent.setFrame({0, 0, 150, 100});
    parent.setAutoresizesSubviews(false);
    parent.setFrame({0, 0, 300, 300});
    expectNear(turned->bounds(), {0, 0, 130, 20}); // its own width, whichever way it is turned
    expectNear(turned->center(), {75, 20});
}

TEST(ViewGeometry, RefusesWhatIsNotFinite)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    UIView view({1, 2, 3, 4});
    view.setCenter({nan, 0});
    view.setTransform({nan, 0, 0, 1, 0, 0});
    view.setBounds({0, 0, std::numeric_limits<double>::infinity(), 1});
    EXPECT_EQ(view.frame(), CGRect(1, 2, 3, 4));
}

TEST(ViewGeometry, ConvertsThroughTransformsAndScrolledBounds)
{
    const auto root = std::make_shared<UIView>(CGRect(0, 0, 400, 400));
    const auto scrolled = addView(*root, {100, 50, 200, 200});
    scrolled->setBounds({30, 40, 200, 200}); // its point (30, 40) stands at the frame's corner
    const auto zoomed = addView(*scrolled, {50, 60, 20, 10});
    zoomed->setTransform(CGAffineTransform::scaling(2, 2).rotated(kQuarter));
    // Its centre (10, 5) is at (60, 65) of `scrolled`, that is (130, 75) of the root. Five to the right of that is,
    // turned clockwise and doubled, ten down.
    const auto sibling = addView(*root, {300, 300, 10, 10});
    for (const auto& [view, point] :
         {std::pair<UIView*, CGPoint>{nullptr, {130, 85}}, {sibling.get(), {-170, -215}}, {zoomed.get(), {15, 5}}}) {
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
    const auto low = addView(*root, {10, 10, 40, 40});
    const auto high = addView(*root, {30, 30, 40, 20});
    const auto outside = addView(*low, {60, 0, 20, 20}); // right of its parent's bounds
    const struct {
        CGAffineTransform ofHigh;
        CGPoint point;
        const UIView* hit;
    } cases[] = {
        {{}, {35, 35}, high.get()},
        {{}, {12, 12}, low.get()},
        {{}, {75, 15}, root.get()},
        {{}, {100, 50}, nullptr}, // the right edge is outside
        {CGAffineTransform::rotation(kQuarter / 2), {50 + 12, 40 + 12}, high.get()},
        {CGAffineTransform::rotation(kQuarter / 2), {50 + 12, 40 - 12}, root.get()}, // in the box, not in the view
        {CGAffineTransform::scaling(0, 0), {50, 40}, root.get()},
    };
    for (const auto& c : cases) {
        high->setTransform(c.ofHigh);
        EXPECT_EQ(root->hitTest(c.point), c.hit) << &c - cases;
    }
    low->setBounds({50, 0, 40, 40}); // scrolled to it
    const auto expectHit = [&](const UIView& wanted) { EXPECT_EQ(root->hitTest({25, 15}), &wanted); };
    expectHit(*outside);
    outside->setUserInteractionEnabled(false);
    low->setAlpha(0.01);
    expectHit(*low);
    low->setAlpha(0.009);
    expectHit(*root);
    low->setAlpha(1);
    low->setHidden(true);
    expectHit(*root);
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
    const auto stays = addView(*root, {0, 0, 50, 50});
    root->addSubview(std::make_shared<Quitter>(CGRect(0, 0, 50, 50)));
    EXPECT_EQ(root->hitTest({25, 25}), stays.get());
}

} // namespace
} // namespace lamina::test
