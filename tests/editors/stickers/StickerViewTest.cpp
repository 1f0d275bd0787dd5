#include "StickerBench.h"

#include "platform/base/CGGeometry.h"
#include "platform/base/UIColor.h"
#include "platform/view/CALayer.h"
#include "platform/view/UIAccessibility.h"
#include "platform/view/UIPointerShape.h"
#include "platform/view/UIView.h"

#include <cmath>
#include <limits>
#include <memory>

namespace lamina::test {
namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kQuarter = std::numbers::pi / 2;

class StickerViewTest : public StickerBench {};

TEST_F(StickerViewTest, GesturesMoveResizeAndTurn)
{
    const struct {
        const char* name;
        double side;      ///< of the sticker, whose middle is at 200, 200
        double angle;     ///< it was turned by
        const char* play; ///< with its handles shown
        const char* geometry;
        int changes;
    } table[] = {
        {"DragCountsFromWhereItBegins", 200, 0, "1+200,200 1>210,200 1>230,207 1-230,207", "220,207 200x200@0", 1},
        {"DragGoesOnAsFingersComeAndGo", 200, 0, "1+200,200 1>210,200 2+300,300 1>214,200&2>304,300 2x 1>216,200 1x",
         "206,200 200x200@0", 2},
        {"ResizeGrowsAtBothEnds", 200, 0, "1+118,282 1>108,302 1-108,302", "200,200 220x240@0", 1},
        {"ResizeIsMeasuredUnturned", 200, kQuarter, "1+118,118 1>118,98 1-118,98", "200,200 240x200@90", 1},
        {"ResizeGoesOnFromTheLeastSide", 200, 0, "1+118,282 1>300,282 1>298,282 1x", "200,200 41x200@0", 2},
        {"RotateAndScaleByTheRoot", 200, 0, "1+282,282 1>364,364 1-364,364", "200,200 282.843x282.843@0", 1},
        {"TurnsOverTheSeam", 200, 0, "1+282,282 1>118,282 1>118,118 1>282,118 1x", "200,200 200x200@-90", 3},
        {"TurnsFromWhereItWas", 200, kQuarter, "1+118,282 1>84.0345,200 1x", "200,200 200x200@135", 1},
        {"NearTheMiddleTurnsAlone", 200, 0, "1+282,282 1>200,201 1x", "200,200 200x200@45", 1},
        {"DownToTheLeastSideItself", 148, 0, "1+256,256 1>203.5,203.5 1x", "200,200 37x37@0", 1},
        {"ResizeStopsAtTheLargestSide", 200, 0, "1+118,282 1>-3000,282 1x", "200,200 4096x200@0", 1},
        {"BeyondTheLargestSideTurnsAlone", 200, 0, "1+282,282 1>-99800,100200 1x", "200,200 200x200@90", 1},
        {"AHandleIsNoTap", 200, 0, "t282,282", "200,200 200x200@0", 0},
    };
    for (const auto& c : table) {
        SCOPED_TRACE(c.name);
        const auto sticker = selectedSticker(c.side, c.angle);
        std::string told = "bBeE";
        for (int i = 0; i < c.changes; ++i)
            told.insert(2, "cC");
        EXPECT_EQ(play(c.play), told);
        EXPECT_EQ(geometry(*sticker), c.geometry);
        sticker->removeFromSuperview();
    }
}

TEST_F(StickerViewTest, TheRatioOfDistancesMayBeInexactOrNone)
{
    const auto sticker = selectedSticker();
    play("1+282,282 1>364,364 1x");
    EXPECT_EQ(sticker->bounds().size.width, 200 * 1.41421353816986083984375); // the root in single precision
    sticker->setBounds({0, 0, 37, 37});
    sticker->setEnableResize(false);
    play("1+200,200 1>300,200 1x"); // from the middle itself
    EXPECT_EQ(geometry(*sticker), "200,200 37x37@0");
    EXPECT_TRUE(sticker->resizeView().isHidden());
}

TEST_F(StickerViewTest, OneIsSelectedUnlessANewOneCameBetween)
{
    const auto first = addSticker({0, 0, 120, 120});
    const auto second = addSticker({200, 200, 120, 120});
    EXPECT_EQ(play("t60,60 w1 t260,260"), "sThsT");
    EXPECT_FALSE(first->isShowingEditingHandles() || !first->showsBorder() || !first->closeView().isHidden());
    IQStickerView::releaseActiveStickerView(UIView()); // another tree's end
    EXPECT_EQ(IQStickerView::activeStickerView(), second);

    const auto third = addSticker({0, 200, 120, 120}); // no sticker is active now
    EXPECT_EQ(play("t60,60 w1"), "sT");
    EXPECT_TRUE(first->isShowingEditingHandles() && second->isShowingEditingHandles());
    EXPECT_EQ(play("t60,60"), "hT");
    EXPECT_EQ(root->subviews().back(), first);
    EXPECT_EQ(IQStickerView::activeStickerView(), nullptr);
    EXPECT_FALSE(first->showsBorder());
}

TEST_F(StickerViewTest, ADeletedOneStaysActiveUntilItsTreeIsLeft)
{
    auto sticker = selectedSticker();
    EXPECT_EQ(play("t118,118"), "xX");
    const std::weak_ptr<IQStickerView> gone = std::exchange(sticker, nullptr);
    EXPECT_EQ(IQStickerView::activeStickerView(), gone.lock());
    IQStickerView::releaseActiveStickerView(*root);
    EXPECT_TRUE(gone.expired());
}

TEST_F(StickerViewTest, ListenersMayGoAndStickersMayBeDeletedInAGesture)
{
    struct Deleter : IQStickerObserver {
        void stickerDidChange(IQStickerView& sticker) override { sticker.close(); }
    };
    auto sticker = addSticker({100, 100, 200, 200});
    sticker->setDelegate(std::make_shared<StickerListener>(log)); // gone at once
    const auto deleter = std::make_shared<Deleter>();
    sticker->setObserver(deleter);
    sticker.reset();
    EXPECT_EQ(play("1+200,200 1>220,200 1>230,200 1>240,200 1-250,200"), "");
    EXPECT_TRUE(root->subviews().empty());
}

TEST_F(StickerViewTest, HandlesAndBorderKeepTheirSizeInAZoomedParent)
{
    const auto zoomed = addView({0, 0, 400, 400});
    zoomed->setTransform(CGAffineTransform::scaling(2, 4));
    const auto sticker = addSticker({0, 0, 200, 200});
    zoomed->addSubview(sticker);
    const CALayer& border = sticker->contentView()->layer();
    EXPECT_EQ(border.borderWidth(), 0);
    sticker->showEditingHandles();
    EXPECT_TRUE(border.borderWidth() == 0.5 && border.borderColor() == UIColor::brown());
    for (const UIView* handle : {&sticker->closeView(), &sticker->resizeView(), &sticker->rotateView()})
        EXPECT_EQ(handle->transform(), CGAffineTransform::scaling(0.5, 0.25));
    sticker->setFrame({0, 0, 100, 60});
    EXPECT_EQ(sticker->rotateView().center(), (CGPoint{82, 42}));
    EXPECT_EQ(sticker->resizeView().center(), (CGPoint{18, 42}));
    EXPECT_EQ(sticker->contentView()->frame(), (CGRect{18, 18, 64, 24}));
}

TEST_F(StickerViewTest, KeysAndWheelsDoWhatGesturesDo)
{
    const auto sticker = selectedSticker();
    sticker->setBounds({0, 0, 200, 100});
    EXPECT_TRUE(sticker->moveBy(3, -4) && sticker->scaleBy(1.5) && sticker->turnBy(kQuarter));
    EXPECT_TRUE(fingers.wheel({200, 150}, -1) && fingers.wheel({200, 150}, 10, TouchDispatcher::Shift));
    EXPECT_EQ(std::exchange(log, {}), "MZRZR");
    EXPECT_EQ(geometry(*sticker), "203,196 272.727x136.364@120");
    EXPECT_FALSE(sticker->moveBy(kNan, 0) || sticker->scaleBy(0.27) || sticker->scaleBy(16) || sticker->scaleBy(kNan) ||
                 sticker->turnBy(HUGE_VAL));
    EXPECT_TRUE(fingers.magnify({200, 150}, 0.01)); // goes to nothing else
    EXPECT_EQ(log, "");
    sticker->hideEditingHandles();
    EXPECT_FALSE(fingers.wheel({200, 150}, 1));
}

TEST_F(StickerViewTest, HandlesSayWhatTheyAreForAndWorkWithoutAFinger)
{
    const auto sticker = selectedSticker();
    const auto pointers = {fingers.pointerShape({200, 200}), fingers.pointerShape({118, 118}),
                           fingers.pointerShape({118, 282}), fingers.pointerShape({282, 282})};
    using enum UIPointerShape;
    EXPECT_EQ(std::vector(pointers), (std::vector{OpenHand, Arrow, ResizeDiagonally, Cross}));
    sticker->rotateView().accessibilityIncrement();
    sticker->resizeView().accessibilityDecrement();
    sticker->closeView().accessibilityIncrement(); // is none
    EXPECT_EQ(geometry(*sticker), "200,200 181.818x181.818@3");
    EXPECT_EQ(sticker->closeView().accessibilityLabel(), "Delete sticker");
    EXPECT_TRUE(sticker->closeView().accessibilityActivate());
    EXPECT_TRUE(root->subviews().empty());
}

} // namespace
} // namespace lamina::test
