// Small scenes against grids drawn by hand, and what antialiasing and blur make of shapes against their areas.
#include "LayerScene.h"
#include "platform/image/drawing/UIBezierPath.h"
#include "platform/view/CAShapeLayer.h"

#include <cmath>
#include <functional>
#include <numbers>
#include <utility>
#include <vector>

namespace lamina::test {
namespace {

constexpr double kPi = std::numbers::pi;

std::shared_ptr<CALayer> pictureLayer(const CGRect& frame, const UIImage& image, double opacity = 1)
{
    auto layer = makeLayer(frame);
    layer->setContents(image);
    layer->setOpacity(opacity);
    return layer;
}

std::shared_ptr<CAShapeLayer> shapeOf(const UIBezierPath& path)
{
    auto shape = std::make_shared<CAShapeLayer>();
    shape->setPath(path);
    return shape;
}

using Change = std::function<void(CALayer& layer)>;

/// Each change made to a layer of its own, in cells of 10 x 6 beside each other.
std::string sheet(const std::function<std::shared_ptr<CALayer>()>& make, const std::vector<Change>& changes,
                  const std::optional<UIColor>& ground = std::nullopt)
{
    const auto all = makeLayer({0, 0, 10.0 * static_cast<double>(changes.size()), 6}, ground);
    for (std::size_t i = 0; i < changes.size(); ++i) {
        all->addSublayer(makeLayer({10.0 * static_cast<double>(i), 0, 10, 6}));
        all->sublayers().back()->addSublayer(make());
        changes[i](*all->sublayers().back()->sublayers()[0]);
    }
    return '\n' + drawn(rendered(*all));
}

/// A picture of 4 x 2 without any symmetry, in the middle of its cell.
std::shared_ptr<CALayer> mark()
{
    return pictureLayer({3, 2, 4, 2}, pictureOf("rgbw ckym"));
}

TEST(LayerRendering, PlacesPicturesInTheirLayers)
{
    const std::vector<Change> changes = {
        [](CALayer&) {},
        [](CALayer& mark) { mark.setAffineTransform(CGAffineTransform::rotation(kPi / 2)); },
        [](CALayer& mark) { mark.setAffineTransform(CGAffineTransform::scaling(-1, 1)); },
        [](CALayer& mark) {
            mark.superlayer()->setBounds({2, -1, 10, 6});
        }, // scrolled
        [](CALayer& mark) { mark.setHidden(true); },
        [](CALayer& mark) { // clipped
            mark.setContentsMode(UIViewContentMode::Center);
            mark.setBounds({0, 0, 2, 4});
            mark.setMasksToBounds(true);
        },
        [](CALayer& mark) { // stored on its side
            mark.setBounds({0, 0, 2, 4});
            mark.setContents(pictureOf("rgbw ckym", 1, UIImageOrientation::Right));
        },
    };
    EXPECT_EQ(sheet(mark, changes), R"(
......................................................................
..............cr................................................cr....
...rgbw.......kg.......wbgr...........................gb........kg....
...ckym.......yb.......mykc....rgbw...................ky........yb....
..............mw...............ckym.............................mw....
......................................................................
)");
}

/// A red square with a green one over its right half, which sticks out.
std::shared_ptr<CALayer> box()
{
    auto box = makeLayer({2, 1, 4, 4}, kRed);
    box->addSublayer(makeLayer({2, 0, 4, 4}, kGreen));
    return box;
}

/// A blue border.
Change bordered(double width, const std::optional<UIColor>& ground = kRed)
{
    return [=](CALayer& box) {
        box.setBackgroundColor(ground);
        box.setBorderWidth(width);
        box.setBorderColor(kBlue);
    };
}

TEST(LayerRendering, DrawsPartsInTheirOrderThroughTheAlphaOfMasks)
{
    const auto clip = [](CALayer& box) { box.setMasksToBounds(true); };
    const auto chain = [](CALayer& box) { // alphas multiply
        box.setOpacity(std::numbers::sqrt2 / 2);
        box.setBackgroundColor(std::nullopt);
        box.sublayers()[0]->setOpacity(std::numbers::sqrt2 / 2);
        box.sublayers()[0]->setBackgroundColor(kBlue);
    };
    const auto masked = [](const std::shared_ptr<CALayer>& mask) { return [=](CALayer& box) { box.setMask(mask); }; };
    const auto angle = shapeOf(UIBezierPath::polygon({{0, 0}, {5, 0}, {5, 1}, {1, 1}, {1, 3}, {0, 3}}));
    const auto square = shapeOf(UIBezierPath::withRect({0, 0, 4, 4})); // with its own place
    square->setPosition({1, 1});
    square->setAffineTransform(CGAffineTransform::scaling(0.5, 0.5));
    const auto picture = pictureLayer({0, 0, 4, 2}, pictureOf("kw.. ...w", 1, UIImageOrientation::Down));
    const auto tree = makeLayer({0, 0, 4, 4});
    tree->addSublayer(makeLayer({1, 1, 1, 2}, UIColor::white()));
    tree->setOpacity(0.5);
    const std::vector<Change> changes = {[](CALayer&) {}, clip,        bordered(1),   bordered(1, std::nullopt),
                                         bordered(50),    chain,       masked(angle), masked(square),
                                         masked(picture), masked(tree)};
    EXPECT_EQ(sheet(box, changes), R"(
....................................................................................................
..rrgggg....rrgg......bbbbgg....bbbbgg....bbbbgg......BBBB....rrggg...............r.................
..rrgggg....rrgg......brgbgg....b.gbgg....bbbbgg......BBBB....r..........rg.........gg.......R......
..rrgggg....rrgg......brgbgg....b.gbgg....bbbbgg......BBBB....r..........rg..................R......
..rrgggg....rrgg......bbbbgg....bbbbgg....bbbbgg......BBBB..........................................
....................................................................................................
)");
}

TEST(LayerRendering, ShadowsAreThrownByWhatIsSeen)
{
    const auto shadow = [](CALayer& box, CGSize offset) { // kept as given, drawn within the range
        const CALayer::Shadow given{UIColor::black(), 1.7, offset, -2};
        box.setShadow(given);
        EXPECT_EQ(box.shadow(), given);
    };
    const std::vector<Change> changes = {
        [](CALayer& box) { // no shadow, but a group that is seen through as one
            box.sublayers()[0]->setBackgroundColor(kBlue);
            box.setOpacity(0.5);
        },
        [&](CALayer& box) { // a clip cuts what throws it, not the shadow
            box.setBackgroundColor(std::nullopt);
            box.setMasksToBounds(true);
            shadow(box, {3, 1});
        },
        [&](CALayer& box) { // not seen through what throws it
            box.sublayers()[0]->setBackgroundColor(kBlue);
            shadow(box, {2, 0});
            box.setOpacity(0.5);
        },
        [&](CALayer& box) { // cut by a mask, whose own shadow lets nothing through
            box.setMasksToBounds(true);
            shadow(box, {2, 0});
            box.setMask(shapeOf(UIBezierPath::withRect({0, 0, 5, 4})));
            shadow(*box.mask(), {1, 0});
        },
    };
    EXPECT_EQ(sheet(box, changes, UIColor::white()), R"(
wwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwww
wwppvvvvwwwwwwggwwwwwwppvvvvhhwwrrggkwww
wwppvvvvwwwwwwggwkkwwwppvvvvhhwwrrggkwww
wwppvvvvwwwwwwggwkkwwwppvvvvhhwwrrggkwww
wwppvvvvwwwwwwggwkkwwwppvvvvhhwwrrggkwww
wwwwwwwwwwwwwwwwwkkwwwwwwwwwwwwwwwwwwwww
)");
}

TEST(LayerRendering, ContentsStandByTheirMode)
{
    // One point by two as it is shown.
    const auto layer = pictureLayer({0, 0, 12, 12}, pictureOf("rgbw ckym", 2, UIImageOrientation::Right));
    const std::pair<UIViewContentMode, CGRect> cases[] = {
        {UIViewContentMode::ScaleToFill, {0, 0, 12, 12}},
        {UIViewContentMode::ScaleAspectFit, {3, 0, 6, 12}},
        {UIViewContentMode::ScaleAspectFill, {0, -6, 12, 24}},
        {UIViewContentMode::Center, {5.5, 5, 1, 2}},
    };
    for (const auto& [mode, wanted] : cases) {
        layer->setContentsMode(mode);
        EXPECT_EQ(layer->contentsRect(), wanted);
    }
}

/// What corners, turns and masks leave of a layer of 40 x 30, in pixels.
TEST(LayerRendering, CoversTheAreaOfItsShape)
{
    constexpr double kCorner = 1 - kPi / 4; // what a quarter circle leaves of a unit square
    const std::pair<Change, double> cases[] = {
        {[](CALayer& box) { box.setCornerRadius(500); }, 1200 - 900 * kCorner},
        {[](CALayer& box) { // a ring between radii 10 and 7
             bordered(3, std::nullopt)(box);
             box.setCornerRadius(10);
         },
         1200 - 34 * 24 - 4 * (100 - 49) * kCorner},
        {[](CALayer& box) {
             box.setMask(shapeOf(UIBezierPath::polygon({{2, 2}, {25.5, 2}, {2, 22.5}})));
             box.setAffineTransform(CGAffineTransform::rotation(0.5).scaled(1.2, 0.8));
         },
         23.5 * 20.5 / 2 * 1.2 * 0.8},
    };
    for (const auto& [change, area] : cases) {
        const auto scene = makeLayer({0, 0, 60, 60});
        scene->addSublayer(makeLayer({10, 15, 40, 30}, kRed));
        change(*scene->sublayers()[0]);
        EXPECT_NEAR(coveredArea(rendered(*scene)), area, 1); // half a level a pixel is rounded
    }
}

TEST(LayerRendering, CutCornersLeaveNoTraceOfWhatLiesBelow)
{
    const auto layer = makeLayer({0, 0, 40, 30}, kRed);
    layer->setCornerRadius(10);
    layer->setMasksToBounds(true);
    layer->addSublayer(makeLayer({0, 0, 40, 30}, kGreen));
    const CGImage cut = rendered(*layer);
    EXPECT_NEAR(coveredArea(cut), 1200 - (4 - kPi) * 100, 0.5);
    for (const Rgba& pixel : pixelsOf(cut))
        ASSERT_EQ(pixel[0], 0);
}

TEST(LayerRendering, AShapePaintsFillAndStroke)
{
    const auto shape = shapeOf(UIBezierPath::withRect({1, 1, 6, 4}));
    shape->setBounds({0, 0, 8, 6});
    shape->setFillColor(kRed);
    shape->setStrokeColor(kBlue);
    shape->setLineWidth(2);
    shape->setOpacity(0.5); // as one: the fill does not show under the stroke
    EXPECT_EQ(drawn(rendered(*shape)), "BBBBBBBB\nBBBBBBBB\nBBRRRRBB\nBBRRRRBB\nBBBBBBBB\nBBBBBBBB\n");
}

TEST(LayerRendering, AShadowIsBlurredByItsRadius)
{
    const auto root = makeLayer({0, 0, 100, 100});
    root->addSublayer(makeLayer({20, 20, 60, 60}, kRed));
    root->sublayers()[0]->setShadow({UIColor::black(), 0.8, {0, 0}, 4});
    const double share = 0.5 * std::erfc(3.5 / (4 * std::numbers::sqrt2)); // the Gaussian's, 3.5 points from the edge
    EXPECT_NEAR(pixelAt(rendered(*root), 83, 50)[3], 255 * 0.8 * share, 2);
}

} // namespace
} // namespace lamina::test
