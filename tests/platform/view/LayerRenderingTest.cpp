// Small scenes against grids drawn by hand, and what antialiasing and blur make of shapes against their areas.
#include "LayerScene.h"
#include "platform/base/WorkerPool.h"
#include "platform/view/CAShapeLayer.h"

#include <numbers>
#include <ostream>

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

/// A picture of 4 x 2 without any symmetry, in the middle of a scene of 10 x 6.
std::shared_ptr<CALayer> mark()
{
    return pictureLayer({3, 2, 4, 2}, pictureOf("rgbw ckym"));
}

/// A scene whose mark was changed.
std::shared_ptr<CALayer> sceneWithMark(const std::function<void(CALayer& mark, CALayer& scene)>& change)
{
    auto scene = makeLayer({0, 0, 10, 6});
    scene->addSublayer(mark());
    change(*scene->sublayers()[0], *scene);
    return scene;
}

std::shared_ptr<CALayer> turnedMark(const CGAffineTransform& transform)
{
    return sceneWithMark([&](CALayer& mark, CALayer&) { mark.setAffineTransform(transform); });
}

/// A red square with a green one over its right half, in the middle of a scene of 10 x 6 on `ground`.
std::shared_ptr<CALayer> sceneWithBox(const std::function<void(CALayer& box)>& change,
                                      const std::optional<UIColor>& ground = std::nullopt)
{
    auto scene = makeLayer({0, 0, 10, 6}, ground);
    const auto box = makeLayer({2, 1, 4, 4}, kRed);
    box->addSublayer(makeLayer({2, 0, 4, 4}, kGreen)); // sticks out on the right
    scene->addSublayer(box);
    change(*box);
    return scene;
}

struct Scene {
    const char* name;
    std::shared_ptr<CALayer> (*make)();
    const char* rows; ///< divided by blanks
    friend void PrintTo(const Scene& scene, std::ostream* out) { *out << scene.name; }
};

const Scene kScenes[] = {
    {"Placed", [] { return turnedMark({}); }, ".......... .......... ...rgbw... ...ckym... .......... .........."},
    {"Clockwise", [] { return turnedMark(CGAffineTransform::rotation(kPi / 2)); },
     ".......... ....cr.... ....kg.... ....yb.... ....mw.... .........."},
    {"UpsideDown", [] { return turnedMark(CGAffineTransform::rotation(kPi)); },
     ".......... .......... ...mykc... ...wbgr... .......... .........."},
    {"CounterClockwise", [] { return turnedMark(CGAffineTransform::rotation(-kPi / 2)); },
     ".......... ....wm.... ....by.... ....gk.... ....rc.... .........."},
    {"Mirrored", [] { return turnedMark(CGAffineTransform::scaling(-1, 1)); },
     ".......... .......... ...wbgr... ...mykc... .......... .........."},
    {"Moved", [] { return sceneWithMark([](CALayer& mark, CALayer&) {
                       mark.setPosition({8, 5});
                   }); },
     ".......... .......... .......... .......... ......rgbw ......ckym"},
    {"Scrolled", [] { return sceneWithMark([](CALayer&, CALayer& scene) {
                          scene.setBounds({2, -1, 10, 6});
                      }); },
     ".......... .......... .......... .rgbw..... .ckym..... .........."},
    {"Hidden", [] { return sceneWithMark([](CALayer& mark, CALayer&) { mark.setHidden(true); }); },
     ".......... .......... .......... .......... .......... .........."},
    {"CenteredLarger",
     [] {
         return sceneWithMark([](CALayer& mark, CALayer&) {
             mark.setContentsMode(UIViewContentMode::Center);
             mark.setBounds({0, 0, 2, 4});
         });
     },
     ".......... .......... ...rgbw... ...ckym... .......... .........."},
    {"CenteredAndClipped",
     [] {
         return sceneWithMark([](CALayer& mark, CALayer&) {
             mark.setContentsMode(UIViewContentMode::Center);
             mark.setBounds({0, 0, 2, 4});
             mark.setMasksToBounds(true);
         });
     },
     ".......... .......... ....gb.... ....ky.... .......... .........."},
    {"StoredOnItsSide",
     [] {
         auto scene = makeLayer({0, 0, 6, 4});
         scene->addSublayer(pictureLayer({2, 0, 2, 4}, pictureOf("rgbw ckym", 1, UIImageOrientation::Right)));
         return scene;
     },
     "..cr.. ..kg.. ..yb.. ..mw.."},
    {"LaterLayersLieAbove", [] { return sceneWithBox([](CALayer&) {}); },
     ".......... ..rrgggg.. ..rrgggg.. ..rrgggg.. ..rrgggg.. .........."},
    {"Clipped", [] { return sceneWithBox([](CALayer& box) { box.setMasksToBounds(true); }); },
     ".......... ..rrgg.... ..rrgg.... ..rrgg.... ..rrgg.... .........."},
    {"BorderAboveAll",
     [] {
         return sceneWithBox([](CALayer& box) {
             box.setBorderWidth(1);
             box.setBorderColor(kBlue);
         });
     },
     ".......... ..bbbbgg.. ..brgbgg.. ..brgbgg.. ..bbbbgg.. .........."},
    {"BorderOfAClearLayer",
     [] {
         return sceneWithBox([](CALayer& box) {
             box.sublayers()[0]->removeFromSuperlayer();
             box.setBackgroundColor(std::nullopt);
             box.setBorderWidth(1);
             box.setBorderColor(kBlue);
         });
     },
     ".......... ..bbbb.... ..b..b.... ..b..b.... ..bbbb.... .........."},
    {"BorderWiderThanTheLayer",
     [] {
         return sceneWithBox([](CALayer& box) {
             box.setBorderWidth(50);
             box.setBorderColor(kBlue);
         });
     },
     ".......... ..bbbbgg.. ..bbbbgg.. ..bbbbgg.. ..bbbbgg.. .........."},
    {"AGroupIsSeenThroughAsOne",
     [] {
         return sceneWithBox(
             [](CALayer& box) {
                 box.sublayers()[0]->setBackgroundColor(kBlue);
                 box.setOpacity(0.5);
             },
             UIColor::white());
     },
     "wwwwwwwwww wwppvvvvww wwppvvvvww wwppvvvvww wwppvvvvww wwwwwwwwww"},
    {"AlphasOfAChainMultiply",
     [] {
         return sceneWithBox([](CALayer& box) {
             box.setBackgroundColor(std::nullopt);
             box.setOpacity(std::numbers::sqrt2 / 2);
             box.sublayers()[0]->setOpacity(std::numbers::sqrt2 / 2);
             box.sublayers()[0]->setBackgroundColor(kBlue);
         });
     },
     ".......... ....BBBB.. ....BBBB.. ....BBBB.. ....BBBB.. .........."},
    {"MaskOfAShape",
     [] {
         return sceneWithBox([](CALayer& box) {
             box.setMask(shapeOf(UIBezierPath::polygon({{0, 0}, {5, 0}, {5, 1}, {1, 1}, {1, 3}, {0, 3}})));
         });
     },
     ".......... ..rrggg... ..r....... ..r....... .......... .........."},
    {"MaskWithItsOwnPlace",
     [] {
         return sceneWithBox([](CALayer& box) {
             box.setMask(shapeOf(UIBezierPath::withRect({0, 0, 4, 4})));
             box.mask()->setPosition({1, 1});
             box.mask()->setAffineTransform(CGAffineTransform::scaling(0.5, 0.5));
         });
     },
     ".......... .......... ...rg..... ...rg..... .......... .........."},
    {"HiddenMask",
     [] {
         return sceneWithBox([](CALayer& box) {
             box.setMask(makeLayer({0, 0, 4, 4}, kRed));
             box.mask()->setHidden(true);
         });
     },
     ".......... .......... .......... .......... .......... .........."},
    {"MaskOfAPicture", // by its alpha, as it is shown; colours don't matter
     [] {
         return sceneWithBox([](CALayer& box) {
             box.setMask(pictureLayer({0, 0, 4, 2}, pictureOf("kw.. ...w", 1, UIImageOrientation::Down)));
         });
     },
     ".......... ..r....... ....gg.... .......... .......... .........."},
    {"MaskOfATree",
     [] {
         return sceneWithBox([](CALayer& box) {
             box.setBackgroundColor(kBlue);
             box.sublayers()[0]->setBackgroundColor(kRed);
             box.setMask(makeLayer({0, 0, 4, 4}));
             box.mask()->addSublayer(makeLayer({1, 1, 2, 2}, UIColor{1, 1, 1, std::numbers::sqrt2 / 2}));
             box.mask()->setOpacity(std::numbers::sqrt2 / 2);
         });
     },
     ".......... .......... ...BR..... ...BR..... .......... .........."},
    {"ShadowOfWhatIsSeen", // beyond the bounds that clip the layer itself, and not where it paints nothing
     [] {
         return sceneWithBox(
             [](CALayer& box) {
                 box.setBackgroundColor(std::nullopt);
                 box.setMasksToBounds(true);
                 box.setShadow({UIColor::black(), 1, {3, 1}, 0});
             },
             UIColor::white());
     },
     "wwwwwwwwww wwwwggwwww wwwwggwkkw wwwwggwkkw wwwwggwkkw wwwwwwwkkw"},
    {"ShadowOfATurnedLayer",
     [] {
         return sceneWithBox(
             [](CALayer& box) {
                 box.setMasksToBounds(true);
                 box.setShadow({UIColor::black(), 0.5, {1, 0}, 0});
                 box.setAffineTransform(CGAffineTransform::rotation(kPi / 2));
             },
             UIColor::white());
     },
     "wwwwwwwwww wwrrrrwwww wwrrrrwwww wwggggwwww wwggggwwww wwhhhhwwww"},
    {"ShadowUnderAGroup", // not seen through the layer that throws it
     [] {
         return sceneWithBox(
             [](CALayer& box) {
                 box.sublayers()[0]->setBackgroundColor(kBlue);
                 box.setShadow({UIColor::black(), 1, {2, 0}, 0});
                 box.setOpacity(0.5);
             },
             UIColor::white());
     },
     "wwwwwwwwww wwppvvvvhh wwppvvvvhh wwppvvvvhh wwppvvvvhh wwwwwwwwww"},
    {"ShadowUnderAMask",
     [] {
         return sceneWithBox(
             [](CALayer& box) {
                 box.setMasksToBounds(true);
                 box.setShadow({UIColor::black(), 1, {2, 0}, 0});
                 box.setMask(shapeOf(UIBezierPath::withRect({0, 0, 5, 4})));
             },
             UIColor::white());
     },
     "wwwwwwwwww wwrrggkwww wwrrggkwww wwrrggkwww wwrrggkwww wwwwwwwwww"},
};

class LayerScenes : public testing::TestWithParam<Scene> {};

TEST_P(LayerScenes, AreDrawnAsTheGrid)
{
    std::string rows = GetParam().rows;
    std::ranges::replace(rows, ' ', '\n');
    EXPECT_EQ(drawn(rendered(*GetParam().make())), rows + '\n');
}

INSTANTIATE_TEST_SUITE_P(, LayerScenes, testing::ValuesIn(kScenes),
                         [](const auto& scene) { return std::string(scene.param.name); });

TEST(LayerRendering, ABlendOfTwoPicturesFollowsItsFormula)
{
    const CGImage top = rampPicture(16, 16, 40);
    const CGImage below = noisePicture(16, 16, CGImageAlphaInfo::NoneSkipLast);
    for (const double b : {0.5, 1.0, 0.13}) {
        for (const double t : {0.5, 0.0, 0.77, 1.0}) {
            const auto canvas = makeLayer({0, 0, 16, 16}, UIColor{1, 0.5, 0.25, 1});
            canvas->setMasksToBounds(true);
            canvas->addSublayer(pictureLayer({0, 0, 16, 16}, UIImage(below), b));
            canvas->addSublayer(pictureLayer({0, 0, 16, 16}, UIImage(top), t));
            const double backdrop[] = {255, 127.5, 63.75};
            const CGImage wanted = makePicture(16, 16, [&](int x, int y) {
                Rgba mixed{0, 0, 0, 255};
                for (std::size_t c = 0; c < 3; ++c)
                    mixed[c] = byteOf(t * pixelAt(top, x, y)[c] +
                                      (1 - t) * (b * pixelAt(below, x, y)[c] + (1 - b) * backdrop[c]));
                return mixed;
            });
            EXPECT_TRUE(imagesMatch(rendered(*canvas), wanted, 1)) << b << ' ' << t;
        }
    }
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

/// What corners, turns and masks leave of a layer, in pixels.
TEST(LayerRendering, CoversTheAreaOfItsShape)
{
    constexpr double kCorner = 1 - kPi / 4; // what a quarter circle leaves of a unit square
    const auto areaOf = [](const std::function<void(CALayer & scene, CALayer & box)>& change) {
        const auto scene = makeLayer({0, 0, 60, 60});
        const auto box = makeLayer({10, 10, 40, 30}, kRed);
        scene->addSublayer(box);
        change(*scene, *box);
        return coveredArea(rendered(*scene));
    };
    EXPECT_NEAR(areaOf([](CALayer&, CALayer& box) { box.setCornerRadius(10); }), 1200 - 400 * kCorner, 0.5);
    EXPECT_NEAR(areaOf([](CALayer&, CALayer& box) { box.setCornerRadius(500); }), 1200 - 900 * kCorner, 0.5);
    EXPECT_NEAR(areaOf([](CALayer&, CALayer& box) { // a ring between radii 10 and 7
                    box.setBackgroundColor(std::nullopt);
                    box.setCornerRadius(10);
                    box.setBorderWidth(3);
                }),
                1200 - 34 * 24 - 4 * (100 - 49) * kCorner, 0.5);
    EXPECT_NEAR(areaOf([](CALayer&, CALayer& box) {
                    box.setAffineTransform(CGAffineTransform::rotation(0.5).scaled(1.2, 0.8));
                }),
                1200 * 1.2 * 0.8, 0.5);
    EXPECT_NEAR(areaOf([](CALayer&, CALayer& box) {
                    box.setMask(shapeOf(UIBezierPath::polygon({{2, 2}, {25.5, 2}, {2, 22.5}})));
                    box.setAffineTransform(CGAffineTransform::rotation(0.5));
                }),
                23.5 * 20.5 / 2, 0.5);
    EXPECT_NEAR(areaOf([](CALayer& scene, CALayer& box) { // clips that nest: a square and the same one turned by 45°
                    box.setBounds({0, 0, 20, 20});
                    box.setBackgroundColor(std::nullopt);
                    box.setMasksToBounds(true);
                    const auto inner = makeLayer({0, 0, 20, 20});
                    inner->setMasksToBounds(true);
                    inner->setAffineTransform(CGAffineTransform::rotation(kPi / 4));
                    inner->addSublayer(makeLayer({-100, -100, 300, 300}, kRed));
                    box.addSublayer(inner);
                    scene.setMasksToBounds(true);
                }),
                800 * (std::numbers::sqrt2 - 1), 0.5); // an octagon
    EXPECT_NEAR(areaOf([](CALayer&, CALayer& box) {    // half seen through, through a disc put together from layers
                    box.addSublayer(makeLayer({0, 0, 40, 30}, kBlue));
                    box.setOpacity(0.5);
                    box.setMask(makeLayer({0, 0, 40, 30}));
                    box.mask()->addSublayer(makeLayer({10, 5, 20, 20}, UIColor::black()));
                    box.mask()->sublayers()[0]->setCornerRadius(10);
                    box.setAffineTransform(CGAffineTransform::rotation(0.4));
                }),
                kPi * 50, 1); // half a level a pixel is rounded
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

TEST(LayerRendering, DoesNotDependOnTheNumberOfThreads)
{
    const auto root = makeLayer({0, 0, 200, 200}, UIColor::white());
    const auto photo = pictureLayer({20, 10, 150, 150}, UIImage(rampPicture(300, 300, 50)), 0.6);
    photo->setAffineTransform(CGAffineTransform::rotation(0.3));
    photo->setCornerRadius(30);
    photo->setMasksToBounds(true);
    photo->addSublayer(makeLayer({20, 20, 60, 60}, kRed));
    photo->setShadow({UIColor::black(), 0.7, {3, 4}, 5});
    root->addSublayer(photo);
    WorkerPool& pool = WorkerPool::shared();
    pool.setConcurrency(1);
    const CGImage one = rendered(*root, 2);
    pool.setConcurrency(2);
    const CGImage two = rendered(*root, 2);
    pool.setConcurrency(0);
    EXPECT_TRUE(imagesMatch(one, two));
}

} // namespace
} // namespace lamina::test
