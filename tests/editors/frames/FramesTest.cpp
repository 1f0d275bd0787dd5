#include "ToldFrames.h"

#include "TestPictures.h"
#include "editors/frames/FramePictures.h"
#include "editors/frames/Frames.h"
#include "editors/frames/ThreeFramesViewController.h"
#include "editors/frames/TwoFramesViewController.h"
#include "platform/base/CGAffineTransform.h"
#include "platform/image/named/NamedPictures.h"
#include "platform/view/CAShapeLayer.h"
#include "platform/view/ImageRendering.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <map>
#include <memory>

using namespace lamina;
using namespace lamina::test;

namespace {

constexpr std::array<Rgba, 4> kPaints{{{0, 0, 0, 0}, {255, 0, 0, 255}, {0, 255, 0, 255}, {0, 0, 255, 255}}};

/// Slots of one colour each on a clear canvas, as an editor builds them: the second, the first, then the third.
struct Canvas {
    std::shared_ptr<UIView> parent;
    std::vector<std::shared_ptr<UIView>> layers;

    Canvas(std::size_t photos, double side, const CGRect& slot)
        : parent(std::make_shared<UIView>(CGRect(0, 0, side, side)))
    {
        parent->setOpaque(false);
        for (std::size_t i = 0; i < photos; ++i) {
            layers.push_back(std::make_shared<UIView>(slot));
            const Rgba& paint = kPaints[i + 1];
            layers[i]->setBackgroundColor(UIColor{paint[0] / 255.0, paint[1] / 255.0, paint[2] / 255.0, 1});
            layers[i]->setClipsToBounds(true);
            parent->insertSubview(layers[i], i == 1 ? 0 : i);
        }
    }

    UIView& slot(char letter) const { return *layers[static_cast<std::size_t>(letter - 'A')]; }

    void apply(int frame, const CGSize& screen)
    {
        const auto lay = [&](auto& frames, auto&... views) {
            frames.view().setFrame({{}, screen});
            frames.setLayout(frame, views..., *parent);
        };
        TwoFramesViewController two;
        ThreeFramesViewController three;
        layers.size() == 2 ? lay(two, *layers[0], *layers[1]) : lay(three, *layers[0], *layers[1], *layers[2]);
    }

    std::string order() const
    {
        std::string letters;
        for (const auto& view : parent->subviews())
            letters += static_cast<char>('A' + (std::find(layers.begin(), layers.end(), view) - layers.begin()));
        return letters;
    }
};

/// What the frame's own outlines show, in the paints of the slots, and over it the cuts as white lines of 4 points.
CGImage drawnByShape(const FrameShape& shape, double side)
{
    CGContext context = *CGContext::image({side, side}, false, 1);
    for (const std::size_t i : shape.order) {
        context.setFillColor(UIColor{i == 0 ? 1.0 : 0.0, i == 1 ? 1.0 : 0.0, i == 2 ? 1.0 : 0.0, 1});
        context.fillPath(shape.outlines[i]);
    }
    UIBezierPath cuts = frameCuts(shape);
    cuts.lineWidth = 4;
    context.setStrokeColor(UIColor::white());
    context.strokePath(cuts);
    return context.makeImage();
}

/// Whether views and outlines show at a point what was drawn up, its edges aside, and where the cuts are.
testing::AssertionResult looksAsDrawnUp(const ToldCanvas& told, CGPoint p, const CGImage& views, const CGImage& shape)
{
    const auto matches = [&](const CGImage& image, const Rgba& wanted) {
        return pixelMatches(image, static_cast<int>(p.x), static_cast<int>(p.y), wanted, 2);
    };
    if (told.changesWithin(2, p))
        return told.changesWithin(0.7, p) ? matches(shape, {255, 255, 255, 255}) << " on a cut"
                                          : testing::AssertionSuccess();
    const Rgba& paint = kPaints[static_cast<std::size_t>(told.slotAt(p) + 1)];
    const bool clearOfCuts = told.square.insetBy(4, 4).contains(p) && !told.changesWithin(3.5, p);
    const testing::AssertionResult seen = matches(views, paint);
    return seen && clearOfCuts ? matches(shape, paint) << " beside the cuts" : seen;
}

void expectAsDrawnUp(const ToldFrame& frame, double side, double height)
{
    SCOPED_TRACE(testing::Message() << frame.number << " on " << side << " x " << height);
    const ToldCanvas told(frame, side, height);
    Canvas canvas(frame.order.size(), side, told.square);
    canvas.apply(frame.number, {side, height});
    EXPECT_EQ(canvas.order(), frame.order);
    const CGImage views = imageByRenderingView(*canvas.parent, 1).cgImage();
    const FrameShape shape = frameShape(frame.number, side, height);
    EXPECT_EQ(shape.slot, told.square);
    const CGImage shapes = drawnByShape(shape, side);
    for (double y = told.square.minY() + 1.5; y < told.square.maxY() - 1; y += 8)
        for (double x = told.square.minX() + 1.5 + std::fmod(y * 5, 9); x < told.square.maxX() - 1; x += 9)
            ASSERT_TRUE(looksAsDrawnUp(told, {x, y}, views, shapes));
    if (height == 480) {
        EXPECT_EQ(pixelAt(views, 25, 200), kPaints[0]);
    }
}

} // namespace

TEST(Frames, ShowAndCutEachSlotWhereItWasDrawnUp)
{
    const std::vector<ToldFrame> frames = toldFrames();
    ASSERT_EQ(frames.size(), std::size_t{kTwoFramesCount + kThreeFramesCount});
    for (const ToldFrame& frame : frames) {
        EXPECT_TRUE(isFrame(frame.number));
        EXPECT_EQ(photosOf(frame.number), frame.order.size());
        EXPECT_NE(*frameName(frame.number), 0);
        for (const double side : {320.0, 375.0, 414.0, 430.0})
            for (const double height : {812.0, 480.0, side, side / 2})
                if (height > side || frame.goesByHeight())
                    expectAsDrawnUp(frame, side, height);
    }
    EXPECT_FALSE(isFrame(2008));
    EXPECT_TRUE(frameCuts(frameShape(2008, 375, 812)).isEmpty());
}

TEST(Frames, MeasureEachCornerFromTheSideThatItNames)
{
    const Sizes sizes{{{301, 313}, {331, 347}, {359, 367}, {389, 811}}};
    for (const ToldFrame& frame : toldFrames()) {
        Canvas canvas(frame.order.size(), 400, {});
        for (std::size_t i = 0; i < canvas.layers.size(); ++i)
            canvas.layers[i]->setFrame({{10, 20}, sizes[i]});
        canvas.apply(frame.number, sizes[3]);
        for (const ToldMask& told : frame.masks) {
            SCOPED_TRACE(testing::Message() << frame.number << told.slot);
            const UIView& slot = canvas.slot(told.slot);
            ASSERT_TRUE(slot.layer().mask());
            const CALayer& mask = *slot.layer().mask();
            EXPECT_EQ(mask.bounds(), CGRect({}, canvas.slot(told.boundsOf).bounds().size));
            EXPECT_EQ(mask.transformToParent(), CGAffineTransform());
            const CGSize before = sizes[static_cast<std::size_t>(told.slot - 'A')];
            if (told.color == "round") {
                const double diameter = static_cast<float>(toldLength(told.corners[0], sizes));
                EXPECT_EQ(slot.bounds().size, (CGSize{diameter, diameter}));
                EXPECT_EQ(slot.center(), (CGPoint{10 + before.width / 2, 20 + before.height / 2}));
                EXPECT_EQ(slot.layer().cornerRadius(), diameter / 2);
                EXPECT_TRUE(mask.contents());
                continue;
            }
            EXPECT_EQ(slot.bounds().size, before);
            const UIColor color{told.color == "yellow" ? 1.0 : 0.0, 1, 0, 1};
            EXPECT_EQ(mask.shadow(), (CALayer::Shadow{color, 1.7, {told.offset, told.offset}, told.radius}));
            const std::vector<CGPoint> corners = told.cornersIn(sizes);
            const auto& elements = dynamic_cast<const CAShapeLayer&>(mask).path().elements();
            ASSERT_EQ(elements.size(), corners.size());
            for (std::size_t i = 0; i < corners.size(); ++i)
                EXPECT_LT(std::hypot(elements[i].end.x - corners[i].x, elements[i].end.y - corners[i].y), 1e-9) << i;
        }
    }
}

/// The mask's own edge must lie outside the corners' everywhere, or the two soften the circle twice.
TEST(Frames, ARoundSlotsEdgeIsThatOfItsCorners)
{
    Canvas canvas(2, 320, {0, 0, 320, 320});
    canvas.apply(2005, {320, 812});
    const CGImage masked = imageByRenderingView(*canvas.parent, 3).cgImage();
    for (const auto& slot : canvas.layers)
        slot->layer().setMask(nullptr);
    EXPECT_TRUE(imagesMatch(masked, imageByRenderingView(*canvas.parent, 3).cgImage(), 1));
}

TEST(Frames, ChangeOnlyWhatTheyName)
{
    Canvas two(2, 375, {0, 0, 375, 375});
    two.apply(2001, {375, 812});
    const auto mask = two.layers[0]->layer().mask();
    const auto other = two.layers[1]->layer().mask();
    two.parent->bringSubviewToFront(*two.layers[1]);
    for (const int unknown : {1999, 2008, 3001, 0}) {
        two.apply(unknown, {375, 812});
        EXPECT_EQ(two.order(), "AB");
        EXPECT_EQ(two.layers[1]->layer().mask(), other);
    }
    two.apply(2006, {375, 812});
    EXPECT_NE(two.layers[1]->layer().mask(), other);
    EXPECT_EQ(two.layers[0]->layer().mask(), mask) << "a view without a row keeps its mask";

    Canvas three(3, 375, {0, 0, 375, 375});
    three.apply(3010, {375, 812});
    EXPECT_EQ(three.order(), "CBA") << "whatever the number";
    EXPECT_FALSE(three.layers[0]->layer().mask());
    ThreeFramesViewController().setRoundedView(*three.layers[0], 50);
    EXPECT_FALSE(three.layers[0]->layer().mask()->contents()) << "the picture is there once its frame was asked for";
}

/// On a side of which halves and thirds end within a pixel.
TEST(Frames, ShowNothingOfTheGroundAlongCommonEdges)
{
    constexpr double kSide = 331;
    for (const ToldFrame& told : toldFrames()) {
        const int frame = told.number;
        SCOPED_TRACE(frame);
        Canvas canvas(photosOf(frame), kSide, {0, 0, kSide, kSide});
        canvas.apply(frame, {kSide, 667});
        const auto drawn = [&] { return pixelsOf(imageByRenderingView(*canvas.parent, 1).cgImage()); };
        std::vector<std::vector<Rgba>> alone;
        for (const auto& shown : canvas.layers) {
            for (const auto& layer : canvas.layers)
                layer->setHidden(layer != shown);
            alone.push_back(drawn());
        }
        for (const auto& layer : canvas.layers)
            layer->setHidden(false);
        canvas.parent->layer().setSharesEdges(true);
        const auto clear = drawn();
        canvas.parent->setBackgroundColor(UIColor::white());
        const auto onWhite = drawn();
        canvas.parent->layer().setSharesEdges(false);
        const auto oneByOne = drawn();
        const bool fills = frame != 2005 && frame != 3008; // all but the round ones
        const auto top = static_cast<std::size_t>(canvas.order().back() - 'A');
        const auto sumOf = [](const Rgba& pixel) { return pixel[0] + pixel[1] + pixel[2]; };
        std::size_t changed = 0;
        for (std::size_t i = 0; i < clear.size(); ++i) {
            if (fills) {
                ASSERT_EQ(clear[i][3], 255) << i;
                ASSERT_NEAR(sumOf(clear[i]), 255, 2) << i;
                ASSERT_NEAR(sumOf(onWhite[i]), 255, 2) << i; // white would count three times
                ASSERT_NEAR(clear[i][top], alone[top][i][3], 1) << i;
            }
            // Where no two edges meet it is as if each slot were drawn by itself.
            const auto isCut = [&](const auto& slot) { return slot[i][3] != 0 && slot[i][3] != 255; };
            ASSERT_TRUE(onWhite[i] == oneByOne[i] || std::ranges::count_if(alone, isCut) > 1) << i;
            changed += onWhite[i] != oneByOne[i];
        }
        EXPECT_EQ(changed > 0, fills && frame != 2006 && frame != 2007);
    }
}

TEST(Frames, AreSeenInTheirSmallPictures)
{
    const FrameColors colors{{1, 0, 0, 1}, {0, 1, 0, 1}, {0, 0, 1, 1}};
    const CGImage tile = frameThumbnail(3004, 375, 812, 75, colors).cgImage();
    ASSERT_EQ(tile.width(), 225);
    EXPECT_TRUE(pixelMatches(tile, 112, 40, kPaints[1]));
    EXPECT_TRUE(pixelMatches(tile, 40, 180, kPaints[2]));
    EXPECT_TRUE(pixelMatches(tile, 112, 180, kPaints[3]));
    EXPECT_TRUE(pixelMatches(frameThumbnail(2005, 375, 812, 75, colors).cgImage(), 2, 2, kPaints[3]));
    EXPECT_FALSE(frameThumbnail(2008, 375, 812, 75, colors));
    EXPECT_FALSE(frameThumbnail(2000, 375, 812, -1, colors));

    const CGImage icon = frameSlotIcon(3004, 2, 375, 812, 20, false).cgImage();
    EXPECT_EQ(pixelAt(icon, 10, 10), pixelAt(icon, 10, 50));
    EXPECT_NE(pixelAt(icon, 50, 50), pixelAt(icon, 10, 10));
    EXPECT_NE(pixelAt(icon, 50, 50), pixelAt(frameSlotIcon(3004, 2, 375, 812, 20, true).cgImage(), 50, 50));
    EXPECT_TRUE(pixelMatches(icon, 30, 45, kPaints[0]));
    EXPECT_FALSE(frameSlotIcon(2000, 2, 375, 812, 22, true));

    const std::array<std::string_view, 2> art{"SCREENbg", "SCREEN2bg"};
    const CGImage print = framePrint(2003, 375, 375, 100, art).cgImage();
    for (const int x : {60, 240}) {
        const CGImage whole = imageNamed(art[x > 150], {100, 100}).cgImage();
        EXPECT_TRUE(pixelMatches(print, x, 200, pixelAt(whole, x, 200), 1));
    }
    EXPECT_TRUE(pixelMatches(print, 150, 150, kPaints[0]));
}
