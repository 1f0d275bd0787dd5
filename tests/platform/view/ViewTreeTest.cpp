#include "platform/view/UIImageView.h"

#include "platform/base/CGGeometry.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/view/CALayer.h"

#include <algorithm>
#include <cstddef>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

namespace lamina {
namespace {

class MarkedView : public UIView {
public:
    explicit MarkedView(int tag, std::vector<std::shared_ptr<UIView>> children = {})
    {
        setTag(tag);
        for (auto& child : children)
            addSubview(std::move(child));
    }
    int moves = 0;
    void didMoveToSuperview() override { ++moves; }
};

std::shared_ptr<MarkedView> tagged(int tag, std::vector<std::shared_ptr<UIView>> children = {})
{
    return std::make_shared<MarkedView>(tag, std::move(children));
}

/// The tags of the children in their order, which is that of the layers.
std::string order(const UIView& view)
{
    std::string tags;
    std::vector<const CALayer*> layers;
    for (const auto& child : view.subviews()) {
        tags += std::to_string(child->tag());
        layers.push_back(&child->layer());
    }
    std::vector<const CALayer*> drawn;
    for (const auto& layer : view.layer().sublayers())
        if (std::ranges::find(layers, layer.get()) != layers.end())
            drawn.push_back(layer.get());
    EXPECT_EQ(drawn, layers);
    return tags;
}

TEST(ViewTree, KeepsViewsAndLayersInOneOrder)
{
    const auto parent = tagged(0, {tagged(1), tagged(2), tagged(3), tagged(4)});
    parent->layer().insertSublayer(std::make_shared<CALayer>(), 0); // a layer of no view must not get in the way
    EXPECT_EQ(order(*parent), "1234");
    parent->bringSubviewToFront(*parent->subviews()[0]);
    EXPECT_EQ(order(*parent), "2341");
    parent->insertSubview(parent->subviews()[2], 0);
    EXPECT_EQ(order(*parent), "4231");
    parent->insertSubview(parent->subviews()[0], 2);
    EXPECT_EQ(order(*parent), "2341");
    parent->insertSubview(tagged(5), 1);
    parent->insertSubview(tagged(6), 99);
    parent->bringSubviewToFront(*tagged(9)); // no child of it
    EXPECT_EQ(order(*parent), "253416");
}

TEST(ViewTree, FindsTheFirstTagDepthFirst)
{
    const auto deep = tagged(7);
    const auto left = tagged(1, {deep});
    const auto right = tagged(7);
    const auto root = tagged(0, {left, right});
    EXPECT_EQ(root->viewWithTag(7), deep.get());
    EXPECT_EQ(root->viewWithTag(0), root.get());
    EXPECT_EQ(right->viewWithTag(1), nullptr);
    EXPECT_EQ(&deep->rootView(), root.get());
    EXPECT_TRUE(deep->isDescendantOf(*left));
    EXPECT_FALSE(left->isDescendantOf(*deep) || deep->isDescendantOf(*right));
}

TEST(ViewTree, MovingToAnotherParentTellsTheViewOnce)
{
    const auto first = tagged(1);
    const auto second = tagged(2);
    const auto view = tagged(3);
    first->addSubview(view);
    first->addSubview(view); // to the top of the same parent
    EXPECT_EQ(view->moves, 1);
    second->addSubview(view);
    EXPECT_EQ(view->moves, 2);
    EXPECT_EQ(view->superview(), second.get());
    EXPECT_EQ(view->layer().superlayer(), &second->layer());
    EXPECT_TRUE(first->subviews().empty() && first->layer().sublayers().empty());
    view->removeFromSuperview();
    view->removeFromSuperview();
    EXPECT_EQ(view->moves, 3);
    EXPECT_EQ(view->superview(), nullptr);
}

TEST(ViewTree, LifeAndDeath)
{
    const auto kept = tagged(2);
    auto parent = tagged(1, {kept, tagged(3)});
    const std::shared_ptr<CALayer> parentLayer = parent->layer().shared_from_this();
    const std::weak_ptr<UIView> lost = parent->subviews()[1];
    {
        const auto copy = parent->subviews();
        parent->subviews()[1]->removeFromSuperview(); // the copy holds it still
        EXPECT_FALSE(lost.expired());
    }
    EXPECT_TRUE(lost.expired());
    parent.reset();
    EXPECT_EQ(kept->superview(), nullptr);
    EXPECT_EQ(kept->layer().superlayer(), nullptr);
    EXPECT_TRUE(parentLayer->sublayers().empty());
    EXPECT_EQ(&kept->rootView(), kept.get());
}

TEST(ViewTree, RefusesCycles)
{
    const auto child = tagged(2);
    const auto root = tagged(1, {child});
    const auto attempt = [&] {
        child->addSubview(root);
        child->addSubview(child);
        child->addSubview(nullptr);
        child->layer().addSublayer(root->layer().shared_from_this());
        child->layer().setMask(root->layer().shared_from_this());
    };
    EXPECT_DEBUG_DEATH(attempt(), "possible");
    EXPECT_EQ(child->superview(), root.get());
    EXPECT_EQ(root->layer().superlayer(), nullptr);
    EXPECT_TRUE(child->subviews().empty());
}

TEST(ViewTree, AMaskBelongsToOneLayer)
{
    const auto first = std::make_shared<CALayer>();
    const auto second = std::make_shared<CALayer>();
    const auto mask = std::make_shared<CALayer>();
    first->addSublayer(mask);
    first->setMask(mask);
    EXPECT_TRUE(first->sublayers().empty());
    second->setMask(mask);
    EXPECT_EQ(first->mask(), nullptr);
    EXPECT_EQ(second->mask(), mask);
    first->addSublayer(mask);
    EXPECT_EQ(second->mask(), nullptr);
}

TEST(ViewTree, ImageViewsStartAsPictures)
{
    EXPECT_TRUE(UIView().isOpaque());
    const CGImage pixels = CGImage::make(CGImageLayout::rgba(30, 12, CGImageAlphaInfo::NoneSkipLast),
                                         PixelBuffer::zeroed(std::size_t{30} * 12 * 4));
    const UIImageView view(UIImage(pixels, 3, UIImageOrientation::Right));
    EXPECT_FALSE(view.isOpaque() || view.isUserInteractionEnabled());
    EXPECT_EQ(view.frame(), CGRect(0, 0, 4, 10));
}

} // namespace
} // namespace lamina
