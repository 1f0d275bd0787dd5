#include "LayerScene.h"
#include "platform/base/WorkerPool.h"
#include "platform/view/CAShapeLayer.h"

#include <numbers>

using namespace lamina;
using namespace lamina::test;

namespace {

constexpr double kQuarter = std::numbers::pi / 2;
const UIColor kRed{1, 0, 0, 1};
const UIColor kGreen{0, 1, 0, 1};
const UIColor kBlue{0, 0, 1, 1};

/// Four by two pixels, each of its own colour.
CGImage eightPixels()
{
    return makePicture(4, 2, [](int x, int y) { return Rgba{byteOf(60 * x + 20), byteOf(200 * y + 10), 90, 255}; });
}

std::shared_ptr<CALayer> pictureLayer(const CGRect& frame, const UIImage& image, double opacity = 1)
{
    auto layer = makeLayer(frame);
    layer->setContents(image);
    layer->setOpacity(opacity);
    return layer;
}

} // namespace

TEST(LayerRendering, ABlendOfTwoPicturesFollowsItsFormula)
{
    const UIImage top(makePicture(16, 16, [](int x, int y) { return Rgba{byteOf(16 * x), byteOf(16 * y), 40, 255}; }));
    const UIImage below(makePicture(16, 16, [](int x, int y) {
        return Rgba{200, byteOf(255 - 15 * x), byteOf(9 * y), 255};
    }));
    for (const double b : {0.5, 1.0, 0.13}) {
        for (const double t : {0.5, 0.0, 0.77, 1.0}) {
            const auto canvas = makeLayer({0, 0, 16, 16}, UIColor{1, 0.5, 0.25, 1});
            canvas->setMasksToBounds(true);
            canvas->addSublayer(pictureLayer({0, 0, 16, 16}, below, b));
            canvas->addSublayer(pictureLayer({0, 0, 16, 16}, top, t));
            const CGImage got = rendered(*canvas);
            const double backdrop[] = {255, 127.5, 63.75};
            for (const auto& [x, y] : {std::pair{0, 0}, {15, 0}, {3, 9}, {8, 15}}) {
                Rgba wanted{0, 0, 0, 255};
                for (std::size_t c = 0; c < 3; ++c)
                    wanted[c] = byteOf(t * pixelAt(top.cgImage(), x, y)[c] +
                                       (1 - t) * (b * pixelAt(below.cgImage(), x, y)[c] + (1 - b) * backdrop[c]));
                expectPixel(got, x, y, wanted);
            }
        }
    }
}

TEST(LayerRendering, AGroupIsSeenThroughAsOne)
{
    // Two squares that overlap, half seen through together: the lower one must not shine through the upper one.
    const auto group = makeLayer({0, 0, 12, 8});
    group->addSublayer(makeLayer({0, 0, 8, 8}, kRed));
    group->addSublayer(makeLayer({4, 0, 8, 8}, kBlue));
    group->setOpacity(0.5);
    const CGImage got = rendered(*group, 1, UIColor::white());
    expectPixel(got, 1, 4, {255, 128, 128, 255});
    expectPixel(got, 6, 4, {128, 128, 255, 255});
    expectPixel(got, 10, 4, {128, 128, 255, 255});

    // One thing alone gives the same, grouped or not: here by a border that is nowhere seen.
    const auto direct = makeLayer({0, 0, 8, 8}, UIColor{0.2, 0.7, 0.4, 0.6});
    direct->setOpacity(0.37);
    const auto grouped = makeLayer({0, 0, 8, 8}, UIColor{0.2, 0.7, 0.4, 0.6});
    grouped->setOpacity(0.37);
    grouped->addSublayer(makeLayer({0, 0, 1, 1}, kRed));
    const double a = 0.6 * 0.37;
    const Rgba wanted{byteOf(255 * (0.2 * a + 1 - a)), byteOf(255 * (0.7 * a + 1 - a)), byteOf(255 * (0.4 * a + 1 - a)),
                      255};
    expectPixel(rendered(*direct, 1, UIColor::white()), 5, 5, wanted);
    expectPixel(rendered(*grouped, 1, UIColor::white()), 5, 5, wanted);

    // Alphas of a chain of single children multiply.
    const auto chain = makeLayer({0, 0, 8, 8});
    const auto link = makeLayer({0, 0, 8, 8});
    const auto end = makeLayer({0, 0, 8, 8}, kRed);
    chain->addSublayer(link);
    link->addSublayer(end);
    for (const auto& layer : {chain, link, end})
        layer->setOpacity(0.5);
    expectPixel(rendered(*chain), 4, 4, {32, 0, 0, 32});
    link->setHidden(true);
    expectPixel(rendered(*chain), 4, 4, {0, 0, 0, 0}, 0);
}

TEST(LayerRendering, PlacesLayersByPositionTransformAndBoundsOrigin)
{
    const auto root = makeLayer({0, 0, 20, 20});
    const auto mark = pictureLayer({4, 6, 4, 2}, UIImage(eightPixels()));
    root->addSublayer(mark);
    const auto expectCorner = [&](int x, int y) {
        expectPixel(rendered(*root), x, y, {20, 10, 90, 255});
        EXPECT_NEAR(coveredArea(rendered(*root)), 8, 1e-6);
    };
    expectCorner(4, 6);
    mark->setPosition({10, 10});
    expectCorner(8, 9);
    mark->setAffineTransform(
        CGAffineTransform::rotation(kQuarter)); // clockwise: the top left corner goes to the top right
    expectCorner(10, 8);
    mark->setAffineTransform(CGAffineTransform::rotation(2 * kQuarter));
    expectCorner(11, 10);
    mark->setAffineTransform(CGAffineTransform::rotation(-kQuarter));
    expectCorner(9, 11);
    mark->setAffineTransform(CGAffineTransform::scaling(-1, 1));
    expectCorner(11, 9);
    mark->setAffineTransform({});
    root->setBounds({3, -2, 20, 20}); // scrolled: contents move the other way
    expectCorner(5, 11);
    std::optional<CGContext> still = CGContext::image({20, 20}, false, 1);
    root->renderInContext(*still); // in the layer's own coordinates nothing moves
    expectPixel(still->makeImage(), 8, 9, {20, 10, 90, 255});

    const auto turned = makeLayer({0, 0, 20, 20});
    turned->addSublayer(makeLayer({5, 5, 10, 10}, kRed));
    turned->sublayers()[0]->setAffineTransform(CGAffineTransform::rotation(0.5).scaled(1.2, 0.8));
    EXPECT_NEAR(coveredArea(rendered(*turned)), 96, 0.3); // 100 · 1.2 · 0.8
}

TEST(LayerRendering, ContentsModes)
{
    struct Case {
        UIViewContentMode mode;
        CGRect wanted; ///< of the picture of 4 x 2 in bounds of 12 x 12
    };
    const Case cases[] = {
        {UIViewContentMode::ScaleToFill, {0, 0, 12, 12}},
        {UIViewContentMode::ScaleAspectFit, {0, 3, 12, 6}},
        {UIViewContentMode::ScaleAspectFill, {-6, 0, 24, 12}},
        {UIViewContentMode::Center, {4, 5, 4, 2}},
    };
    for (const Case& c : cases) {
        const auto root = makeLayer({0, 0, 36, 20});
        const auto layer = pictureLayer({12, 4, 12, 12}, UIImage(eightPixels()));
        layer->setContentsMode(c.mode);
        EXPECT_EQ(layer->contentsRect(), c.wanted);
        root->addSublayer(layer);
        EXPECT_NEAR(coveredArea(rendered(*root)), c.wanted.size.width * c.wanted.size.height, 1e-6);
        layer->setMasksToBounds(true);
        const double inside = c.wanted.intersection(layer->bounds()).size.width * c.wanted.size.height;
        EXPECT_NEAR(coveredArea(rendered(*root)), inside, 1e-6);
    }
    // A picture of two pixels a point, stored on its side, counts as it is shown.
    const UIImage turned(eightPixels(), 2, UIImageOrientation::Right);
    const auto layer = pictureLayer({0, 0, 12, 12}, turned);
    layer->setContentsMode(UIViewContentMode::Center);
    EXPECT_EQ(layer->contentsRect(), CGRect(5.5, 5, 1, 2));
    const CGImage got = rendered(*layer, 2);
    expectPixel(got, 12, 10, {20, 10, 90, 255}); // stored top left is shown top right
    expectPixel(got, 12, 13, {200, 10, 90, 255});
    expectPixel(got, 11, 10, {20, 210, 90, 255});
}

TEST(LayerRendering, RoundedCornersAndBorders)
{
    const auto layer = makeLayer({0, 0, 40, 30}, kRed);
    layer->setCornerRadius(10);
    EXPECT_NEAR(coveredArea(rendered(*layer)), 40 * 30 - (4 - std::numbers::pi) * 100, 0.5);
    layer->setCornerRadius(500); // a stadium
    EXPECT_NEAR(coveredArea(rendered(*layer)), 10 * 30 + std::numbers::pi * 225, 0.5);

    layer->setCornerRadius(0);
    layer->setBorderWidth(3);
    layer->setBorderColor(kBlue);
    const CGImage squared = rendered(*layer);
    expectPixel(squared, 2, 15, {0, 0, 255, 255}, 0);
    expectPixel(squared, 3, 15, {255, 0, 0, 255}, 0);
    expectPixel(squared, 37, 26, {0, 0, 255, 255}, 0);
    layer->setBackgroundColor(std::nullopt);
    EXPECT_NEAR(coveredArea(rendered(*layer)), 40 * 30 - 34 * 24, 1e-6);
    layer->setCornerRadius(10); // a ring between radii 10 and 7
    EXPECT_NEAR(coveredArea(rendered(*layer)), 40 * 30 - 34 * 24 - (4 - std::numbers::pi) * (100 - 49), 0.5);
    layer->setCornerRadius(0);
    layer->setBorderWidth(50);
    EXPECT_NEAR(coveredArea(rendered(*layer)), 40 * 30, 1e-6);

    // What corners cut leaves no trace along the edge of what lies below.
    layer->setBackgroundColor(kRed);
    layer->setBorderWidth(0);
    layer->setCornerRadius(10);
    layer->setMasksToBounds(true);
    layer->addSublayer(makeLayer({0, 0, 40, 30}, kGreen));
    const CGImage cut = rendered(*layer);
    EXPECT_NEAR(coveredArea(cut), 40 * 30 - (4 - std::numbers::pi) * 100, 0.5);
    for (int y = 0; y < 30; ++y)
        EXPECT_EQ(pixelAt(cut, 3, y)[0], 0) << y;
    layer->setCornerRadius(0);
    layer->sublayers()[0]->removeFromSuperlayer();

    // The border lies above the sublayers.
    layer->setBorderWidth(2);
    layer->addSublayer(makeLayer({0, 0, 40, 30}, kGreen));
    expectPixel(rendered(*layer), 1, 10, {0, 0, 255, 255}, 0);
    expectPixel(rendered(*layer), 2, 10, {0, 255, 0, 255}, 0);
}

TEST(LayerRendering, ClipsNestUnderTurns)
{
    const auto root = makeLayer({0, 0, 40, 40});
    const auto outer = makeLayer({10, 10, 20, 20});
    const auto inner = makeLayer({0, 0, 20, 20});
    const auto paint = makeLayer({-100, -100, 300, 300}, kRed);
    root->addSublayer(outer);
    outer->addSublayer(inner);
    inner->addSublayer(paint);
    outer->setMasksToBounds(true);
    EXPECT_NEAR(coveredArea(rendered(*root)), 400, 1e-6);
    inner->setMasksToBounds(true);
    inner->setAffineTransform(CGAffineTransform::rotation(kQuarter / 2));
    // A square of 20 and the same one turned by 45 degrees share an octagon: 8·(√2 − 1)·10².
    EXPECT_NEAR(coveredArea(rendered(*root)), 800 * (std::numbers::sqrt2 - 1), 0.5);
    inner->setAffineTransform(CGAffineTransform::rotation(kQuarter / 2).scaled(1.3, 1.3));
    outer->setCornerRadius(10); // a disc that lies inside the turned square
    EXPECT_NEAR(coveredArea(rendered(*root)), std::numbers::pi * 100, 0.5);
}

TEST(LayerRendering, AShapePaintsFillAndStroke)
{
    const auto shape = std::make_shared<CAShapeLayer>();
    shape->setBounds({0, 0, 30, 30});
    shape->setPath(UIBezierPath::withRect({5, 5, 20, 20}));
    shape->setFillColor(kGreen);
    shape->setStrokeColor(kBlue);
    shape->setLineWidth(4);
    const CGImage got = rendered(*shape);
    expectPixel(got, 15, 15, {0, 255, 0, 255}, 0);
    expectPixel(got, 4, 15, {0, 0, 255, 255}, 0);
    expectPixel(got, 6, 15, {0, 0, 255, 255}, 0);
    expectPixel(got, 2, 15, {0, 0, 0, 0}, 0);
    shape->setOpacity(0.5); // as one: the fill does not show under the stroke
    expectPixel(rendered(*shape), 6, 15, {0, 0, 128, 128});
    shape->setFillColor(std::nullopt);
    shape->setStrokeColor(std::nullopt);
    EXPECT_TRUE(shape->paintedBounds().isEmpty());
    EXPECT_EQ(coveredArea(rendered(*shape)), 0);
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
    EXPECT_TRUE(sameBytes(one, two));
}
