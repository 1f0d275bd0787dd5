#include "platform/view/UIGestureRecognizer.h"
#include "platform/view/UIImageView.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace lamina;
using testing::ElementsAre;

namespace {

std::shared_ptr<UIView> tagged(int tag)
{
    auto view = std::make_shared<UIView>(CGRect(0, 0, 10, 10));
    view->setTag(tag);
    return view;
}

std::vector<int> tagsOf(const UIView& view)
{
    std::vector<int> tags;
    for (const auto& child : view.subviews())
        tags.push_back(child->tag());
    return tags;
}

/// The views' layers in the order of the layers, to be compared with the order of the views.
std::vector<const CALayer*> layersOfViews(const UIView& view)
{
    std::vector<const CALayer*> layers;
    for (const auto& child : view.subviews())
        layers.push_back(&child->layer());
    return layers;
}

class CountingView : public UIView {
public:
    using UIView::UIView;
    int moves = 0;
    void didMoveToSuperview() override { ++moves; }
};

} // namespace

TEST(ViewTree, KeepsViewsAndLayersInOneOrder)
{
    const auto parent = tagged(0);
    const auto extra = std::make_shared<CALayer>(); // a layer of no view must not get in the way
    parent->layer().addSublayer(extra);
    for (int tag = 1; tag <= 4; ++tag)
        parent->addSubview(tagged(tag));
    EXPECT_THAT(tagsOf(*parent), ElementsAre(1, 2, 3, 4));

    parent->bringSubviewToFront(*parent->subviews()[0]);
    EXPECT_THAT(tagsOf(*parent), ElementsAre(2, 3, 4, 1));
    parent->sendSubviewToBack(*parent->subviews()[2]);
    EXPECT_THAT(tagsOf(*parent), ElementsAre(4, 2, 3, 1));
    parent->insertSubview(parent->subviews()[0], 2);
    EXPECT_THAT(tagsOf(*parent), ElementsAre(2, 3, 4, 1));
    parent->insertSubview(tagged(5), 1);
    parent->insertSubview(tagged(6), 99);
    EXPECT_THAT(tagsOf(*parent), ElementsAre(2, 5, 3, 4, 1, 6));

    std::vector<const CALayer*> layers;
    for (const auto& layer : parent->layer().sublayers()) {
        if (layer != extra)
            layers.push_back(layer.get());
    }
    EXPECT_EQ(layers, layersOfViews(*parent));

    const auto stranger = tagged(9);
    parent->bringSubviewToFront(*stranger);
    EXPECT_EQ(parent->subviews().size(), 6u);
}

TEST(ViewTree, FindsTheFirstTagDepthFirst)
{
    const auto root = tagged(0);
    const auto left = tagged(1);
    const auto deep = tagged(7);
    const auto right = tagged(7);
    root->addSubview(left);
    root->addSubview(right);
    left->addSubview(deep);
    EXPECT_EQ(root->viewWithTag(7), deep.get());
    EXPECT_EQ(root->viewWithTag(0), root.get());
    EXPECT_EQ(right->viewWithTag(1), nullptr);
    EXPECT_EQ(&deep->rootView(), root.get());
    EXPECT_TRUE(deep->isDescendantOf(*left));
    EXPECT_FALSE(left->isDescendantOf(*deep));
    EXPECT_FALSE(deep->isDescendantOf(*right));
}

TEST(ViewTree, MovingToAnotherParentTellsTheViewOnce)
{
    const auto first = tagged(1);
    const auto second = tagged(2);
    const auto view = std::make_shared<CountingView>();
    first->addSubview(view);
    first->addSubview(view); // to the top of the same parent
    EXPECT_EQ(view->moves, 1);
    second->addSubview(view);
    EXPECT_EQ(view->moves, 2);
    EXPECT_EQ(view->superview(), second.get());
    EXPECT_TRUE(first->subviews().empty());
    EXPECT_TRUE(first->layer().sublayers().empty());
    EXPECT_EQ(view->layer().superlayer(), &second->layer());
    view->removeFromSuperview();
    view->removeFromSuperview();
    EXPECT_EQ(view->moves, 3);
    EXPECT_EQ(view->superview(), nullptr);
}

TEST(ViewTree, LifeAndDeath)
{
    auto parent = tagged(1);
    const std::shared_ptr<CALayer> parentLayer = parent->layer().shared_from_this();
    const auto kept = tagged(2);
    std::weak_ptr<UIView> let;
    {
        const auto lost = tagged(3);
        let = lost;
        parent->addSubview(lost);
    }
    parent->addSubview(kept);
    const auto copy = parent->subviews();
    ASSERT_EQ(copy.size(), 2u);
    parent->subviews()[0]->removeFromSuperview(); // the copy holds it still
    EXPECT_FALSE(let.expired());
    parent.reset();
    EXPECT_EQ(kept->superview(), nullptr);
    EXPECT_EQ(kept->layer().superlayer(), nullptr);
    EXPECT_TRUE(parentLayer->sublayers().empty());
    EXPECT_EQ(&kept->rootView(), kept.get());
}

TEST(ViewTree, AViewRemovedByNobodyElseDies)
{
    const auto parent = tagged(1);
    parent->addSubview(tagged(2));
    const std::weak_ptr<UIView> child = parent->subviews()[0];
    parent->subviews()[0]->removeFromSuperview();
    EXPECT_TRUE(child.expired());
}

TEST(ViewTree, RefusesCycles)
{
    const auto root = tagged(1);
    const auto child = tagged(2);
    root->addSubview(child);
    const auto attempt = [&] {
        child->addSubview(root);
        child->addSubview(child);
        child->addSubview(nullptr);
        child->layer().addSublayer(root->layer().shared_from_this());
        child->layer().setMask(root->layer().shared_from_this());
    };
    EXPECT_DEBUG_DEATH(attempt(), "possible");
    EXPECT_EQ(child->superview(), root.get());
    EXPECT_EQ(root->superview(), nullptr);
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

TEST(ViewTree, ChangesAreHeardByAllWhoWatchFromAbove)
{
    const auto root = std::make_shared<CALayer>();
    const auto middle = std::make_shared<CALayer>();
    const auto mask = std::make_shared<CALayer>();
    root->addSublayer(middle);
    middle->setMask(mask);
    int heard = 0;
    auto first = root->observeChanges([&] { ++heard; });
    const auto second = root->observeChanges([&] { heard += 100; });
    mask->setPosition({3, 4});
    EXPECT_EQ(heard, 101);
    mask->setPosition({3, 4}); // no change
    EXPECT_EQ(heard, 101);
    first.reset();
    middle->removeFromSuperlayer();
    EXPECT_EQ(heard, 201);
    middle->setOpacity(0.5); // no longer above the root
    EXPECT_EQ(heard, 201);
}

TEST(ViewTree, RecognisersBelongToOneView)
{
    const auto first = tagged(1);
    auto second = tagged(2);
    const auto recognizer = std::make_shared<UIGestureRecognizer>();
    first->addGestureRecognizer(recognizer);
    second->addGestureRecognizer(recognizer);
    EXPECT_TRUE(first->gestureRecognizers().empty());
    EXPECT_EQ(recognizer->view(), second.get());
    second.reset();
    EXPECT_EQ(recognizer->view(), nullptr);
}

TEST(ViewTree, ImageViewsStartAsPictures)
{
    const UIImageView empty;
    EXPECT_FALSE(empty.isOpaque());
    EXPECT_FALSE(empty.isUserInteractionEnabled());
    EXPECT_FALSE(empty.image());
    EXPECT_TRUE(UIView().isOpaque());
    const CGImage pixels = CGImage::make(CGImageLayout::rgba(30, 12, CGImageAlphaInfo::NoneSkipLast),
                                         PixelBuffer::zeroed(std::size_t{30} * 12 * 4));
    const UIImageView view(UIImage(pixels, 3, UIImageOrientation::Right));
    EXPECT_EQ(view.frame(), CGRect(0, 0, 4, 10));
}
