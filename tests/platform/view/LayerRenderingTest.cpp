// Small scenes against grids drawn by hand, and what antialiasing and blur make of shapes against their areas.
#include "LayerScene.h"
#include "platform/image/drawing/UIBezierPath.h"
#include "platform/view/CAShapeLayer.h"

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
    const auto turn = [](double radians) {
        return [=](CALayer& mark) { mark.setAffineTransform(CGAffineTransform::rotation(radians)); };
    };
    const auto center = [](CALayer& mark) {
        mark.setContentsMode(UIViewContentMode::Center);
        mark.setBounds({0, 0, 2, 4});
    };
    const Change changes[] = {
        turn(0),
        turn(kPi / 2),
        turn(kPi),
        turn(-kPi / 2),
        [](CALayer& mark) { mark.setAffineTransform(CGAffineTransform::scaling(-1, 1)); },
        [](CALayer& mark) {
            mark.superlayer()->setBounds({2, -1, 10, 6});
        }, // scrolled
        [](CALayer& mark) { mark.setHidden(true); },
        center,
        [&](CALayer& mark) { // clipped
            center(mark);
            mark.setMasksToBounds(true);
        },
        [](CALayer& mark) { // stored on its side
            mark.setBounds({0, 0, 2, 4});
            mark.setContents(pictureOf("rgbw ckym", 1, UIImageOrientation::Right));
        },
    };
    EXPECT_EQ(sheet(mark, {std::begin(changes), std::end(changes)}), R"(
....................................................................................................
..............cr..................wm..........................................................cr....
...rgbw.......kg.......mykc.......by.......wbgr..........................rgbw.......gb........kg....
...ckym.......yb.......wbgr.......gk.......mykc....rgbw..................ckym.......ky........yb....
..............mw..................rc...............ckym.......................................mw....
....................................................................................................
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

TEST(LayerRendering, DrawsPartsInTheirOrder)
{
    const auto clip = [](CALayer& box) { box.setMasksToBounds(true); };
    const auto chain = [](CALayer& box) { // alphas multiply
        box.setBackgroundColor(std::nullopt);
        box.setOpacity(std::numbers::sqrt2 / 2);
        box.sublayers()[0]->setOpacity(std::numbers::sqrt2 / 2);
        box.sublayers()[0]->setBackgroundColor(kBlue);
    };
    EXPECT_EQ(sheet(box, {[](CALayer&) {}, clip, bordered(1), bordered(1, std::nullopt), bordered(50), chain}), R"(
............................................................
..rrgggg....rrgg......bbbbgg....bbbbgg....bbbbgg......BBBB..
..rrgggg....rrgg......brgbgg....b.gbgg....bbbbgg......BBBB..
..rrgggg....rrgg......brgbgg....b.gbgg....bbbbgg......BBBB..
..rrgggg....rrgg......bbbbgg....bbbbgg....bbbbgg......BBBB..
............................................................
)");
}

TEST(LayerRendering, MasksLetThroughByTheirAlpha)
{
    const auto masked = [](const std::shared_ptr<CALayer>& mask) { return [=](CALayer& box) { box.setMask(mask); }; };
    const auto square = shapeOf(UIBezierPath::withRect({0, 0, 4, 4})); // with its own place
    square->setPosition({1, 1});
    square->setAffineTransform(CGAffineTransform::scaling(0.5, 0.5));
    const auto hidden = makeLayer({0, 0, 4, 4}, kRed);
    hidden->setHidden(true);
    const auto picture = pictureLayer({0, 0, 4, 2}, pictureOf("kw.. ...w", 1, UIImageOrientation::Down));
    const auto tree = makeLayer({0, 0, 4, 4});
    tree->addSublayer(makeLayer({1, 1, 1, 2}, UIColor{1, 1, 1, std::numbers::sqrt2 / 2}));
    tree->setOpacity(std::numbers::sqrt2 / 2);
    const auto angle = shapeOf(UIBezierPath::polygon({{0, 0}, {5, 0}, {5, 1}, {1, 1}, {1, 3}, {0, 3}}));
    EXPECT_EQ(sheet(box, {masked(angle), masked(square), masked(hidden), masked(picture), masked(tree)}), R"(
..................................................
..rrggg.........................r.................
..r..........rg...................gg.......R......
..r..........rg............................R......
..................................................
..................................................
)");
}

TEST(LayerRendering, ShadowsAreThrownByWhatIsSeen)
{
    const auto shadow = [](CALayer& box, CGSize offset, double opacity = 1) {
        box.setShadow({UIColor::black(), opacity, offset, 0});
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
        [&](CALayer& box) { // turned with the layer
            box.setMasksToBounds(true);
            shadow(box, {1, 0}, 0.5);
            box.setAffineTransform(CGAffineTransform::rotation(kPi / 2));
        },
        [&](CALayer& box) { // not seen through what throws it
            box.sublayers()[0]->setBackgroundColor(kBlue);
            shadow(box, {2, 0});
            box.setOpacity(0.5);
        },
        [&](CALayer& box) { // cut by a mask
            box.setMasksToBounds(true);
            shadow(box, {2, 0});
            box.setMask(shapeOf(UIBezierPath::withRect({0, 0, 5, 4})));
        },
    };
    EXPECT_EQ(sheet(box, changes, UIColor::white()), R"(
wwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwww
wwppvvvvwwwwwwggwwwwwwrrrrwwwwwwppvvvvhhwwrrggkwww
wwppvvvvwwwwwwggwkkwwwrrrrwwwwwwppvvvvhhwwrrggkwww
wwppvvvvwwwwwwggwkkwwwggggwwwwwwppvvvvhhwwrrggkwww
wwppvvvvwwwwwwggwkkwwwggggwwwwwwppvvvvhhwwrrggkwww
wwwwwwwwwwwwwwwwwkkwwwhhhhwwwwwwwwwwwwwwwwwwwwwwww
)");
}

TEST(LayerRendering, ContentsStandByTheirMode)
{
    const auto layer = pictureLayer({0, 0, 12, 12}, pictureOf("rgbw ckym"));
    const std::pair<UIViewContentMode, CGRect> cases[] = {
        {UIViewContentMode::ScaleToFill, {0, 0, 12, 12}},
        {UIViewContentMode::ScaleAspectFit, {0, 3, 12, 6}},
        {UIViewContentMode::ScaleAspectFill, {-6, 0, 24, 12}},
        {UIViewContentMode::Center, {4, 5, 4, 2}},
    };
    for (const auto& [mode, wanted] : cases) {
        layer->setContentsMode(mode);
        EXPECT_EQ(layer->contentsRect(), wanted);
        const CGRect seen = wanted.intersection(layer->bounds());
        EXPECT_NEAR(coveredArea(rendered(*layer)), seen.size.width * seen.size.height, 1e-6);
    }
    layer->setContents(pictureOf("rgbw ckym", 2, UIImageOrientation::Right)); // counts as it is shown
    EXPECT_EQ(layer->contentsRect(), CGRect(5.5, 5, 1, 2));
}

/// What corners, turns and masks leave of a layer of 40 x 30, in pixels.
TEST(LayerRendering, CoversTheAreaOfItsShape)
{
    constexpr double kCorner = 1 - kPi / 4; // what a quarter circle leaves of a unit square
    const auto corners = [](double radius) { return [=](CALayer& box) { box.setCornerRadius(radius); }; };
    const auto turn = [](CALayer& box) { box.setAffineTransform(CGAffineTransform::rotation(0.5).scaled(1.2, 0.8)); };
    const std::pair<Change, double> cases[] = {
        {corners(10), 1200 - 400 * kCorner},
        {corners(500), 1200 - 900 * kCorner},
        {turn, 1200 * 1.2 * 0.8},
        {[&](CALayer& box) { // a ring between radii 10 and 7
             bordered(3, std::nullopt)(box);
             box.setCornerRadius(10);
         },
         1200 - 34 * 24 - 4 * (100 - 49) * kCorner},
        {[&](CALayer& box) {
             box.setMask(shapeOf(UIBezierPath::polygon({{2, 2}, {25.5, 2}, {2, 22.5}})));
             turn(box);
         },
         23.5 * 20.5 / 2 * 1.2 * 0.8},
        {[](CALayer& box) { // clips that nest: a square and the same one turned by 45 degrees share an octagon
             box.setBounds({0, 0, 20, 20});
             box.setBackgroundColor(std::nullopt);
             box.setMasksToBounds(true);
             box.addSublayer(makeLayer({0, 0, 20, 20}));
             CALayer& inner = *box.sublayers()[0];
             inner.setMasksToBounds(true);
             inner.setAffineTransform(CGAffineTransform::rotation(kPi / 4));
             inner.addSublayer(makeLayer({-100, -100, 300, 300}, kRed));
         },
         800 * (std::numbers::sqrt2 - 1)},
        {[&](CALayer& box) { // half seen through, through a disc put together from layers
             box.addSublayer(makeLayer({0, 0, 40, 30}, kBlue));
             box.setOpacity(0.5);
             box.setMask(makeLayer({0, 0, 40, 30}));
             box.mask()->addSublayer(makeLayer({10, 5, 20, 20}, UIColor::black()));
             box.mask()->sublayers()[0]->setCornerRadius(10);
             turn(box);
         },
         kPi * 50 * 1.2 * 0.8},
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
    const auto shape = shapeOf(UIBezierPath::withRect({2, 2, 4, 2}));
    shape->setBounds({0, 0, 8, 6});
    shape->setFillColor(kRed);
    shape->setStrokeColor(kBlue);
    shape->setLineWidth(2);
    EXPECT_EQ(drawn(rendered(*shape)), "........\n.bbbbbb.\n.bbbbbb.\n.bbbbbb.\n.bbbbbb.\n........\n");
    shape->setOpacity(0.5); // as one: the fill does not show under the stroke
    EXPECT_EQ(drawn(rendered(*shape)), "........\n.BBBBBB.\n.BBBBBB.\n.BBBBBB.\n.BBBBBB.\n........\n");
    shape->setStrokeColor(std::nullopt);
    EXPECT_EQ(drawn(rendered(*shape)), "........\n........\n..RRRR..\n..RRRR..\n........\n........\n");
    shape->setFillColor(std::nullopt);
    EXPECT_TRUE(shape->paintedBounds().isEmpty());
}

TEST(LayerRendering, AShadowFollowsTheGaussianBesideAnEdge)
{
    const double sigma = 4;
    const auto root = makeLayer({0, 0, 100, 100});
    const auto box = makeLayer({20, 20, 60, 60}, kRed);
    box->setShadow({UIColor::black(), 0.8, {0, 0}, sigma});
    root->addSublayer(box);
    const CGImage got = rendered(*root);
    for (const int away : {1, 3, 6, 9}) {
        const double share = 0.5 * std::erfc((away + 0.5) / (sigma * std::numbers::sqrt2));
        EXPECT_TRUE(pixelMatches(got, 80 + away, 50, {0, 0, 0, byteOf(255 * 0.8 * share)}, 2));
    }
    EXPECT_EQ(pixelAt(got, 96, 50)[3], 0);
    EXPECT_EQ(box->paintedBounds().maxX(), 60 + 3 * sigma + 2); // three deviations, and two for rounding
}

} // namespace
} // namespace lamina::test
