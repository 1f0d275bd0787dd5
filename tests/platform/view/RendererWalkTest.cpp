// A canvas that is painted in parts is always what painting all of it would give.
#include "LayerScene.h"
#include "platform/base/CGAffineTransform.h"
#include "platform/base/MemoryWarning.h"
#include "platform/base/NotificationCenter.h"
#include "platform/view/CAShapeLayer.h"
#include "platform/view/CanvasRenderer.h"
#include "platform/view/UIImageView.h"

#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

namespace lamina::test {
namespace {

/// A tree of views that is changed at random, each kind of change in turn with the same chance.
class Wanderer {
public:
    explicit Wanderer(unsigned seed)
        : m_random(seed)
    {
        root->setBackgroundColor(UIColor{1, 1, 1, 0.5});
        replace(std::make_shared<UIView>());
    }

    const std::shared_ptr<UIView> root = std::make_shared<UIView>(CGRect(0, 0, 70, 50));

    void step()
    {
        const auto view = any();
        CALayer& layer = view->layer();
        const std::function<void()> changes[] = {
            [&] { view->setCenter(place(40)); },
            [&] { view->setTransform(view->transform().rotated(number(-1, 1)).scaled(number(0.7, 1.4), 1.1)); },
            [&] { view->setAlpha(upTo(2) ? 1 : number(0, 1)); },
            [&] { view->superview()->insertSubview(view, upTo(4)); },
            [&] { replace(view); },
            [&] { layer.setMask(upTo(2) ? mask() : nullptr); },
            [&] { layer.setMask(path()); },
            [&] { view->superview()->layer().setSharesEdges(upTo(4)); },
            [&] { layer.setCornerRadius(upTo(2) ? number(0, 12) : 0); },
            [&] { view->setClipsToBounds(upTo(2)); },
            [&] { layer.setContents(picture()); },
            [&] { layer.setContentsMode(static_cast<UIViewContentMode>(upTo(4))); },
            [&] { view->setHidden(!view->isHidden()); },
            [&] { layer.setShadow(shadow()); },
            [&] { layer.setBorderWidth(upTo(2) ? number(0, 3) : 0); },
            [&] { view->setBackgroundColor(upTo(2) ? std::optional(color()) : std::nullopt); },
            [&] { view->setBounds(CGRect(number(-5, 5), number(-5, 5), number(0, 40), number(0, 40))); },
            [&] { (layer.mask() ? *layer.mask() : layer).setPosition(place(5)); },
        };
        changes[upTo(std::size(changes))]();
    }

private:
    std::size_t upTo(std::size_t limit) { return std::uniform_int_distribution<std::size_t>(0, limit - 1)(m_random); }
    /// Half of all numbers are whole, so that edges fall on pixel borders as they do in life.
    double number(double low, double high)
    {
        const double value = std::uniform_real_distribution<double>(low, high)(m_random);
        return upTo(2) ? std::round(value) : value;
    }
    UIColor color() { return {number(0, 1), number(0, 1), number(0, 1), upTo(2) ? 1 : number(0, 1)}; }
    CGPoint place(double farthest) { return {number(-5, farthest), number(-5, farthest)}; }
    CALayer::Shadow shadow() { return {kBlue, upTo(2) ? 0.7 : 0, {number(-6, 6), number(-6, 6)}, number(-1, 4)}; }
    std::shared_ptr<UIView> any() { return m_views[upTo(m_views.size())]; }

    UIImage picture()
    {
        const auto alpha = upTo(2) ? CGImageAlphaInfo::Last : CGImageAlphaInfo::NoneSkipLast;
        return UIImage(chartPicture(20, 17, alpha), upTo(2) ? 1 : 1.5, static_cast<UIImageOrientation>(upTo(8)));
    }

    std::shared_ptr<CALayer> path()
    {
        auto shape = std::make_shared<CAShapeLayer>();
        shape->setPath(UIBezierPath::polygon({{number(-5, 9), 0}, {number(15, 50), 3}, {9, number(15, 50)}}));
        return shape;
    }

    std::shared_ptr<CALayer> mask()
    {
        const std::shared_ptr<CALayer> layer = upTo(2) ? path() : makeLayer({0, 0, 30, 25});
        layer->setContents(upTo(2) ? picture() : UIImage());
        layer->setOpacity(upTo(2) ? 1 : number(0, 1));
        layer->setShadow(shadow());
        return layer;
    }

    void add()
    {
        const auto view =
            std::make_shared<UIView>(CGRect(number(-10, 50), number(-10, 40), number(5, 40), number(5, 30)));
        view->setBackgroundColor(color());
        (m_views.empty() || upTo(2) ? root : any())->insertSubview(view, upTo(4));
        m_views.push_back(view);
    }

    /// New views in the place of this one and those in it; they may get the memory of former ones.
    void replace(const std::shared_ptr<UIView>& view)
    {
        view->removeFromSuperview();
        std::erase_if(m_views, [&](const auto& other) { return other->isDescendantOf(*view); });
        while (m_views.size() < 6)
            add();
    }

    std::mt19937 m_random;
    std::vector<std::shared_ptr<UIView>> m_views;
};

class RendererWalk : public testing::TestWithParam<double> {};

TEST_P(RendererWalk, PaintsPartsAsItWouldPaintTheWhole)
{
    const double scale = GetParam();
    Wanderer wanderer(static_cast<unsigned>(100 * scale));
    CanvasRenderer canvas(wanderer.root, scale);
    int partial = 0;
    for (int i = 0; i < 200; ++i) {
        wanderer.step();
        if (i % 3 == 0)
            wanderer.step(); // several changes in one frame
        const IntRect area = canvas.render();
        const CGImage got = canvas.image();
        partial += !area.isEmpty() && (area.width < got.width() || area.height < got.height());
        ASSERT_TRUE(imagesMatch(got, rendered(wanderer.root->layer(), scale))) << "after step " << i;
    }
    EXPECT_GT(partial, 50);
}

INSTANTIATE_TEST_SUITE_P(Scales, RendererWalk, testing::Values(1, 3, 1.7, 2, 1.25));

TEST(CanvasRenderer, LargePicturesAreReducedWhileTheyMoveAndExactAtRest)
{
    const auto root = std::make_shared<UIView>(CGRect(0, 0, 160, 160));
    root->setBackgroundColor(UIColor::white());
    const auto photo = std::make_shared<UIImageView>(CGRect(30, 40, 100, 80));
    const auto wave = [](double place) { return static_cast<std::uint8_t>(128 + 100 * std::sin(place)); };
    const CGImage waves = makePicture(1100, 1000, [&](int x, int y) {
        return Rgba{wave(0.03 * x), wave(0.02 * y), wave(0.01 * (x + y)), 255};
    });
    photo->setImage(UIImage(waves, 1, UIImageOrientation::Left));
    root->addSubview(photo);
    CanvasRenderer canvas(root, 2);
    canvas.render();
    canvas.setMoving(true);
    for (const double size : {1.0, 0.6, 1.3}) {
        photo->setTransform(CGAffineTransform::rotation(size).scaled(size, size));
        canvas.render();
        const CGImage exact = rendered(root->layer(), 2);
        EXPECT_TRUE(imagesMatch(canvas.image(), exact, 12)) << size;
        EXPECT_FALSE(imagesMatch(canvas.image(), exact)) << size;
    }
    photo->setTransform(CGAffineTransform::rotation(0.5));
    canvas.render();
    NotificationCenter::defaultCenter().post(UIApplicationDidReceiveMemoryWarningNotification);
    photo->setCenter({70, 70});
    canvas.render();
    canvas.setMoving(false);
    EXPECT_TRUE(canvas.needsRender());
    canvas.render();
    EXPECT_TRUE(imagesMatch(canvas.image(), rendered(root->layer(), 2)));
    canvas.setMoving(false);
    EXPECT_FALSE(canvas.needsRender());
}

TEST(CanvasRenderer, PicturesThatStayAreDrawnFromCopiesByTheSameBytes)
{
    const auto root = std::make_shared<UIView>(CGRect(0, 0, 40, 30));
    root->setBackgroundColor(UIColor::white());
    const auto photo = std::make_shared<UIImageView>(CGRect(0, 0, 40, 30));
    const auto above = std::make_shared<UIView>(CGRect(3, 4, 9, 8));
    root->addSubview(photo);
    root->addSubview(above);
    CanvasRenderer canvas(root, 3);
    const CGImageAlphaInfo opaque = CGImageAlphaInfo::NoneSkipLast;
    for (const auto& transform : {CGAffineTransform(), CGAffineTransform::scaling(1.37, 1.9),
                                  CGAffineTransform::translation(1, -2).scaled(-1, 1),
                                  CGAffineTransform::translation(0.4, 0), CGAffineTransform::rotation(0.3)}) {
        photo->setTransform(transform);
        for (const CGImage& picture : {noisePicture(13, 17, opaque, 1), noisePicture(13, 17, opaque, 2),
                                       noisePicture(13, 17, CGImageAlphaInfo::PremultipliedFirst, 3)}) {
            photo->setImage(UIImage(picture));
            for (const double x : {9.0, 10.0, 10.5, 21.0}) {
                above->setCenter({x, 2 * x});
                photo->setAlpha(x == 21 ? 1 : 0.5); // everything is painted again
                canvas.render();
                EXPECT_TRUE(imagesMatch(canvas.image(), rendered(root->layer(), 3))) << x;
            }
        }
    }
}

TEST(CanvasRenderer, PaintsNoMoreThanWhatChanged)
{
    const auto root = std::make_shared<UIView>(CGRect(0, 0, 100, 100));
    root->setBackgroundColor(UIColor::white());
    const auto clip = addView(*root, {20, 20, 60, 60}, UIColor::gray());
    clip->setClipsToBounds(true);
    const auto low = addView(*clip, {5, 5, 20, 20}, UIColor::black());
    const auto high = addView(*clip, {15, 15, 20, 20}, UIColor::brown());
    CanvasRenderer canvas(root, 2);
    EXPECT_EQ(canvas.render(), (IntRect{0, 0, 200, 200}));

    // Within the room that is left for rounding: a pixel on every side.
    const auto expectArea = [&](const IntRect& wanted) {
        const IntRect got = canvas.render();
        EXPECT_EQ(got.intersection(wanted), wanted);
        const IntRect room{wanted.x - 1, wanted.y - 1, wanted.width + 2, wanted.height + 2};
        EXPECT_EQ(got.unionWith(room), room);
    };
    low->setCenter({low->center().x + 2, low->center().y}); // old and new place
    expectArea({50, 50, 44, 40});
    clip->bringSubviewToFront(*low); // where both overlap
    expectArea({70, 70, 24, 20});
    high->setCenter({65, 40}); // most of it behind the clip
    expectArea({70, 70, 90, 70});
    // A hidden view and one outside may change as they like.
    low->setHidden(true);
    expectArea({54, 50, 40, 40});
    low->setBackgroundColor(UIColor::white());
    EXPECT_EQ(canvas.render(), IntRect{});
}

TEST(CanvasRenderer, AsksForOneFrameABatch)
{
    const auto root = std::make_shared<UIView>(CGRect(0, 0, 20, 20));
    const auto view = addView(*root, {0, 0, 5, 5}, UIColor::black());
    CanvasRenderer canvas(root, 1);
    int asked = 0;
    canvas.setChangeHandler([&] { ++asked; });
    EXPECT_EQ(asked, 1); // the first frame waits
    canvas.render();
    view->setAlpha(0.5);
    view->setCenter({9, 9});
    EXPECT_EQ(asked, 2);
    canvas.render();
    view->setHidden(true);
    EXPECT_EQ(asked, 3);
}

TEST(CanvasRenderer, ShowsNothingWithoutArea)
{
    CanvasRenderer canvas(std::make_shared<UIView>(), 2);
    for (const double side : {0.0, 1e9, 4.0}) { // none, more than any memory, and then some
        canvas.root().setBounds({0, 0, side, side});
        const int pixels = side == 4 ? 8 : 0;
        EXPECT_EQ(canvas.render(), (IntRect{0, 0, pixels, pixels}));
        EXPECT_EQ(canvas.image().size(), (IntSize{pixels, pixels}));
    }
}

} // namespace
} // namespace lamina::test
