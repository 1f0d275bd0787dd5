#include "platform/view/UIView.h"

#include "platform/view/CALayer.h"

#include <algorithm>
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

/// The tags of the children in their order, which is that of their layers.
std::string order(const UIView& view)
{
    std::string tags;
    auto above = view.layer().sublayers().begin();
    for (const auto& child : view.subviews()) {
        tags += std::to_string(child->tag());
        above = std::find(above, view.layer().sublayers().end(), child->layer().shared_from_this());
        EXPECT_NE(above, view.layer().sublayers().end());
    }
    return tags;
}

TEST(ViewTree, KeepsViewsAndLayersInOneOrder)
{
    const auto parent = tagged(0, {tagged(1), tagged(2), tagged(3), tagged(4)});
    parent->layer().insertSublayer(std::make_shared<CALayer>(), 0); // a layer of no view must not get in the way
    EXPECT_EQ(order(*parent), "1234");
    parent->bringSubviewToFront(*parent->subviews()[0]);
    EXPECT_EQ(order(*parent), "2341");
    parent->insertSubview(parent->subviews()[0], 2);
    EXPECT_EQ(order(*parent), "3421");
    parent->insertSubview(tagged(5), 1);
    parent->insertSubview(tagged(6), 99);
    parent->bringSubviewToFront(*tagged(9)); // no child of it
    EXPECT_EQ(order(*parent), "354216");
}

TEST(ViewTree, FindsTheFirstTagDepthFirst)
{
    const auto deep = tagged(7);
    const auto root = tagged(0, {tagged(1, {deep}), tagged(7)});
    EXPECT_EQ(root->viewWithTag(7), deep.get());
    EXPECT_EQ(root->viewWithTag(8), nullptr);
}

TEST(ViewTree, MovingToAnotherParentTellsTheViewOnce)
{
    const auto first = tagged(1);
    const auto second = tagged(2);
    const auto view = tagged(3);
    first->addSubview(view);
    first->addSubview(view); // to the top of the same parent
    second->addSubview(view);
    EXPECT_EQ(view->moves, 2);
    EXPECT_EQ(order(*second), "3");
    EXPECT_EQ(order(*first), "");
    view->removeFromSuperview();
    view->removeFromSuperview();
    EXPECT_EQ(view->moves, 3);
}

TEST(ViewTree, LifeAndDeath)
{
    const auto kept = tagged(2);
    auto parent = tagged(1, {kept, tagged(3)});
    const std::shared_ptr<CALayer> parentLayer = parent->layer().shared_from_this();
    const std::weak_ptr<UIView> lost = parent->subviews()[1];
    parent->subviews()[1]->removeFromSuperview(); // by its last reference
    EXPECT_TRUE(lost.expired());
    parent.reset();
    EXPECT_EQ(kept->superview(), nullptr);
    EXPECT_EQ(kept->layer().superlayer(), nullptr);
    EXPECT_TRUE(parentLayer->sublayers().empty());
}

TEST(ViewTree, RefusesCycles)
{
    const auto child = tagged(2);
    const auto root = tagged(1, {child});
    const auto attempt = [&] {
        child->addSubview(root);
        child->addSubview(child);
        child->layer().addSublayer(root->layer().shared_from_this());
        child->layer().setMask(root->layer().shared_from_this());
    };
    EXPECT_DEBUG_DEATH(attempt(), "possible");
    EXPECT_EQ(child->superview(), root.get());
    EXPECT_EQ(root->layer().superlayer(), nullptr);
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
}

} // namespace
} // namespace lamina
