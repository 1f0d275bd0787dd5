#include "LayerScene.h"
#include "platform/view/CAShapeLayer.h"

#include <numbers>

using namespace lamina;
using namespace lamina::test;

namespace {

const UIColor kRed{1, 0, 0, 1};
const UIColor kBlue{0, 0, 1, 1};

std::shared_ptr<CAShapeLayer> shapeOf(const UIBezierPath& path)
{
    auto shape = std::make_shared<CAShapeLayer>();
    shape->setPath(path);
    return shape;
}

/// Share of a Gaussian of standard deviation `sigma` that lies below x.
double below(double x, double sigma)
{
    return 0.5 * std::erfc(-x / (sigma * std::numbers::sqrt2));
}

} // namespace

TEST(LayerMask, AShapeCutsWithSmoothEdges)
{
    const auto layer = makeLayer({0, 0, 40, 40}, kRed);
    layer->addSublayer(makeLayer({20, 0, 20, 40}, kBlue));
    layer->setMask(shapeOf(UIBezierPath::polygon({{5, 5}, {35.5, 5}, {5, 35.5}})));
    const CGImage got = rendered(*layer);
    EXPECT_NEAR(coveredArea(got), 30.5 * 30.5 / 2, 0.2);
    expectPixel(got, 10, 10, {255, 0, 0, 255}, 0);
    expectPixel(got, 25, 8, {0, 0, 255, 255}, 0);
    expectPixel(got, 30, 30, {0, 0, 0, 0}, 0);
    // The mask stands where its own position and transform put it.
    layer->mask()->setPosition({10, 0});
    EXPECT_EQ(pixelAt(rendered(*layer), 10, 20)[3], 0);
    layer->mask()->setAffineTransform(CGAffineTransform::scaling(0.5, 0.5));
    EXPECT_NEAR(coveredArea(rendered(*layer)), 30.5 * 30.5 / 8, 0.2);
    layer->mask()->setHidden(true);
    EXPECT_EQ(coveredArea(rendered(*layer)), 0);
    layer->setMask(nullptr);
    EXPECT_NEAR(coveredArea(rendered(*layer)), 1600, 1e-6);
}

TEST(LayerMask, AlphaLetsThrough)
{
    const auto layer = makeLayer({0, 0, 16, 8}, kRed);
    const auto mask = makeLayer({0, 0, 16, 8});
    layer->setMask(mask);
    // By the alpha of a picture, whichever way it is turned; colours don't matter.
    const auto alphaOf = [](int x, int) { return Rgba{9, 99, 199, byteOf(17 * x)}; };
    mask->setContents(UIImage(makePicture(16, 8, alphaOf, true)));
    expectPixel(rendered(*layer), 6, 3, {102, 0, 0, 102});
    mask->setContents(UIImage(makePicture(16, 8, alphaOf, true), 1, UIImageOrientation::Down));
    expectPixel(rendered(*layer), 6, 3, {153, 0, 0, 153});
    // A picture without alpha lets all through, however dark.
    mask->setContents(UIImage(makePicture(8, 8, [](int, int) { return Rgba{0, 0, 0, 255}; })));
    mask->setBounds({0, 0, 8, 8});
    mask->setPosition({4, 4});
    expectPixel(rendered(*layer), 6, 3, {255, 0, 0, 255}, 0);
    expectPixel(rendered(*layer), 9, 3, {0, 0, 0, 0}, 0);
    // By a whole tree, with its opacities.
    mask->setContents({});
    mask->addSublayer(makeLayer({2, 2, 4, 4}, UIColor{1, 1, 1, 0.5}));
    mask->setOpacity(0.5);
    expectPixel(rendered(*layer), 3, 3, {64, 0, 0, 64});
    expectPixel(rendered(*layer), 7, 3, {0, 0, 0, 0}, 0);
}

TEST(LayerMask, ActsUnderTurnsAndOnGroups)
{
    const auto root = makeLayer({0, 0, 60, 60});
    const auto layer = makeLayer({10, 10, 40, 40}, kRed);
    layer->addSublayer(makeLayer({0, 0, 40, 40}, kBlue));
    layer->setOpacity(0.5);
    layer->setAffineTransform(CGAffineTransform::rotation(0.4));
    root->addSublayer(layer);
    for (const bool asTree : {false, true}) {
        if (asTree) { // the same disc by another way
            const auto disc = makeLayer({10, 10, 20, 20}, UIColor::black());
            disc->setCornerRadius(10);
            const auto mask = makeLayer({0, 0, 40, 40});
            mask->addSublayer(disc);
            layer->setMask(mask);
        } else {
            layer->setMask(shapeOf(UIBezierPath::withOvalIn({10, 10, 20, 20})));
        }
        const CGImage got = rendered(*root);
        expectPixel(got, 30, 30, {0, 0, 128, 128});
        EXPECT_NEAR(coveredArea(got), std::numbers::pi * 50, 1); // half a level a pixel is rounded
    }
}

TEST(LayerShadow, FollowsTheGaussianBesideAnEdge)
{
    const double sigma = 4;
    const auto root = makeLayer({0, 0, 100, 100});
    const auto box = makeLayer({20, 20, 60, 60}, kRed);
    box->setShadow({UIColor::black(), 0.8, {0, 0}, sigma});
    root->addSublayer(box);
    const CGImage got = rendered(*root);
    expectPixel(got, 50, 50, {255, 0, 0, 255}, 0);
    for (const int away : {1, 3, 6, 9})
        expectPixel(got, 80 + away, 50, {0, 0, 0, byteOf(255 * 0.8 * below(-away - 0.5, sigma))}, 2);
    EXPECT_EQ(pixelAt(got, 96, 50)[3], 0);
    // The offset is turned with the layer.
    box->setShadow({UIColor::black(), 1, {10, 0}, 0});
    expectPixel(rendered(*root), 85, 50, {0, 0, 0, 255});
    box->setAffineTransform(CGAffineTransform::rotation(std::numbers::pi / 2));
    expectPixel(rendered(*root), 85, 50, {0, 0, 0, 0});
    expectPixel(rendered(*root), 50, 85, {0, 0, 0, 255});
    EXPECT_EQ(box->paintedBounds().maxX(), 72); // 60, the offset, and two for rounding
}

TEST(LayerShadow, IsThrownByWhatIsReallySeen)
{
    const auto root = makeLayer({0, 0, 60, 60}, UIColor::white());
    const auto clear = makeLayer({10, 10, 40, 40}); // paints nothing itself, as a sticker's view
    const auto disc = makeLayer({10, 10, 20, 20}, kRed);
    disc->setCornerRadius(10);
    clear->addSublayer(disc);
    clear->setMasksToBounds(true); // clips the disc, never the shadow
    clear->setShadow({UIColor::black(), 1, {30, 0}, 0});
    root->addSublayer(clear);
    CGImage got = rendered(*root);
    expectPixel(got, 30, 30, {255, 0, 0, 255}, 0);
    expectPixel(got, 55, 30, {0, 0, 0, 255}, 0); // beyond the clear layer's bounds
    expectPixel(got, 51, 21, {255, 255, 255, 255}, 0);
    // Through the whole group: where the disc covers its shadow, the shadow isn't seen.
    clear->setShadow({UIColor::black(), 1, {5, 0}, 0});
    clear->setOpacity(0.5);
    got = rendered(*root);
    expectPixel(got, 30, 30, {255, 128, 128, 255});
    expectPixel(got, 43, 30, {128, 128, 128, 255});
    // A mask cuts the shadow too.
    clear->setOpacity(1);
    clear->setMask(shapeOf(UIBezierPath::withRect({0, 0, 20, 40})));
    expectPixel(rendered(*root), 43, 30, {255, 255, 255, 255}, 0);
}
