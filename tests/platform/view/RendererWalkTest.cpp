// A canvas that is painted in parts is always what painting all of it would give.
#include "LayerScene.h"
#include "platform/view/CAShapeLayer.h"
#include "platform/view/CanvasRenderer.h"
#include "platform/view/UIImageView.h"

#include <random>
#include <vector>

namespace lamina::test {
namespace {

bool sameBytes(const CGImage& x, const CGImage& y)
{
    return x.size() == y.size() && std::ranges::equal(x.bytes(), y.bytes());
}

CGImage wholeRepaint(const std::shared_ptr<UIView>& root, double scale)
{
    CanvasRenderer fresh(root, scale);
    fresh.render();
    return fresh.image();
}

/// A tree of views that is changed at random, each kind of change in turn with the same chance.
class Wanderer {
public:
    explicit Wanderer(unsigned seed)
        : m_random(seed)
    {
        root->setBackgroundColor(UIColor{1, 1, 1, 0.5});
        for (int i = 0; i < 5; ++i)
            add();
    }

    const std::shared_ptr<UIView> root = std::make_shared<UIView>(CGRect(0, 0, 70, 50));

    void step()
    {
        const auto view = any();
        CALayer& layer = view->layer();
        const std::function<void()> changes[] = {
            [&] {
                view->setCenter({view->center().x + number(-9, 9), view->center().y + number(-9, 9)});
            },
            [&] { view->setTransform(view->transform().rotated(number(-1, 1)).scaled(number(0.7, 1.4), 1.1)); },
            [&] { view->setTransform({}); },
            [&] { view->setAlpha(upTo(2) ? 1 : number(0, 1)); },
            [&] { view->superview()->bringSubviewToFront(*view); },
            [&] { view->superview()->insertSubview(view, 0); },
            [&] { m_views.size() < 12 ? add() : remove(view); },
            [&] { m_views.size() > 4 ? remove(view) : add(); },
            [&] { layer.setMask(upTo(2) ? mask() : nullptr); },
            [&] { layer.setCornerRadius(upTo(2) ? number(0, 12) : 0); },
            [&] { view->setClipsToBounds(upTo(2)); },
            [&] { layer.setContents(picture()); },
            [&] { layer.setContentsMode(static_cast<UIViewContentMode>(upTo(4))); },
            [&] { view->setHidden(!view->isHidden()); },
            [&] {
                layer.setShadow({kBlue, upTo(2) ? 0.7 : 0, {number(-6, 6), number(-6, 6)}, number(0, 4)});
            },
            [&] { layer.setBorderWidth(upTo(2) ? number(0, 3) : 0); },
            [&] { view->setBackgroundColor(upTo(2) ? std::optional(color()) : std::nullopt); },
            [&] {
                view->setBounds({number(-5, 5), number(-5, 5), number(0, 40), number(0, 40)});
            },
            [&] {
                if (layer.mask())
                    layer.mask()->setPosition({number(-5, 5), number(-5, 5)});
            },
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
    std::shared_ptr<UIView> any() { return m_views[upTo(m_views.size())]; }

    UIImage picture()
    {
        if (upTo(5) == 0)
            return {};
        const auto blue = static_cast<std::uint8_t>(upTo(256));
        const bool alpha = upTo(2) == 0;
        const auto pixel = [&](int x, int y) {
            return Rgba{byteOf(12 * x), byteOf(15 * y), blue, alpha ? byteOf(8 * x + 5 * y) : std::uint8_t{255}};
        };
        return UIImage(makePicture(20, 17, pixel, alpha), upTo(2) ? 1 : 1.5, static_cast<UIImageOrientation>(upTo(8)));
    }

    std::shared_ptr<CALayer> mask()
    {
        std::shared_ptr<CALayer> layer;
        if (upTo(2)) {
            auto shape = std::make_shared<CAShapeLayer>();
            shape->setPath(
                UIBezierPath::polygon({{number(-5, 9), number(-5, 9)}, {number(15, 50), 3}, {9, number(15, 50)}}));
            layer = shape;
        } else {
            layer = makeLayer({0, 0, 30, 25});
            layer->setContents(picture());
        }
        layer->setOpacity(upTo(2) ? 1 : number(0, 1));
        return layer;
    }

    void add()
    {
        const CGRect frame(number(-10, 50), number(-10, 40), number(5, 40), number(5, 30));
        const auto view = std::make_shared<UIImageView>(frame);
        if (upTo(2))
            view->setImage(picture());
        else
            view->setBackgroundColor(color());
        const auto parent = m_views.empty() || upTo(2) ? root : any();
        parent->insertSubview(view, upTo(4));
        m_views.push_back(view);
    }

    void remove(const std::shared_ptr<UIView>& view)
    {
        view->removeFromSuperview();
        std::erase_if(m_views, [&](const auto& other) { return other->isDescendantOf(*view); });
        if (m_views.empty())
            add();
    }

    std::mt19937 m_random;
    std::vector<std::shared_ptr<UIView>> m_views;
};

std::shared_ptr<UIView> child(UIView& parent, const CGRect& frame, const UIColor& color)
{
    auto view = std::make_shared<UIView>(frame);
    view->setBackgroundColor(color);
    parent.addSubview(view);
    return view;
}

struct WalkCase {
    unsigned seed;
    double scale;
};

class RendererWalk : public testing::TestWithParam<WalkCase> {};

TEST_P(RendererWalk, PaintsPartsAsItWouldPaintTheWhole)
{
    const double scale = GetParam().scale;
    Wanderer wanderer(GetParam().seed);
    CanvasRenderer canvas(wanderer.root, scale);
    int partial = 0;
    for (int i = 0; i < 200; ++i) {
        wanderer.step();
        if (i % 3 == 0)
            wanderer.step(); // several changes in one frame
        const IntRect area = canvas.render();
        const CGImage got = canvas.image();
        partial += !area.isEmpty() && (area.width < got.width() || area.height < got.height());
        ASSERT_TRUE(sameBytes(got, wholeRepaint(wanderer.root, scale))) << "after step " << i;
        ASSERT_TRUE(sameBytes(got, rendered(wanderer.root->layer(), scale))) << "after step " << i;
    }
    EXPECT_GT(partial, 50);
}

INSTANTIATE_TEST_SUITE_P(Seeds, RendererWalk,
                         testing::Values(WalkCase{1, 1}, WalkCase{2, 3}, WalkCase{3, 1.7}, WalkCase{4, 2},
                                         WalkCase{5, 1.25}));

TEST(CanvasRenderer, PaintsNoMoreThanWhatChanged)
{
    const auto root = std::make_shared<UIView>(CGRect(0, 0, 100, 100));
    root->setBackgroundColor(UIColor::white());
    const auto clip = child(*root, {20, 20, 60, 60}, UIColor::gray());
    clip->setClipsToBounds(true);
    const auto low = child(*clip, {5, 5, 20, 20}, UIColor::black());
    const auto high = child(*clip, {15, 15, 20, 20}, UIColor::brown());
    CanvasRenderer canvas(root, 2);
    EXPECT_EQ(canvas.render(), (IntRect{0, 0, 200, 200}));
    EXPECT_EQ(canvas.render(), IntRect{});

    // Within the room that is left for rounding: a pixel on every side.
    const auto expectArea = [&](const IntRect& wanted) {
        const IntRect got = canvas.render();
        EXPECT_EQ(got.intersection(wanted), wanted);
        const IntRect room{wanted.x - 1, wanted.y - 1, wanted.width + 2, wanted.height + 2};
        EXPECT_EQ(got.unionWith(room), room) << got.x << ' ' << got.y << ' ' << got.width << ' ' << got.height;
    };
    low->setCenter({low->center().x + 2, low->center().y}); // old and new place
    expectArea({50, 50, 44, 40});
    clip->bringSubviewToFront(*low); // where both overlap
    expectArea({70, 70, 24, 20});
    high->setCenter({65, 40}); // most of it behind the clip
    expectArea({70, 70, 90, 70});
    child(*clip, {0, 0, 4, 4}, UIColor::white());
    expectArea({40, 40, 8, 8});
    clip->subviews().back()->removeFromSuperview();
    expectArea({40, 40, 8, 8});
    low->setTag(4);
    EXPECT_FALSE(canvas.needsRender());
    // A hidden view and one outside may change as they like.
    low->setHidden(true);
    expectArea({54, 50, 40, 40});
    low->setBackgroundColor(UIColor::white());
    EXPECT_EQ(canvas.render(), IntRect{});
    root->setFrame({0, 0, 50, 50}); // another size: a new bitmap
    EXPECT_EQ(canvas.render(), (IntRect{0, 0, 100, 100}));
}

TEST(CanvasRenderer, AsksForOneFrameABatch)
{
    const auto root = std::make_shared<UIView>(CGRect(0, 0, 20, 20));
    const auto view = child(*root, {0, 0, 5, 5}, UIColor::black());
    CanvasRenderer first(root, 1);
    CanvasRenderer second(root, 3);
    int asked = 0;
    first.setChangeHandler([&] { ++asked; });
    EXPECT_EQ(asked, 1); // the first frame waits
    first.render();
    second.render();
    view->setAlpha(0.5);
    view->setAlpha(0.6);
    view->setCenter({9, 9});
    EXPECT_EQ(asked, 2);
    EXPECT_TRUE(second.needsRender());
    first.render();
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
